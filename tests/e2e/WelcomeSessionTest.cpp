// The session run from the welcome screen, in a pseudo-terminal on a fresh simulated host:
// logout from the menu with its log line and audit record, the idle time-out, the exit
// deferred to the end of the session (at once outside one: e2e.Startup.EveryExitPath...),
// F12 into the shutdown dialog, and the smart card.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <string>

#include "tests/harness/SimHost.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

constexpr const char kMenuTitle[] = "System Customization";

size_t Count(const std::string& text, const std::string& part) {
  size_t n = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
  return n;
}

class WelcomeSession : public SimHostFixture {
 protected:
  void OpenMenu(Terminal& term) {
    LogIn(term, "F2");
    ASSERT_NO_FATAL_FAILURE(Ready(term, kMenuTitle));
  }
};

// Esc in the login form opens no session; Esc in the menu ends one.
TEST_F(WelcomeSession, EscInTheMenuLogsOutWithLogLineAndAuditRecord) {
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term));
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F2", "Authentication Required"));
  term.Press("Esc");
  ReadyWithout(term, "Authentication Required");
  EXPECT_FALSE(term.WaitForText(kMenuTitle, 0));
  EXPECT_FALSE(Contains(Audit(), "login.")) << Audit();
  OpenMenu(term);
  EXPECT_TRUE(Contains(Audit(), "login.connect user=\"root\"")) << Audit();
  EXPECT_FALSE(Contains(Syslog(), "User root logged out"));
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForNoText(kMenuTitle)) << term.Screen();
  // One update, but curses writes it in pieces: the title may go before the welcome shows.
  EXPECT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  // The screen changes before the logout is written; wait for the record, the last of the two.
  ASSERT_TRUE(term.WaitFor([&] { return Contains(Audit(), "login.disconnect"); })) << Audit();
  const std::string syslog = Syslog();
  const size_t line = syslog.find("User root logged out");
  ASSERT_NE(line, std::string::npos) << syslog;
  EXPECT_EQ("<14>", syslog.substr(syslog.rfind('\n', line) + 1, 4)) << "user facility, info";
  EXPECT_FALSE(Contains(syslog, "due to time out"));
  EXPECT_TRUE(
      Contains(Audit(), "login.disconnect user=\"root\" origin=\"\" success=1 reason=\"Session closed\""))
      << Audit();

  // The welcome screen goes on: a second session opens and closes the same way.
  ASSERT_TRUE(term.WaitUntilPolling());
  OpenMenu(term);
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForNoText(kMenuTitle)) << term.Screen();
  EXPECT_TRUE(term.WaitFor([&] { return Count(Audit(), "reason=\"Session closed\"") == 2u; })) << Audit();
}

TEST_F(WelcomeSession, IdleMenuEndsTheSessionWithTimeOutAndTheWelcomeScreenReturns) {
  // One minute of idle time; the console's clock runs ten times faster.
  SetState("/advancedOptions/~1UserVars~1KonuTimeOut/value", 60);
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term, {}, /*clockSpeed=*/10));
  OpenMenu(term);
  ASSERT_TRUE(term.WaitFor([&] { return Contains(Syslog(), "User root logged out due to time out"); }, 30000))
      << Syslog();
  ASSERT_TRUE(term.WaitForNoText(kMenuTitle)) << term.Screen();
  EXPECT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  EXPECT_TRUE(term.WaitFor([&] {
    return Contains(Audit(), "login.disconnect user=\"root\" origin=\"\" success=1 reason=\"Time out\"");
  })) << Audit();
  EXPECT_FALSE(Contains(Audit(), "Session closed")) << Audit();
  EXPECT_EQ(1u, Count(Syslog(), "User root logged out")) << "one logout line only";

  // The process lives on and the welcome screen takes keys again.
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("F2");
  EXPECT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
}

TEST_F(WelcomeSession, QuitSignalInASessionEndsTheProcessOnlyWhenTheSessionEnds) {
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term));
  OpenMenu(term);
  term.Signal(SIGUSR2);
  // Still inside the menu, reading keys again after the signal.
  ASSERT_TRUE(term.WaitUntilPolling());
  int status = -1;
  EXPECT_FALSE(term.WaitForExit(500, &status)) << "the session is not cut short";
  EXPECT_TRUE(term.WaitForText(kMenuTitle, 0));
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForExit(5000, &status)) << term.Screen();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_TRUE(Contains(Syslog(), "User root logged out")) << "the session ended normally first";
  EXPECT_TRUE(Contains(Audit(), "reason=\"Session closed\"")) << Audit();
  EXPECT_TRUE(TerminalRestored(term));
}

TEST_F(WelcomeSession, F12AfterLoginOpensTheShutdownDialogWithoutASession) {
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term));
  LogIn(term, "F12");
  // The dialog's title besides the welcome screen's own F12 label beneath it.
  ASSERT_TRUE(term.WaitFor([&] { return Count(term.Screen(), "Shut Down/Restart") == 2; })) << term.Screen();
  EXPECT_FALSE(term.WaitForText(kMenuTitle, 0));
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  ASSERT_TRUE(term.WaitFor([&] { return Count(term.Screen(), "Shut Down/Restart") == 1; })) << term.Screen();
  // One update, but the terminal may hand it over in pieces: the title can be gone before
  // the product line beneath it is back.
  EXPECT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  EXPECT_FALSE(Contains(Syslog(), "logged out")) << "no menu session ended";
  EXPECT_FALSE(Contains(Audit(), "login.disconnect")) << Audit();
}

TEST_F(WelcomeSession, CardRemovalDoesNotEndAPasswordSession) {
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term));
  OpenMenu(term);  // no card: a password login
  Card({"insert", "root"});
  Card({"remove"});
  ASSERT_TRUE(term.WaitUntilPolling());
  int status = -1;
  EXPECT_FALSE(term.WaitForExit(500, &status));
  EXPECT_FALSE(Contains(Syslog(), "Logging out user id")) << Syslog();
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForNoText(kMenuTitle)) << term.Screen();
  EXPECT_TRUE(term.WaitFor([&] { return Contains(Syslog(), "User root logged out"); })) << Syslog();
}

}  // namespace
