// Setting the logged-in user's login password: old, new and confirmation, checked in a
// fixed order, changed through PAM and saved with the host's configuration backup.
#pragma once

#include <memory>

#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"

namespace Konu {

class ChangePasswordDialog : public Dialog {
 public:
  // For the session's user (Runtime::Get().session.user).
  explicit ChangePasswordDialog(Frame* owner);
  ~ChangePasswordDialog() override;

  // 1 when the password was changed, 0 when left with Esc.
  int EventLoop() override;

 private:
  enum Field { kOld = 0, kNew = 1, kConfirm = 2 };

  void Focus(Field field);
  Field Focused() const { return static_cast<Field>(list_->Focus().ordinal); }
  void ShowError(int messageId);
  // The old password is right (or expired); otherwise says so and empties it.
  bool CheckOldPassword();
  // Enter on the confirmation field; true when the password was changed.
  bool Submit();
  void ClearNewFields();

  std::unique_ptr<InputItem> fields_[3];
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
