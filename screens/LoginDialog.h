// The login form: a login name and password, or a smart card's login id and PIN, checked
// through PAM; every outcome logged, audited and, for failures, posted as an event.
#pragma once

#include <memory>
#include <string>

#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

class LoginDialog : public Dialog {
 public:
  // Runs the smart-card check; starts in PIN mode exactly when a card user id is kept.
  explicit LoginDialog(Frame* owner);
  ~LoginDialog() override;

  // 1 when a user logged in (the session's user is then set), 0 when left with Esc.
  int EventLoop() override;

  bool PinMode() const { return pinMode_; }

 private:
  // Texts, footer and fields for the current mode; the secret is emptied.
  void LayOut();
  std::string KeyboardText() const;
  void ChooseKeyboard();
  int LineCount() const { return static_cast<int>(list_->Items().size()); }
  int FocusedLine() const { return list_->Focus().ordinal; }
  void FocusLine(int line);
  // One attempt with the fields as they are; true when the user is logged in.
  bool TryLogin();
  void ShowFailure(int messageId);

  bool pinMode_ = false;
  std::unique_ptr<LabelItem> keyboardLine_;  // only on the host's own console
  std::unique_ptr<InputItem> name_;
  std::unique_ptr<InputItem> secret_;
  std::unique_ptr<ItemList> list_;
  std::string user_;
};

}  // namespace Konu
