// The console never hangs where an operator could not get it back: a keyboard that is gone,
// a host tool that hangs or writes a lot, and output held by XOFF all give way to the end
// of the process, with the terminal put back.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <fstream>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

const std::vector<std::string> kEnv = {"TERM=xterm-256color", "ESCDELAY=25", "LANG=C.UTF-8"};

class NeverHangs : public SimHostFixture {
 protected:
  // Logs in as a user whose password has expired and submits a new one: the change runs
  // "/sbin/backup.sh" and "qal-cmd internalsvc/refresh" without a time limit.
  void ChangeExpiredPassword(Terminal& term) {
    AddUser("erin", "old-pass", false, true);
    StartKonu(term);
    ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("F2");
    ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Type("erin");
    term.Press("Enter");
    term.Type("old-pass");
    term.Press("Enter");
    Acknowledge(term, "Password has expired.");
    ASSERT_TRUE(term.WaitForText("Old Password:")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    for (const char* secret : {"old-pass", "new-pass", "new-pass"}) {
      term.Type(secret);
      term.Press("Enter");
    }
  }

  static void ExpectEndedAndRestored(Terminal& term, int withinMs) {
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(withinMs, &status)) << term.Screen();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(TerminalRestored(term))
        << "alt=" << term.AltScreen() << " cursor=" << term.CursorVisible() << "\n"
        << term.Screen();
  }
};

TEST_F(NeverHangs, AKeyboardAtEndOfFileOrHungUpEndsTheConsole) {
  for (const char* command : {"exec \"$0\" --host-root \"$1\" </dev/null", ": | \"$0\" --host-root \"$1\""}) {
    Terminal term(24, 80);
    term.Spawn({"/bin/sh", "-c", command, KONU_BIN, Root()}, kEnv);
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(5000, &status)) << command << "\n" << term.Screen();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << command;
  }
  EXPECT_TRUE(Contains(Syslog(), "The terminal is gone; ending")) << Syslog();
}

TEST_F(NeverHangs, ATerminatingSignalEndsTheConsoleWhileAToolHangs) {
  SetState("/faults/tools/backup.sh", {{"hang", true}});
  Terminal term(24, 80);
  ChangeExpiredPassword(term);
  ASSERT_TRUE(term.WaitFor([&] { return Contains(Journal(), "backup.sh"); })) << Journal();
  term.Signal(SIGTERM);
  ExpectEndedAndRestored(term, 1000);
}

TEST_F(NeverHangs, AToolWritingMoreThanAPipeHoldsDoesNotBlock) {
  const std::string lots(200 * 1024, 'x');
  SetState("/faults/tools/backup.sh", {{"exitCode", 0}, {"stdout", lots}, {"stderr", lots}});
  Terminal term(24, 80);
  ChangeExpiredPassword(term);
  ASSERT_TRUE(term.WaitFor([&] { return Contains(Syslog(), "Login password for user erin has changed"); }))
      << term.Screen();
  ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
}

TEST_F(NeverHangs, OutputHeldByXoffDoesNotStopTermination) {
  Terminal term(24, 80);
  StartKonu(term);
  ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Write("\x13");  // XOFF: the terminal stops taking output
  // Every key repaints the whole welcome screen, until a write can no longer finish.
  const std::string stuck = "/proc/" + std::to_string(term.Pid()) + "/syscall";
  ASSERT_TRUE(term.WaitFor([&] {
    term.Write("x");
    std::ifstream in(stuck);
    int number = -1;
    in >> number;
    return number == 1;  // write(2) on x86-64
  }));
  term.Signal(SIGTERM);
  ExpectEndedAndRestored(term, 2000);
}

}  // namespace
