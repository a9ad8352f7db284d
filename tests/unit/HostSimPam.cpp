// The simulated host's PAM service "konu": authentication, account checks and password change
// through pam_start_confdir, the way the console's login and password dialogs use it.
#include <gtest/gtest.h>
#include <security/pam_appl.h>

#include <deque>

#include "host/sim/StateFile.h"
#include "tests/harness/SimHost.h"

namespace {

using KonuTest::SimHost;
using Json = nlohmann::json;

// Answers hidden prompts from a queue, one message per call, and records the prompts.
struct Conversation {
  std::deque<std::string> answers;
  std::vector<std::string> prompts;

  static int Answer(int count, const struct pam_message** messages, struct pam_response** responses,
                    void* self) {
    auto* conv = static_cast<Conversation*>(self);
    if (count != 1) return PAM_CONV_ERR;
    auto* reply = static_cast<pam_response*>(calloc(1, sizeof(pam_response)));
    if (messages[0]->msg_style == PAM_PROMPT_ECHO_OFF) {
      conv->prompts.push_back(messages[0]->msg);
      std::string answer = conv->answers.empty() ? "" : conv->answers.front();
      if (!conv->answers.empty()) conv->answers.pop_front();
      reply->resp = strdup(answer.c_str());
    }
    *responses = reply;
    return PAM_SUCCESS;
  }
};

// One PAM transaction on the host's service file, ended with the last status.
class PamSession {
 public:
  PamSession(const SimHost& host, const std::string& user, std::deque<std::string> answers) {
    conv_.answers = std::move(answers);
    struct pam_conv pc = {&Conversation::Answer, &conv_};
    status_ = pam_start_confdir("konu", user.c_str(), &pc, (host.Root() + "/etc/pam.d").c_str(), &handle_);
  }
  ~PamSession() {
    if (handle_) pam_end(handle_, status_);
  }
  PamSession(const PamSession&) = delete;
  PamSession& operator=(const PamSession&) = delete;

  int Started() const { return status_; }
  int Authenticate() { return status_ = pam_authenticate(handle_, PAM_SILENT); }
  int AccountCheck() { return status_ = pam_acct_mgmt(handle_, PAM_SILENT); }
  int ChangeAuthToken() { return status_ = pam_chauthtok(handle_, PAM_SILENT); }
  const std::vector<std::string>& Prompts() const { return conv_.prompts; }

 private:
  Conversation conv_;
  pam_handle_t* handle_ = nullptr;
  int status_ = PAM_SUCCESS;
};

// Login as the console does it: authenticate, then the account check.
int Login(const SimHost& host, const std::string& user, const std::string& password) {
  PamSession pam(host, user, {password});
  EXPECT_EQ(pam.Started(), PAM_SUCCESS);
  int status = pam.Authenticate();
  return status == PAM_SUCCESS ? pam.AccountCheck() : status;
}

// A user with the flags of `user` and the password `password` (the state keeps its hash).
void SetUser(const SimHost& host, const std::string& name, const Json& user, const std::string& password) {
  Konu::Sim::StateFile(host.Root()).Update([&](Json& s) { s["users"][name] = user; });
  host.SetPassword(name, password);
}

Json PlainUser() {
  return {{"passwordHash", ""},      {"uid", 500}, {"denied", false}, {"expired", false},
          {"serviceAccount", false}, {"qal", true}};
}

class HostSimPam : public ::testing::Test {
 protected:
  SimHost host{KONU_HOSTSIM_BIN};
};

// The empty secret is refused while root has a password, and is root's only one once its
// password was never set. (root's password and a wrong one through the console's PAM:
// e2e.ConsoleLogin.WrongThenRightPasswordOpensTheMenuWithEveryRecord; an unknown name:
// e2e.ConsoleLogin.ANameThatIsNoAccountIsRecordedAsUnknown.)
TEST_F(HostSimPam, EmptyPasswordUserLogsInWithTheEmptySecret) {
  EXPECT_NE(Login(host, "root", ""), PAM_SUCCESS);
  SetUser(host, "root", PlainUser(), "");
  EXPECT_EQ(Login(host, "root", ""), PAM_SUCCESS);
  EXPECT_NE(Login(host, "root", "konu"), PAM_SUCCESS);
}

TEST_F(HostSimPam, ServiceAccountCannotLogIn) { EXPECT_NE(Login(host, "konu", ""), PAM_SUCCESS); }

TEST_F(HostSimPam, ChangeRefusedForMismatchOrShortPasswords) {
  Konu::Sim::StateFile(host.Root()).Update([](Json& s) { s["passwordPolicy"]["minLength"] = 8; });
  for (const auto& [first, second] :
       std::vector<std::pair<std::string, std::string>>{{"Longenough1", "Longenough2"}, {"short", "short"}}) {
    PamSession pam(host, "root", {"konu", first, second});
    ASSERT_EQ(pam.Authenticate(), PAM_SUCCESS);
    EXPECT_EQ(pam.ChangeAuthToken(), PAM_AUTHTOK_ERR) << first;
  }
  EXPECT_TRUE(host.PasswordIs("root", "konu"));
  EXPECT_EQ(Login(host, "root", "konu"), PAM_SUCCESS);
}

TEST_F(HostSimPam, MalformedStateMakesAuthenticationUnavailable) {
  KonuTest::RunCommandLine({"/bin/sh", "-c", "echo '{broken' > " + host.File("/etc/konu-sim/host.json")});
  EXPECT_EQ(Login(host, "root", "konu"), PAM_AUTHINFO_UNAVAIL);
}

}  // namespace
