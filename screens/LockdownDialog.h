// Switching lockdown mode, which keeps users from logging in to the host directly. The
// host's management service holds the mode; the dialog asks it and switches it with qal-cmd.
#pragma once

#include <memory>

#include "ui/Dialog.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

class LockdownDialog : public Dialog {
 public:
  // Reads the mode; the check box shows it.
  explicit LockdownDialog(Frame* owner);
  ~LockdownDialog() override;

  // Space toggles the box; Enter switches the mode when the box differs from it and returns
  // 1 whatever the outcome (a failure is only logged); Esc returns 0.
  int EventLoop() override;

 private:
  // Runs the enter or exit command as the console's service user and logs the outcome.
  void Switch(bool enable);

  bool enabled_;
  std::unique_ptr<CheckItem> box_;
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
