// The console's PAM requests through the machine's real pam_unix and the PAM service file
// the package installs. In a private mount namespace a temporary /etc (one user's passwd
// and shadow, the distribution's common stacks, the project's /etc/pam.d/konu) is bound
// over the machine's, so nothing of the machine's own accounts is read or changed.
#include <gtest/gtest.h>
#include <sched.h>
#include <security/pam_appl.h>
#include <sys/mount.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>

#include "host/Log.h"
#include "screens/PamAuth.h"
#include "tests/harness/SimHost.h"
#include "tests/harness/TemporaryAccounts.h"

namespace fs = std::filesystem;
using KonuTest::ReadFileText;

namespace {

constexpr const char* kUser = KonuTest::TemporaryAccounts::kUser;
constexpr const char* kPassword = KonuTest::TemporaryAccounts::kPassword;
constexpr const char kNewPassword[] = "Fresh-Horse-93";

// Keeps the console's log lines out of the machine's log.
class NoLog : public Konu::LogSink {
 public:
  void Write(int, const std::string&) override {}
};

class LinuxPam : public ::testing::Test {
 protected:
  void SetUp() override {
    machinePasswd_ = ReadFileText("/etc/passwd");
    machineShadow_ = ReadFileText("/etc/shadow");
  }
  void TearDown() override {
    EXPECT_EQ(ReadFileText("/etc/passwd"), machinePasswd_);
    EXPECT_EQ(ReadFileText("/etc/shadow"), machineShadow_);
  }

  // Runs `body` in a child inside its own mount namespace with the temporary /etc, and
  // returns what it wrote to its pipe; "skip: WHY" where the namespace is not permitted.
  std::string InNamespace(const std::function<std::string()>& body) {
    int fds[2];
    if (pipe(fds) != 0) return "pipe failed";
    pid_t pid = fork();
    if (pid == 0) {
      close(fds[0]);
      std::string out;
      if (unshare(CLONE_NEWNS) != 0)
        out = std::string("skip: unshare(CLONE_NEWNS): ") + std::strerror(errno);
      else if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
               mount(etc_.c_str(), "/etc", nullptr, MS_BIND | MS_REC, nullptr) != 0)
        out = std::string("skip: mount: ") + std::strerror(errno);
      else
        out = body();
      if (write(fds[1], out.data(), out.size()) < 0) _exit(2);
      _exit(0);
    }
    close(fds[1]);
    std::string out;
    char buffer[512];
    for (ssize_t n; (n = read(fds[0], buffer, sizeof buffer)) > 0;)
      out.append(buffer, static_cast<size_t>(n));
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    return out;
  }

  KonuTest::TempDir dir_;
  KonuTest::TemporaryAccounts accounts_{dir_.Path()};
  const std::string etc_ = accounts_.Etc();
  std::string machinePasswd_, machineShadow_;
};

TEST_F(LinuxPam, RealPamUnixAuthenticatesRefusesReportsExpiryAndChanges) {
  std::string result = InNamespace([] {
    Konu::SetLogSink(std::make_unique<NoLog>());
    std::string out;
    auto note = [&out](const char* what, int value) {
      out += std::string(what) + "=" + std::to_string(value) + "\n";
    };
    note("right", Konu::Authenticate(kUser, kPassword));
    note("wrong", Konu::Authenticate(kUser, "wrong-pass"));
    note("unknown", Konu::Authenticate("nobody-konu", kPassword));
    note("changed", Konu::ChangePassword(kUser, kPassword, kNewPassword));
    note("new", Konu::Authenticate(kUser, kNewPassword));
    note("old", Konu::Authenticate(kUser, kPassword));
    return out;
  });
  if (result.rfind("skip: ", 0) == 0) GTEST_SKIP() << result;
  // The common stack answers an unknown user as it answers a wrong password.
  EXPECT_EQ(result, "right=" + std::to_string(PAM_SUCCESS) + "\nwrong=" + std::to_string(PAM_AUTH_ERR) +
                        "\nunknown=" + std::to_string(PAM_AUTH_ERR) + "\nchanged=1\nnew=" +
                        std::to_string(PAM_SUCCESS) + "\nold=" + std::to_string(PAM_AUTH_ERR) + "\n");
  // The change reached the temporary shadow, in pam_unix's own hash.
  std::string shadow = ReadFileText(etc_ + "/shadow");
  EXPECT_EQ(shadow.find("konusalt"), std::string::npos) << shadow;
  EXPECT_NE(shadow.find(std::string(kUser) + ":$"), std::string::npos) << shadow;

  // Expiry from the shadow fields: a password to be changed now or aged out is reported as
  // such and can be changed. An expired account is refused and cannot be changed; the
  // common stacks end every refusal of pam_unix in pam_deny, so it reads as a wrong password.
  std::string hash = shadow.substr(shadow.find(kUser) + strlen(kUser) + 1);
  hash.erase(hash.find(':'));
  const struct {
    const char* name;
    const char* lastChange;
    const char* maxDays;
    const char* expires;
    int status;
    bool changes;
  } kCases[] = {
      {"must change now", "0", "99999", "", PAM_NEW_AUTHTOK_REQD, true},
      {"password aged out", "19000", "1", "", PAM_NEW_AUTHTOK_REQD, true},
      {"account expired", "19000", "99999", "1", PAM_AUTH_ERR, false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    accounts_.SetShadow(hash, c.lastChange, c.maxDays, c.expires);
    std::string answers = InNamespace([] {
      Konu::SetLogSink(std::make_unique<NoLog>());
      std::string out = std::to_string(Konu::Authenticate(kUser, kNewPassword));
      out += " " + std::to_string(Konu::ChangePassword(kUser, kNewPassword, "Third-Gate-71"));
      return out + " " + std::to_string(Konu::Authenticate(kUser, "Third-Gate-71"));
    });
    const int after = c.changes ? PAM_SUCCESS : c.status;
    EXPECT_EQ(answers,
              std::to_string(c.status) + " " + std::to_string(c.changes) + " " + std::to_string(after));
  }
}

}  // namespace
