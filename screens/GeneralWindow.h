// The "System Customization" menu: entries on the left, an information pane on the right
// describing the focused entry; Enter opens the entry's screen, Esc logs out, digits on
// "View System Logs" open a log in the pager.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ui/LabelItem.h"
#include "ui/RootWindow.h"
#include "ui/TextArea.h"

namespace Konu {

class GeneralWindow : public RootWindow {
 public:
  // Entry kinds: each is also the string id of the entry's label.
  enum Kind {
    kSeparator = 3,
    kPassword = 5,
    kLockdown = 6,
    kNetwork = 7,
    kRestartNetwork = 8,
    kTestNetwork = 9,
    kRestoreNetwork = 10,
    kSupport = 11,
    kLogs = 12,
    kTroubleshooting = 13,
    kReset = 14,
    kKeyboard = 15,
  };

  explicit GeneralWindow(Frame* owner);
  ~GeneralWindow() override;

  // Rebuilds the information pane for the focused entry.
  void Refresh() override;
  // Returns 1 when Esc logs the user out.
  int EventLoop() override;

 private:
  struct Entry {
    int kind;
    bool enabled;
    std::unique_ptr<LabelItem> item;
  };
  struct KindInfo;

  static const KindInfo& InfoFor(int kind);
  int FocusedKind() const;
  void Open(int kind);
  void ViewLog(int digit);

  // Pane bodies by kind.
  std::string PasswordPane() const;
  std::string LockdownPane() const;
  std::string NetworkPane() const;
  std::string SupportPane() const;
  std::string LogsPane() const;
  std::string KeyboardPane() const;
  std::string StringPane(int id) const;

  // Openers by kind.
  void OpenPassword();
  void OpenLockdown();
  void OpenNetwork();
  void OpenRestartNetwork();
  void OpenTestNetwork();
  void OpenRestoreNetwork();
  void OpenTroubleshooting();
  void OpenReset();
  void OpenKeyboard();

  std::vector<Entry> entries_;
  std::unique_ptr<TextArea> warningLine_;
  bool lockdownEnabled_ = false;
  std::vector<std::string> supportPages_;  // laid out for the information pane
  unsigned supportPage_ = 0;
};

}  // namespace Konu
