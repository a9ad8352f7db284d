// LoginDialog: the two forms, the key loop and the outcome of each attempt.
#include "screens/LoginDialog.h"

#include <curses.h>
#include <security/pam_appl.h>
#include <syslog.h>

#include <vector>

#include "app/Runtime.h"
#include "app/Session.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "ops/Events.h"
#include "ops/KeyboardDialog.h"
#include "screens/ChangePasswordDialog.h"
#include "screens/HostAndDomain.h"
#include "screens/PamAuth.h"
#include "ui/Footers.h"
#include "ui/FormKeys.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 13;
constexpr int kHeaderHeight = 6;
constexpr int kFieldWidth = 30;

enum StringId {
  kTitle = 136,           // "Authentication Required"
  kPasswordText = 137,    // "Enter an authorized login name and password for "
  kPinText = 138,         // "Enter the smart card login PIN for "
  kLoginName = 141,       // "Login Name:"
  kLoginId = 142,         // "Login Id:"
  kPassword = 143,        // "Password:"
  kPin = 144,             // "PIN:"
  kFailedTitle = 145,     // "Authentication failed"
  kInvalidLogin = 146,    // "Invalid login or password."
  kNoPermission = 147,    // "User does not have permission to login to KONU."
  kPasswordExpired = 148  // "Password has expired.\nYou will be prompted ..."
};

// Keep the stray '>' in the first colour tag: operators' screenshots and manuals show this
// footer exactly as it stands.
constexpr const char* kPinFooter =
    "{align:left}{color:black>}<F3>{/color} {color:dark-grey}Switch PIN/Password Login{/color}{/align}"
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  {color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";

// Logs, audit records and events name a login that is not an account of the host by this
// word, as login(1) does: what was typed may be a password entered in the wrong field.
constexpr const char kUnknownUser[] = "UNKNOWN";

// The name under which an attempt for `typed` is recorded.
std::string RecordedName(const std::string& typed) {
  try {
    if (Runtime::Get().Host().CreateSystemInfo()->HasAccount(typed)) return typed;
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Unable to look up the login name: %s", e.what());
  }
  return kUnknownUser;
}

}  // namespace

LoginDialog::LoginDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  CheckSmartCard();
  pinMode_ = CardUserPresent();

  std::vector<Item*> items;
  if (Runtime::Get().localConsole) {
    keyboardLine_ = std::make_unique<LabelItem>(KeyboardText(), true);
    items.push_back(keyboardLine_.get());
  }
  name_ = std::make_unique<InputItem>("", "", kFieldWidth);
  secret_ = std::make_unique<InputItem>("", "", kFieldWidth);
  secret_->SetMasked(true);
  items.push_back(name_.get());
  items.push_back(secret_.get());

  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems(items);
  LayOut();
}

LoginDialog::~LoginDialog() = default;

std::string LoginDialog::KeyboardText() const {
  std::string layout;
  try {
    layout = Runtime::Get().Host().CreateSystemInfo()->GetKeyboardLayout();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Unable to read the keyboard layout: %s", e.what());
  }
  return "Configured Keyboard (" + LiteralMarkup(layout) + ")";
}

void LoginDialog::LayOut() {
  const std::string host = HostAndDomain() + ".";
  if (pinMode_) {
    SetText(GetString(kPinText) + host);
    SetFooter(kPinFooter);
    name_->SetLabel(GetString(kLoginId));
    name_->SetValue(Runtime::Get().session.cardUserId);
    secret_->SetLabel(GetString(kPin));
  } else {
    SetText(GetString(kPasswordText) + host);
    SetFooter(kFooterOkCancel);
    name_->SetLabel(GetString(kLoginName));
    name_->SetValue("root");
    secret_->SetLabel(GetString(kPassword));
  }
  secret_->SetValue("");
  SetTitle(GetString(kTitle));
  list_->Draw();
}

void LoginDialog::FocusLine(int line) {
  list_->FocusOrdinal(line);
  list_->Draw();
}

void LoginDialog::ChooseKeyboard() {
  {
    KeyboardDialog keyboard(this);
    keyboard.RunModal();
  }
  Redraw();
  Update();
  keyboardLine_->SetText(KeyboardText());
  list_->Draw();
}

void LoginDialog::ShowFailure(int messageId) {
  MessageDialog message(this, kFailedTitle, messageId);
  message.RunModal();
}

bool LoginDialog::TryLogin() {
  user_ = name_->Value();
  const std::string secret = secret_->Value();
  const int status = Authenticate(user_, secret);
  const std::string recorded = RecordedName(user_);
  const char* user = recorded.c_str();

  switch (status) {
    case PAM_SUCCESS:
      SetLoggedInUser(user_);
      Runtime::Get().session.emptyPassword = secret.empty();
      // Emergency on the auth facility: the host's log collectors key on this level.
      Log(LOG_AUTH | LOG_EMERG, "Authentication of user %s succeeded", user);
      Log(LOG_INFO, "User %s logged in", user);
      WriteAudit("login.connect", recorded, 1);
      ShowCursor(false);
      return true;
    case PAM_PERM_DENIED:
      Log(LOG_AUTH | LOG_ERR, "Access denied for user %s", user);
      WriteAudit("login.connect", recorded, 0, {{"reason", "No permission"}});
      PostEvent(KonuEvent::LoginAccessDenied, recorded);
      ShowFailure(kNoPermission);
      break;
    case PAM_NEW_AUTHTOK_REQD: {
      SetLoggedInUser(user_);
      Log(LOG_AUTH | LOG_ERR, "Password has expired for user %s", user);
      WriteAudit("login.connect", recorded, 0, {{"reason", "Password expired"}});
      PostEvent(KonuEvent::LoginAccessDenied, recorded);
      ShowFailure(kPasswordExpired);
      ChangePasswordDialog change(this);
      change.RunModal();
      break;
    }
    default:
      Log(LOG_AUTH | LOG_ERR, "Authentication of user %s failed", user);
      WriteAudit("login.connect", recorded, 0, {{"reason", "Invalid Login"}});
      PostEvent(KonuEvent::LoginFailed, recorded);
      ShowFailure(kInvalidLogin);
      break;
  }
  secret_->SetValue("");
  ShowCursor(true);
  list_->Draw();
  return false;
}

int LoginDialog::EventLoop() {
  ShowCursor(true);
  FocusLine(0);
  for (;;) {
    const int key = GetKey(true);
    const int line = FocusedLine();
    const int last = LineCount() - 1;
    Item* focused = list_->FocusedItem();

    if (key == kKeyEsc) {
      ShowCursor(false);
      SetActive(false);
      return 0;
    }
    if (IsEnterKey(key) && keyboardLine_ && focused == keyboardLine_.get()) {
      ChooseKeyboard();
    } else if (IsEnterKey(key) && line == last) {
      if (TryLogin()) return 1;
    } else if (key == kKeyTab || IsEnterKey(key)) {
      FocusLine(line < last ? line + 1 : 0);
    } else if (key == KEY_DOWN) {
      list_->Down();
    } else if (key == KEY_UP) {
      list_->Up();
    } else if (key == KEY_F(3)) {
      pinMode_ = !pinMode_;
      LayOut();
    } else if (IsEditingKey(key) && (focused == name_.get() || focused == secret_.get())) {
      static_cast<InputItem*>(focused)->HandleKey(key);
      list_->Draw();
    }
  }
}

}  // namespace Konu
