// The console never hangs where an operator could not get it back: a keyboard that is gone,
// a host tool that hangs or writes a lot, and output held by XOFF all give way to the end
// of the process, with the terminal put back and no child of it left running.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <fstream>
#include <sstream>

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
    StartOnWelcome(term);
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

  void StartOnWelcome(Terminal& term) {
    StartKonu(term);
    ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }

  // The process ids of the tool runs a fault holds, from their journal lines.
  std::vector<int> HeldTools() const {
    std::vector<int> pids;
    std::istringstream lines(Journal());
    std::string line;
    while (std::getline(lines, line)) {
      auto entry = nlohmann::json::parse(line, nullptr, false);
      if (!entry.is_discarded() && entry.value("exit", nlohmann::json()) == "hang")
        pids.push_back(entry["pid"]);
    }
    return pids;
  }

  // True while `pid` exists and is not a zombie.
  static bool Running(int pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text;
    if (!std::getline(stat, text) || text.rfind(')') == std::string::npos) return false;
    const char state = text[text.rfind(')') + 2];
    return state != 'Z' && state != 'X';
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

// Children started by worker threads, by the user-interface thread through the host layer
// and by the pager: a terminating signal kills them all, and a hosts file set aside is put back. The
// held tools ignore SIGHUP, so the hang-up of the console's session does not end them.
TEST_F(NeverHangs, ATerminatingSignalLeavesNoChildAndPutsTheHostsFileBack) {
  struct Step {
    const char* key;
    const char* thenShown;  // nullptr: the next key follows at once
  };
  const struct {
    const char* what;
    std::vector<std::pair<const char*, nlohmann::json>> faults;
    const char* menuPane;  // where MenuDownTo stops
    std::vector<Step> steps;
    size_t held;  // tool runs held by a fault when the signal comes
    bool hostsSetAside;
  } kCases[] = {
      {"a ping of the network test",
       {{"/faults/tools/nukping 10.0.0.1", {{"hang", true}, {"ignoreHangup", true}}}},
       "<Enter> Run Test",
       {{"Enter", "attempt to ping your default"}, {"Enter", "Pinging address 10.0.0.1 ... "}},
       1,
       false},
      {"the network test's name lookup",
       {{"/faults/operations/DnsConfig.ResolveHostname", {{"hang", true}}}},
       "<Enter> Run Test",
       {{"Enter", "attempt to ping your default"}, {"Enter", "Resolving hostname"}},
       0,
       true},
      {"the live core and the agents' stop",
       {{"/faults/tools/nukbacktrace", {{"hang", true}, {"ignoreHangup", true}}},
        {"/faults/tools/services.sh stop", {{"hang", true}, {"ignoreHangup", true}}}},
       "To view various troubleshooting",
       {{"Enter", "Troubleshooting Mode Options"},
        {"Down", nullptr},
        {"Down", nullptr},
        {"Down", nullptr},
        {"Down", "The management agents are the"},
        {"Enter", "Restart management agents now?"},
        {"Space", "[X] Collect"},
        {"F11", "Stopping management agents."}},
       2,
       false},
      {"the pager", {}, "<1> Syslog", {{"1", "<Q> Quit </> RegExp Search <H> Help"}}, 0, false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    if (&c != &kCases[0]) SetUp();  // a fresh host for each case
    for (const auto& [pointer, value] : c.faults) SetState(pointer, value);
    const std::string hosts = ReadFile("etc/hosts");
    Terminal term(24, 80);
    StartOnWelcome(term);
    ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2"));
    ASSERT_NO_FATAL_FAILURE(MenuDownTo(term, c.menuPane));
    bool shown = true;  // the menu reads keys
    for (const Step& step : c.steps) {
      if (shown) {
        ASSERT_TRUE(term.WaitUntilPolling());
      }
      term.Press(step.key);
      shown = step.thenShown != nullptr;
      if (shown) {
        ASSERT_TRUE(term.WaitForText(step.thenShown)) << term.Screen();
      }
    }
    ASSERT_TRUE(term.WaitFor([&] {
      return HeldTools().size() == c.held && (!c.hostsSetAside || ReadFile("etc/hosts") != hosts);
    })) << Journal();
    std::vector<int> held = HeldTools();  // the tools a shell runs are not the console's children
    for (int child : ChildrenOf(term.Pid())) held.push_back(child);
    const size_t logged = Syslog().size();
    term.Signal(SIGTERM);
    ExpectEndedAndRestored(term, 1000);
    // What the console killed on its way out failed for no one: nothing more is logged
    // (and no worker thread is left using what exit() tears down).
    EXPECT_EQ(Syslog().substr(logged), "");
    EXPECT_TRUE(term.WaitFor([&] { return std::none_of(held.begin(), held.end(), Running); }))
        << "a held tool outlived the console";
    for (int pid : held)
      if (Running(pid)) kill(pid, SIGKILL);  // no stray process on the test machine
    EXPECT_EQ(hosts, ReadFile("etc/hosts"));
  }
}

TEST_F(NeverHangs, AToolWritingMoreThanAPipeHoldsDoesNotBlockAndItsFailureIsLogged) {
  const std::string lots(200 * 1024, 'x');
  SetState("/faults/tools/backup.sh", {{"exitCode", 3}, {"stdout", lots}, {"stderr", lots}});
  SetState("/faults/tools/qal-cmd internalsvc~1refresh", {{"exitCode", 4}});
  Terminal term(24, 80);
  ChangeExpiredPassword(term);
  ASSERT_TRUE(term.WaitFor([&] { return Contains(Syslog(), "Login password for user erin has changed"); }))
      << term.Screen();
  ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
  EXPECT_TRUE(term.WaitFor([&] {
    return Contains(Syslog(), "qal-cmd internalsvc/refresh failed with status 4");
  })) << Syslog();
  EXPECT_TRUE(Contains(Syslog(), "/sbin/backup.sh failed with status 3")) << Syslog();
}

TEST_F(NeverHangs, OutputHeldByXoffDoesNotStopTermination) {
  Terminal term(24, 80);
  StartOnWelcome(term);
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
