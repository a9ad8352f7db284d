// PAM authentication and password change for the login and password screens.
#include "screens/PamAuth.h"

#include <syslog.h>

#include <cstdlib>
#include <cstring>

#include "host/HostRoot.h"
#include "host/Log.h"
#include "screens/PamLibrary.h"

namespace Konu {
namespace {

// A reply array of one entry with `answer` (null for no answer); null when out of memory.
pam_response* Reply(const char* answer) {
  auto* reply = static_cast<pam_response*>(calloc(1, sizeof(pam_response)));
  if (reply == nullptr) return nullptr;
  if (answer != nullptr) {
    reply->resp = strdup(answer);
    if (reply->resp == nullptr) {
      free(reply);
      return nullptr;
    }
  }
  return reply;
}

// Checks the arguments every conversation insists on: one message, all pointers given.
bool OneMessage(int count, const pam_message** messages, pam_response** responses, void* appdata) {
  return count == 1 && messages != nullptr && messages[0] != nullptr && responses != nullptr &&
         appdata != nullptr;
}

int Answer(const char* answer, pam_response** responses) {
  pam_response* reply = Reply(answer);
  if (reply == nullptr) return PAM_BUF_ERR;
  *responses = reply;
  return PAM_SUCCESS;
}

}  // namespace

bool IsCredentialRefusal(int status) {
  switch (status) {
    case PAM_AUTH_ERR:
    case PAM_USER_UNKNOWN:
    case PAM_CRED_INSUFFICIENT:
    case PAM_MAXTRIES:
    case PAM_PERM_DENIED:
    case PAM_ACCT_EXPIRED:
    case PAM_NEW_AUTHTOK_REQD:
    case PAM_AUTHTOK_ERR:
    case PAM_AUTHTOK_RECOVERY_ERR:
    case PAM_TRY_AGAIN:
      return true;
    default:
      return false;
  }
}

int LoginConversation(int count, const pam_message** messages, pam_response** responses, void* appdata) {
  if (!OneMessage(count, messages, responses, appdata)) return PAM_CONV_ERR;
  const auto* request = static_cast<const AuthRequest*>(appdata);
  const bool hidden = messages[0]->msg_style == PAM_PROMPT_ECHO_OFF;
  return Answer(hidden ? request->secret.c_str() : nullptr, responses);
}

int ChangeConversation(int count, const pam_message** messages, pam_response** responses, void* appdata) {
  if (!OneMessage(count, messages, responses, appdata)) return PAM_CONV_ERR;
  auto* request = static_cast<ChangeRequest*>(appdata);
  const char* answer = nullptr;
  if (messages[0]->msg_style == PAM_PROMPT_ECHO_OFF) {
    if (request->answered == 0) {
      answer = request->oldPassword.c_str();
    } else if (request->answered <= 2) {
      answer = request->newPassword.c_str();
    }
    if (answer != nullptr) ++request->answered;
  }
  return Answer(answer, responses);
}

PamTransaction::PamTransaction(const std::string& user, const pam_conv& conversation)
    : conversation_(conversation), pam_(LoadPam()) {
  if (!pam_) {
    status_ = PAM_SYSTEM_ERR;  // LoadPam has logged why
    return;
  }
  int status;
  if (IsSimulatedHost()) {
    status = pam_->startConfdir(kPamService, user.c_str(), &conversation_, HostPath("/etc/pam.d").c_str(),
                                &handle_);
  } else {
    status = pam_->start(kPamService, user.c_str(), &conversation_, &handle_);
  }
  Store("pam_start", status);
  if (status != PAM_SUCCESS && handle_ != nullptr) {
    pam_->end(handle_, status);
    handle_ = nullptr;
  }
}

PamTransaction::~PamTransaction() {
  if (handle_ != nullptr) pam_->end(handle_, status_);
}

int PamTransaction::Store(const char* call, int status) {
  if (status != PAM_SUCCESS && !IsCredentialRefusal(status)) {
    // No user name here: the name field may hold a mistyped password.
    Log(LOG_AUTH | LOG_ERR, "PAM service %s: %s failed: %s", kPamService, call,
        pam_->strerror(handle_, status));
  }
  return status_ = status;
}

int PamTransaction::Authenticate(int flags) {
  return Store("pam_authenticate", handle_ ? pam_->authenticate(handle_, flags) : PAM_SYSTEM_ERR);
}

int PamTransaction::AccountCheck(int flags) {
  return Store("pam_acct_mgmt", handle_ ? pam_->acctMgmt(handle_, flags) : PAM_SYSTEM_ERR);
}

int PamTransaction::ChangeAuthToken(int flags) {
  return Store("pam_chauthtok", handle_ ? pam_->chauthtok(handle_, flags) : PAM_SYSTEM_ERR);
}

int PamTransaction::SetCredentials(int flags) {
  return Store("pam_setcred", handle_ ? pam_->setcred(handle_, flags) : PAM_SYSTEM_ERR);
}

int Authenticate(const std::string& user, const std::string& secret) {
  AuthRequest request{user, secret};
  PamTransaction pam(user, pam_conv{&LoginConversation, &request});
  if (!pam.Started()) return pam.LastStatus();
  if (pam.Authenticate(PAM_SILENT) == PAM_SUCCESS) pam.AccountCheck(PAM_SILENT);
  return pam.LastStatus();
}

bool ChangePassword(const std::string& user, const std::string& oldPassword, const std::string& newPassword) {
  ChangeRequest request{user, oldPassword, newPassword, 0};
  PamTransaction pam(user, pam_conv{&ChangeConversation, &request});
  if (!pam.Started()) return false;
  request.answered = 0;
  int status = pam.Authenticate(PAM_SILENT);
  if (status != PAM_SUCCESS && status != PAM_NEW_AUTHTOK_REQD) return false;
  status = pam.AccountCheck(PAM_SILENT);
  if (status != PAM_SUCCESS && status != PAM_NEW_AUTHTOK_REQD) return false;
  if (pam.ChangeAuthToken(PAM_SILENT) != PAM_SUCCESS) return false;
  return pam.SetCredentials(PAM_REFRESH_CRED) == PAM_SUCCESS;
}

}  // namespace Konu
