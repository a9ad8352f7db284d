// ChangePasswordDialog: the key loop, the checks in their order and the change itself.
#include "screens/ChangePasswordDialog.h"

#include <curses.h>
#include <security/pam_appl.h>
#include <syslog.h>

#include <vector>

#include "app/Runtime.h"
#include "host/Log.h"
#include "ops/CommandRunner.h"
#include "ops/Events.h"
#include "ops/QalCmd.h"
#include "screens/PamAuth.h"
#include "screens/SamePasswordConfirmDialog.h"
#include "ui/Footers.h"
#include "ui/FormKeys.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 14;
constexpr int kHeaderHeight = 6;
constexpr int kFieldWidth = 30;

enum StringId {
  kTitle = 149,         // "Configure Password"
  kText = 150,          // "Setting the password will prevent unauthorized access to this host."
  kOldLabel = 151,      // "Old Password:"
  kNewLabel = 152,      // "New Password:"
  kConfirmLabel = 153,  // "Confirm Password:"
  kErrorTitle = 154,    // "Configure Password: Error"
  kWrongOld = 156,      // "The old password you entered is incorrect"
  kMismatch = 157,      // "The new password and the confirmed password do not match."
  kEmpty = 158,         // "Empty passwords are not allowed."
  kChangeFailed = 160   // "The password change operation failed.\n..."
};


// Saves the host configuration so the new password survives a reboot; its result is not
// checked.
void RunBackup() {
  const char* const argv[] = {"backup.sh", nullptr};
  RunCommand("/sbin/backup.sh", argv);
}

}  // namespace

ChangePasswordDialog::ChangePasswordDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  std::vector<Item*> items;
  for (int label : {kOldLabel, kNewLabel, kConfirmLabel}) {
    auto field = std::make_unique<InputItem>(GetString(label), "", kFieldWidth);
    field->SetMasked(true);
    items.push_back(field.get());
    fields_[items.size() - 1] = std::move(field);
  }
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems(items);
}

ChangePasswordDialog::~ChangePasswordDialog() = default;

void ChangePasswordDialog::Focus(Field field) {
  list_->FocusOrdinal(field);
  list_->Draw();
}

void ChangePasswordDialog::ShowError(int messageId) {
  {
    MessageDialog message(this, kErrorTitle, messageId);
    message.RunModal();
  }
  ShowCursor(true);
  list_->Draw();
}

void ChangePasswordDialog::ClearNewFields() {
  fields_[kNew]->SetValue("");
  fields_[kConfirm]->SetValue("");
  Focus(kNew);
}

bool ChangePasswordDialog::CheckOldPassword() {
  const int status = Authenticate(Runtime::Get().session.user, fields_[kOld]->Value());
  if (status == PAM_SUCCESS || status == PAM_NEW_AUTHTOK_REQD) return true;
  fields_[kOld]->SetValue("");
  ShowError(kWrongOld);
  Focus(kOld);
  return false;
}

bool ChangePasswordDialog::Submit() {
  const std::string& oldPassword = fields_[kOld]->Value();
  const std::string& newPassword = fields_[kNew]->Value();
  if (newPassword != fields_[kConfirm]->Value()) {
    ShowError(kMismatch);
    ClearNewFields();
    return false;
  }
  if (newPassword.empty()) {
    ShowError(kEmpty);
    ClearNewFields();
    return false;
  }
  if (newPassword == oldPassword) {
    int confirmed;
    {
      SamePasswordConfirmDialog warning(this);
      confirmed = warning.RunModal();
    }
    ShowCursor(true);
    list_->Draw();
    if (confirmed == 0) return false;
  }
  Session& session = Runtime::Get().session;
  if (!ChangePassword(session.user, oldPassword, newPassword)) {
    ShowError(kChangeFailed);
    return false;
  }
  RunBackup();
  Log(LOG_INFO, "Login password for user %s has changed", session.user.c_str());
  PostEvent(KonuEvent::LoginPasswdChanged, session.user);
  RefreshHostServices();
  ShowCursor(false);
  session.emptyPassword = newPassword.empty();
  return true;
}

int ChangePasswordDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooterOkCancel);
  ShowCursor(true);
  Focus(kOld);
  for (;;) {
    const int key = GetKey(true);
    if (key == kKeyEsc) {
      ShowCursor(false);
      return 0;
    }
    const bool next = key == KEY_DOWN || key == kKeyTab || IsEnterKey(key);
    switch (Focused()) {
      case kOld:
        if (next && CheckOldPassword()) Focus(kNew);
        break;
      case kNew:
        if (next) {
          Focus(kConfirm);
        } else if (key == KEY_UP) {
          Focus(kOld);
        }
        break;
      case kConfirm:
        if (key == kKeyTab || key == KEY_UP) {
          Focus(kNew);
        } else if (IsEnterKey(key) && Submit()) {
          return 1;
        }
        break;
    }
    if (IsEditingKey(key)) {
      fields_[Focused()]->HandleKey(key);
      list_->Draw();
    }
  }
}

}  // namespace Konu
