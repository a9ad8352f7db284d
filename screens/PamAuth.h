// PAM requests of the login and password screens over the service "konu": authentication
// and password change, each with its own conversation, and the handle that ends them.
#pragma once

#include <security/pam_appl.h>

#include <string>

namespace Konu {

// The PAM service of the console.
inline constexpr const char kPamService[] = "konu";

// What the login conversation answers.
struct AuthRequest {
  std::string user;
  std::string secret;
};

// What the change conversation answers; `answered` counts hidden prompts across calls.
struct ChangeRequest {
  std::string user;
  std::string oldPassword;
  std::string newPassword;
  int answered = 0;
};

// The login conversation (`appdata` is an AuthRequest): exactly one message per call, else
// PAM_CONV_ERR. A hidden prompt gets a copy of the secret, any other message no answer.
int LoginConversation(int count, const pam_message** messages, pam_response** responses, void* appdata);

// The change conversation (`appdata` is a ChangeRequest): one message per call; hidden
// prompts get the old password while the count is 0, the new one while it is 1 or 2, and
// nothing after that; each answered hidden prompt raises the count.
int ChangeConversation(int count, const pam_message** messages, pam_response** responses, void* appdata);

struct PamLibrary;

// One PAM transaction; pam_end with the last status when it goes. On a simulated host the
// service file is read from the host root's /etc/pam.d.
class PamTransaction {
 public:
  PamTransaction(const std::string& user, const pam_conv& conversation);
  ~PamTransaction();
  PamTransaction(const PamTransaction&) = delete;
  PamTransaction& operator=(const PamTransaction&) = delete;

  bool Started() const { return handle_ != nullptr; }
  // Each stores its status as the last one and returns it.
  int Authenticate(int flags);
  int AccountCheck(int flags);
  int ChangeAuthToken(int flags);
  int SetCredentials(int flags);
  int LastStatus() const { return status_; }

 private:
  // Keeps the status of the PAM call `call`; one that is no refusal of the credentials
  // (a missing service file or module, a module's own failure) is logged with PAM's text.
  int Store(const char* call, int status);

  pam_conv conversation_;
  const PamLibrary* pam_;  // null when libpam cannot be loaded: nothing starts
  pam_handle_t* handle_ = nullptr;
  int status_ = PAM_SUCCESS;
};

// Whether a PAM status refuses the user or the secret, as opposed to PAM failing to decide.
bool IsCredentialRefusal(int status);

// pam_authenticate and, when it succeeds, pam_acct_mgmt (both silent) for `user` with
// `secret`. Returns the last PAM status (PAM_SUCCESS = 0).
int Authenticate(const std::string& user, const std::string& secret);

// Authenticates with the old password and changes it to the new one; an expired password
// is accepted. True when the change and the credential refresh succeeded.
bool ChangePassword(const std::string& user, const std::string& oldPassword, const std::string& newPassword);

}  // namespace Konu
