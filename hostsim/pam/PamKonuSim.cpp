// pam_konusim: the PAM service of a simulated host: passwords checked against the hashes in
// the host state, denied users, expired passwords and password change.
#define PAM_SM_AUTH
#define PAM_SM_ACCOUNT
#define PAM_SM_PASSWORD
#include <security/pam_ext.h>
#include <security/pam_modules.h>
#include <syslog.h>

#include <cstring>
#include <string>

#include "host/sim/StateFile.h"
#include "hostsim/pam/PasswordHash.h"

namespace {

using Json = nlohmann::json;
using Konu::Sim::StateFile;

std::string RootArgument(int argc, const char** argv) {
  for (int i = 0; i < argc; ++i)
    if (std::strncmp(argv[i], "root=", 5) == 0) return argv[i] + 5;
  return "";
}

std::string UserName(pam_handle_t* pamh) {
  const void* item = nullptr;
  if (pam_get_item(pamh, PAM_USER, &item) != PAM_SUCCESS || item == nullptr) return "";
  return static_cast<const char*>(item);
}

// The state's entry for a user who may log in at the console, or null.
const Json* ConsoleUser(const Json& state, const std::string& name) {
  if (name.empty() || !state.contains("users") || !state["users"].contains(name)) return nullptr;
  const Json& user = state["users"][name];
  return user.value("serviceAccount", false) ? nullptr : &user;
}

// One hidden prompt through the application's conversation; false when it gave no answer.
bool Prompt(pam_handle_t* pamh, const char* text, std::string* answer) {
  char* response = nullptr;
  if (pam_prompt(pamh, PAM_PROMPT_ECHO_OFF, &response, "%s", text) != PAM_SUCCESS || response == nullptr)
    return false;
  *answer = response;
  std::memset(response, 0, std::strlen(response));
  std::free(response);
  return true;
}

int ChangePassword(pam_handle_t* pamh, const std::string& root, const std::string& name) {
  std::string first, second;
  if (!Prompt(pamh, "New password: ", &first) || !Prompt(pamh, "Retype new password: ", &second))
    return PAM_AUTHTOK_ERR;
  if (first != second) {
    pam_error(pamh, "Sorry, passwords do not match.");
    return PAM_AUTHTOK_ERR;
  }
  // Hashed before the lock is taken: a hash takes a while.
  const std::string hash = Konu::Sim::HashPassword(first);
  StateFile file(root);
  int status = PAM_SUCCESS;
  file.Update([&](Json& state) {
    size_t minLength = state.value("/passwordPolicy/minLength"_json_pointer, 1);
    if (first.size() < minLength || first.empty()) {
      status = PAM_AUTHTOK_ERR;
      return;  // written back unchanged
    }
    Json& user = state["users"][name];
    user["passwordHash"] = hash;
    user["expired"] = false;
  });
  if (status != PAM_SUCCESS) {
    pam_error(pamh, "The password does not meet the requirements of this host.");
    return status;
  }
  pam_set_item(pamh, PAM_AUTHTOK, first.c_str());
  return PAM_SUCCESS;
}

// Runs one module call; errors of the state become PAM_AUTHINFO_UNAVAIL, logged.
template <typename Body>
int Guarded(pam_handle_t* pamh, int argc, const char** argv, Body body) {
  std::string root = RootArgument(argc, argv);
  if (root.empty()) {
    pam_syslog(pamh, LOG_ERR, "pam_konusim: missing root= argument");
    return PAM_SERVICE_ERR;
  }
  try {
    return body(root);
  } catch (const std::exception& e) {
    pam_syslog(pamh, LOG_ERR, "pam_konusim: %s", e.what());
    return PAM_AUTHINFO_UNAVAIL;
  }
}

}  // namespace

extern "C" {

// Asks for the password even for a name the host does not know, so the prompts give
// nothing away, and checks it against the user's hash.
PAM_EXTERN int pam_sm_authenticate(pam_handle_t* pamh, int, int argc, const char** argv) {
  return Guarded(pamh, argc, argv, [pamh](const std::string& root) {
    const char* password = nullptr;
    const int asked = pam_get_authtok(pamh, PAM_AUTHTOK, &password, nullptr);
    if (asked != PAM_SUCCESS) return asked;
    if (password == nullptr) return PAM_AUTH_ERR;
    Json state = StateFile(root).Read();
    const Json* user = ConsoleUser(state, UserName(pamh));
    if (user == nullptr) return PAM_USER_UNKNOWN;
    return Konu::Sim::PasswordMatches(user->value("passwordHash", ""), password) ? PAM_SUCCESS : PAM_AUTH_ERR;
  });
}

PAM_EXTERN int pam_sm_setcred(pam_handle_t*, int, int, const char**) { return PAM_SUCCESS; }

PAM_EXTERN int pam_sm_acct_mgmt(pam_handle_t* pamh, int, int argc, const char** argv) {
  return Guarded(pamh, argc, argv, [pamh](const std::string& root) {
    Json state = StateFile(root).Read();
    const Json* user = ConsoleUser(state, UserName(pamh));
    if (user == nullptr) return PAM_USER_UNKNOWN;
    if (user->value("denied", false)) return PAM_PERM_DENIED;
    if (user->value("expired", false)) return PAM_NEW_AUTHTOK_REQD;
    return PAM_SUCCESS;
  });
}

PAM_EXTERN int pam_sm_chauthtok(pam_handle_t* pamh, int flags, int argc, const char** argv) {
  return Guarded(pamh, argc, argv, [pamh, flags](const std::string& root) {
    std::string name = UserName(pamh);
    if (ConsoleUser(StateFile(root).Read(), name) == nullptr) return PAM_USER_UNKNOWN;
    if (flags & PAM_PRELIM_CHECK) return PAM_SUCCESS;
    if (!(flags & PAM_UPDATE_AUTHTOK)) return PAM_SERVICE_ERR;
    return ChangePassword(pamh, root, name);
  });
}

}  // extern "C"
