// The login and change conversations, called directly and through the simulated host's PAM
// service "konu": one message per call, the secret for every hidden prompt of a login, the
// old and new passwords by the count of answered prompts across calls of a change; and what
// that service answers each kind of user, a broken state or stack, and a refused change.
#include <gtest/gtest.h>
#include <security/pam_appl.h>

#include <cstdlib>
#include <cstring>
#include <deque>
#include <fstream>

#include "host/HostRoot.h"
#include "host/sim/StateFile.h"
#include "screens/PamAuth.h"
#include "tests/harness/SimHost.h"
#include "tests/unit/OpsTestSupport.h"

namespace Konu {
namespace {

// Calls a conversation with the given messages and keeps (and frees) its answers.
class Call {
 public:
  Call(decltype(&LoginConversation) conversation, void* appdata, std::vector<pam_message> messages)
      : messages_(std::move(messages)) {
    std::vector<const pam_message*> pointers;
    for (const pam_message& m : messages_) pointers.push_back(&m);
    status_ = conversation(static_cast<int>(pointers.size()), pointers.data(), &responses_, appdata);
  }
  ~Call() {
    if (!responses_) return;
    for (size_t i = 0; i < messages_.size(); ++i) free(responses_[i].resp);
    free(responses_);
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  int Status() const { return status_; }
  // The answer text, or "(none)" for a null answer.
  std::string Answer() const {
    if (!responses_) return "(no reply)";
    return responses_[0].resp ? responses_[0].resp : "(none)";
  }

 private:
  std::vector<pam_message> messages_;
  pam_response* responses_ = nullptr;
  int status_ = -1;
};

pam_message Hidden(const char* text = "Password: ") { return pam_message{PAM_PROMPT_ECHO_OFF, text}; }
pam_message Shown(const char* text = "Login: ") { return pam_message{PAM_PROMPT_ECHO_ON, text}; }
pam_message Info(const char* text = "Welcome") { return pam_message{PAM_TEXT_INFO, text}; }

TEST(LoginConversation, AnswersEveryHiddenPromptWithTheSecretOneCallAtATime) {
  AuthRequest request{"root", "s3cret"};
  Call first(&LoginConversation, &request, {Hidden()});
  Call second(&LoginConversation, &request, {Hidden("Again: ")});
  EXPECT_EQ(PAM_SUCCESS, first.Status());
  EXPECT_EQ(PAM_SUCCESS, second.Status());
  EXPECT_EQ("s3cret", first.Answer());
  EXPECT_EQ("s3cret", second.Answer());

  Call shown(&LoginConversation, &request, {Shown()});
  Call info(&LoginConversation, &request, {Info()});
  EXPECT_EQ(PAM_SUCCESS, shown.Status());
  EXPECT_EQ("(none)", shown.Answer());
  EXPECT_EQ("(none)", info.Answer());
}

TEST(LoginConversation, TwoMessagesInOneCallOrMissingArgumentsFail) {
  AuthRequest request{"root", "s3cret"};
  Call two(&LoginConversation, &request, {Hidden(), Hidden()});
  EXPECT_EQ(PAM_CONV_ERR, two.Status());
  EXPECT_EQ("(no reply)", two.Answer());
  Call none(&LoginConversation, &request, {});
  EXPECT_EQ(PAM_CONV_ERR, none.Status());
  Call noRequest(&LoginConversation, nullptr, {Hidden()});
  EXPECT_EQ(PAM_CONV_ERR, noRequest.Status());
  const pam_message message = Hidden();
  const pam_message* pointer = &message;
  EXPECT_EQ(PAM_CONV_ERR, LoginConversation(1, &pointer, nullptr, &request));
}

TEST(ChangeConversation, CountsHiddenPromptsAcrossCallsOldThenNewTwiceThenNothing) {
  ChangeRequest request{"root", "old-one", "new-one", 0};
  Call info(&ChangeConversation, &request, {Info()});
  EXPECT_EQ(0, request.answered) << "other messages do not count";
  Call old(&ChangeConversation, &request, {Hidden()});
  Call shown(&ChangeConversation, &request, {Shown()});
  Call fresh(&ChangeConversation, &request, {Hidden("New password: ")});
  Call again(&ChangeConversation, &request, {Hidden("Retype new password: ")});
  Call more(&ChangeConversation, &request, {Hidden("Once more: ")});
  EXPECT_EQ("(none)", info.Answer());
  EXPECT_EQ("old-one", old.Answer());
  EXPECT_EQ("(none)", shown.Answer());
  EXPECT_EQ("new-one", fresh.Answer());
  EXPECT_EQ("new-one", again.Answer());
  EXPECT_EQ("(none)", more.Answer());
  EXPECT_EQ(PAM_SUCCESS, more.Status());
  EXPECT_EQ(3, request.answered);

  Call two(&ChangeConversation, &request, {Hidden(), Info()});
  EXPECT_EQ(PAM_CONV_ERR, two.Status());
}

// Answers each hidden prompt with the next of the queued answers (a std::deque<std::string>).
int QueuedAnswers(int count, const pam_message** messages, pam_response** responses, void* appdata) {
  auto* answers = static_cast<std::deque<std::string>*>(appdata);
  if (count != 1) return PAM_CONV_ERR;
  auto* reply = static_cast<pam_response*>(calloc(1, sizeof(pam_response)));
  if (messages[0]->msg_style == PAM_PROMPT_ECHO_OFF && !answers->empty()) {
    reply->resp = strdup(answers->front().c_str());
    answers->pop_front();
  }
  *responses = reply;
  return PAM_SUCCESS;
}

// The requests against the PAM stack of a fresh simulated host; what they log is kept off
// the machine's log.
class PamRequests : public ::testing::Test {
 protected:
  void SetUp() override { SetHostRoot(host.Root()); }
  void TearDown() override { SetHostRoot("/"); }

  void AddUser(const std::string& name, const std::string& password, bool denied, bool expired) {
    Sim::StateFile(host.Root()).Update([&](nlohmann::json& state) {
      state["users"][name] = {{"passwordHash", ""},      {"uid", 600},
                              {"denied", denied},        {"expired", expired},
                              {"serviceAccount", false}, {"qal", true}};
    });
    host.SetPassword(name, password);
  }
  KonuTest::SimHost host{KONU_HOSTSIM_BIN};
  OpsTest::CapturedLog log_;
};

TEST_F(PamRequests, AuthenticateGivesTheStatusOfEachKindOfUser) {
  AddUser("dave", "secret1", /*denied=*/true, false);
  AddUser("erin", "old-pass", false, /*expired=*/true);
  EXPECT_EQ(PAM_SUCCESS, Authenticate("root", "konu"));
  const int wrong = Authenticate("root", "wrong");
  EXPECT_NE(PAM_SUCCESS, wrong);
  EXPECT_NE(PAM_PERM_DENIED, wrong);
  EXPECT_NE(PAM_NEW_AUTHTOK_REQD, wrong);
  EXPECT_NE(PAM_SUCCESS, Authenticate("root", "")) << "the empty secret while root has a password";
  EXPECT_NE(PAM_SUCCESS, Authenticate("konu", "")) << "the service account";
  EXPECT_EQ(PAM_PERM_DENIED, Authenticate("dave", "secret1"));
  EXPECT_EQ(PAM_NEW_AUTHTOK_REQD, Authenticate("erin", "old-pass"));
  EXPECT_NE(PAM_NEW_AUTHTOK_REQD, Authenticate("erin", "wrong")) << "a wrong password is not an expired one";
  // A password never set: the empty secret is the only one.
  AddUser("root", "", false, false);
  EXPECT_EQ(PAM_SUCCESS, Authenticate("root", ""));
  EXPECT_NE(PAM_SUCCESS, Authenticate("root", "konu"));
}

TEST_F(PamRequests, AMissingServiceFileOrABrokenStateFailsWithoutCrashing) {
  const std::string serviceFile = KonuTest::ReadFileText(host.File("/etc/pam.d/konu"));
  std::remove(host.File("/etc/pam.d/konu").c_str());
  EXPECT_NE(PAM_SUCCESS, Authenticate("root", "konu"));
  EXPECT_FALSE(ChangePassword("root", "konu", "other-1"));
  std::ofstream(host.File("/etc/pam.d/konu")) << serviceFile;
  ASSERT_EQ(PAM_SUCCESS, Authenticate("root", "konu"));
  std::ofstream(host.File("/etc/konu-sim/host.json"), std::ios::trunc) << "{broken";
  EXPECT_EQ(PAM_AUTHINFO_UNAVAIL, Authenticate("root", "konu"));
}

TEST_F(PamRequests, ChangePasswordAcceptsAnExpiredOldPasswordAndRefusesAWrongOne) {
  AddUser("erin", "old-pass", false, /*expired=*/true);
  EXPECT_FALSE(ChangePassword("erin", "wrong", "new-pass"));
  EXPECT_TRUE(host.PasswordIs("erin", "old-pass"));
  ASSERT_TRUE(ChangePassword("erin", "old-pass", "new-pass"));
  EXPECT_EQ(PAM_SUCCESS, Authenticate("erin", "new-pass"));
}

// The new password typed again differently, or too short for the host's policy: refused,
// and the old one still works.
TEST_F(PamRequests, AChangeIsRefusedForAMismatchedRetypeOrAShortPassword) {
  Sim::StateFile(host.Root()).Update([](nlohmann::json& s) { s["passwordPolicy"]["minLength"] = 8; });
  std::deque<std::string> answers = {"konu", "Longenough1", "Longenough2"};
  {
    PamTransaction pam("root", pam_conv{&QueuedAnswers, &answers});
    ASSERT_EQ(PAM_SUCCESS, pam.Authenticate(PAM_SILENT));
    EXPECT_EQ(PAM_AUTHTOK_ERR, pam.ChangeAuthToken(PAM_SILENT));
  }
  EXPECT_FALSE(ChangePassword("root", "konu", "short"));
  EXPECT_TRUE(host.PasswordIs("root", "konu"));
  EXPECT_EQ(PAM_SUCCESS, Authenticate("root", "konu"));
}

}  // namespace
}  // namespace Konu
