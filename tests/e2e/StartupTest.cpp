// The console program in a pseudo-terminal on a fresh simulated host: start-up, signals,
// resize, a terminal below the smallest size, the virtual-terminal argument, the pid file,
// dimming, and the terminal restored.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <sstream>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

class Startup : public SimHostFixture {};

// Every way the console ends: the terminal restored, the palette reset (ESC ] R) written,
// which the host's own console would otherwise keep redefined, and the pid file kept. The
// host starts the console again whatever the status; an error that is not the host's goes on
// out of main as an abort, once the terminal is back.
TEST_F(Startup, EveryExitPathRestoresTheTerminalResetsThePaletteAndKeepsThePidFile) {
  const struct {
    const char* name;
    std::function<void(Terminal&)> end;  // on the welcome screen; nullptr: it ends by itself
    int status;                          // the exit status, or minus the signal that ended it
    const char* logLine;                 // nullptr: none asked for
    const char* fault;                   // nullptr, or an operation made to fail (before `end`) ...
    const char* error;                   // ... with this error (JSON)
  } paths[] = {
      {"SIGTERM", [](Terminal& t) { t.Signal(SIGTERM); }, 0, nullptr, nullptr, nullptr},
      {"SIGINT", [](Terminal& t) { t.Signal(SIGINT); }, 0, nullptr, nullptr, nullptr},
      {"SIGQUIT", [](Terminal& t) { t.Signal(SIGQUIT); }, 0, nullptr, nullptr, nullptr},
      {"SIGHUP (hang-up)", [](Terminal& t) { t.Signal(SIGHUP); }, 0, nullptr, nullptr, nullptr},
      {"SIGUSR2 (quit) outside a session", [](Terminal& t) { t.Signal(SIGUSR2); }, 0, nullptr, nullptr,
       nullptr},
      {"resize", [](Terminal& t) { t.Resize(30, 100); }, 0, "Resized window to 100x30", nullptr, nullptr},
      {"ESC R", [](Terminal& t) { t.Write("\033R"); }, 0, "Resized window to 80x24", nullptr, nullptr},
      {"a host error reaching main", nullptr, 0, "KONU aborted by exception: TCP/IP stack gone", "Host.Stack",
       R"("TCP/IP stack gone")"},
      {"another error reaching main", [](Terminal& t) { t.Write(" "); }, -SIGABRT,
       "KONU aborted by exception: out of thread slots", "SystemInfo.GetWelcomeMessage",
       R"({"unexpected": "out of thread slots"})"},
  };
  const rlimit noCoreFile{0, 0};  // the abort leaves nothing behind
  ASSERT_EQ(0, setrlimit(RLIMIT_CORE, &noCoreFile));
  for (const auto& path : paths) {
    SCOPED_TRACE(path.name);
    SetState("/faults/operations", nlohmann::json::object());
    const auto fault = [&] {
      if (path.fault)
        SetState("/faults/operations/" + std::string(path.fault), nlohmann::json::parse(path.error));
    };
    if (!path.end) fault();
    Terminal term(24, 80);
    StartKonu(term);
    if (path.end) {
      ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
      ASSERT_TRUE(term.WaitUntilPolling());
      // The welcome screen reads the host again on any key.
      fault();
      path.end(term);
    }
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(5000, &status));
    if (path.status >= 0)
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == path.status) << status;
    else
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == -path.status) << status;
    EXPECT_TRUE(TerminalRestored(term));
    EXPECT_NE(term.Output().find("\033]R"), std::string::npos) << "no palette reset";
    EXPECT_EQ(ReadFile("var/run/konu.pid"), std::to_string(term.Pid()));
    if (path.logLine) {
      EXPECT_TRUE(Contains(Syslog(), path.logLine)) << Syslog();
    }
  }
  EXPECT_NE(std::string::npos, Syslog().find("KONU[")) << Syslog();
  EXPECT_NE(std::string::npos, Syslog().find("Starting KONU"));
}

TEST_F(Startup, BelowEightyByTwentyFourOnlyTheSizeNeededShowsAndNoKeyIsTaken) {
  struct Case {
    int rows, cols;
    bool leaveWithEscapeR;  // else SIGTERM
  };
  for (const Case& c : {Case{24, 79, true}, Case{23, 80, false}}) {
    const std::string size = std::to_string(c.cols) + "x" + std::to_string(c.rows);
    SCOPED_TRACE(size);
    Terminal term(c.rows, c.cols);
    StartKonu(term);
    ASSERT_TRUE(term.WaitForText("KONU needs at least 80x24 (this terminal: " + size + ")")) << term.Screen();
    EXPECT_FALSE(term.WaitForText(ProductLine(), 0)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("F2");
    EXPECT_FALSE(term.WaitForText("Authentication Required", 1000)) << "F2 opens no login form";
    EXPECT_TRUE(term.WaitForText("KONU needs at least 80x24", 0)) << term.Screen();
    if (c.leaveWithEscapeR) {
      term.Write("\033R");
    } else {
      term.Signal(SIGTERM);
    }
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(5000, &status));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_TRUE(TerminalRestored(term));
  }
  EXPECT_NE(Syslog().find("Terminal is 79x24, smaller than 80x24"), std::string::npos) << Syslog();
}

TEST_F(Startup, InvalidVirtualTerminalArgumentsAreLoggedAndIgnored) {
  for (const char* vt : {"0", "64", "abc"}) {
    Terminal term(24, 80);
    StartKonu(term, {vt});
    ASSERT_TRUE(term.WaitForText(ProductLine())) << vt;
    EXPECT_NE(std::string::npos, Syslog().find(std::string("Invalid VT specified for KONU: ") + vt)) << vt;
    term.Signal(SIGTERM);
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(5000, &status));
  }
  Terminal term(24, 80);
  StartKonu(term, {"63"});
  ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  EXPECT_EQ(std::string::npos, Syslog().find("Invalid VT specified for KONU: 63"));
}

// (A missing pid file: every start in EveryExitPathRestoresTheTerminal... above.)
TEST_F(Startup, StalePidFileIsOverwrittenAndALiveOneLeftAlone) {
  // Not a number, and a pid that cannot be running: the highest the kernel hands out, plus one.
  WriteFile("var/run/konu.pid", "not a number");
  {
    Terminal garbage(24, 80);
    StartKonu(garbage);
    ASSERT_TRUE(garbage.WaitForText(ProductLine())) << garbage.Screen();
    EXPECT_EQ(std::to_string(garbage.Pid()), ReadFile("var/run/konu.pid"));
  }
  WriteFile("var/run/konu.pid", "4194305\n");
  Terminal first(24, 80);
  StartKonu(first);
  ASSERT_TRUE(first.WaitForText(ProductLine())) << first.Screen();
  EXPECT_EQ(std::to_string(first.Pid()), ReadFile("var/run/konu.pid")) << "decimal, no newline";

  Terminal second(24, 80);
  StartKonu(second);
  ASSERT_TRUE(second.WaitForText(ProductLine())) << "a second instance still starts";
  EXPECT_EQ(std::to_string(first.Pid()), ReadFile("var/run/konu.pid"));
  EXPECT_NE(std::string::npos, Syslog().find("Attempt to run multiple KONU instances, not updating " +
                                             HostFile("var/run/konu.pid")))
      << Syslog();
}

TEST_F(Startup, ScreenDimsAfterAMinuteOfTheClockAndAKeyBringsItBack) {
  Terminal term(24, 80);
  // 60 s of the console's clock in 3 s: long enough to see the screen undimmed again
  // before the next minute without a key dims it once more.
  StartKonu(term, {}, /*clockSpeed=*/20);
  ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find(ProductLine(), &row, &col));
  ASSERT_TRUE(term.WaitFor([&] { return term.Colors(row, col).foreground == 6; }, 5000))
      << "dimmed text is dark grey on black";
  EXPECT_EQ(0, term.Colors(row, col).background);
  ASSERT_TRUE(term.WaitUntilPolling()) << "dimming discards typed-ahead keys; press after it";
  term.Press("x");
  EXPECT_TRUE(term.WaitFor([&] { return term.Colors(row, col).foreground == 7; }, 2500)) << "white again";
}

TEST_F(Startup, HelpAndBadOptions) {
  Terminal help(24, 80);
  help.Spawn({KONU_BIN, "--help"}, {});
  ASSERT_TRUE(help.WaitForText("--host-root DIR"));
  int status = -1;
  ASSERT_TRUE(help.WaitForExit(5000, &status));
  EXPECT_EQ(0, WEXITSTATUS(status));

  Terminal bad(24, 80);
  bad.Spawn({KONU_BIN, "--frobnicate"}, {});
  ASSERT_TRUE(bad.WaitForText("unknown option '--frobnicate'"));
  ASSERT_TRUE(bad.WaitForExit(5000, &status));
  EXPECT_EQ(2, WEXITSTATUS(status));

  // A terminal type curses does not know, or cannot draw on, is said on the terminal and in
  // the syslog instead of a silent end.
  for (const char* type : {"no-such-terminal", "unknown"}) {
    Terminal term(24, 80);
    term.Spawn({KONU_BIN, "--host-root", Root()}, {std::string("TERM=") + type, "LANG=C.UTF-8"});
    const std::string message = std::string("konu: cannot start on terminal type '") + type + "'";
    EXPECT_TRUE(term.WaitForText(message)) << type << "\n" << term.Screen();
    ASSERT_TRUE(term.WaitForExit(5000, &status)) << type;
    EXPECT_EQ(1, WEXITSTATUS(status)) << type;
    EXPECT_NE(Syslog().find(message), std::string::npos) << type << "\n" << Syslog();
  }
}

TEST_F(Startup, AMalformedOrMissingHostStateIsRefusedWithTheFileNamed) {
  const std::string before = "{\"network\": ";
  WriteFile("etc/konu-sim/host.json", before);
  Terminal term(24, 240);  // wide enough for the message on one row
  StartKonu(term);
  ASSERT_TRUE(term.WaitForText(HostFile("etc/konu-sim/host.json") + ": malformed state at line 1"))
      << term.Screen();
  int status = -1;
  ASSERT_TRUE(term.WaitForExit(5000, &status));
  EXPECT_EQ(1, WEXITSTATUS(status));
  EXPECT_EQ(before, ReadFile("etc/konu-sim/host.json")) << "nothing overwritten";

  // Well-formed JSON that is no host state is refused too, naming the file and the fault.
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  const struct {
    std::string text;
    std::string fault;
  } notAHost[] = {
      {"[1, 2]", "the top level is not an object"},
      {"{\"host\": {}, \"hardware\": {}, \"version\": {}, \"network\": {}}", "\"users\" is missing"},
      {"{\"x\": " + deep + "}", "nested deeper than 64 levels"}};
  for (const auto& c : notAHost) {
    WriteFile("etc/konu-sim/host.json", c.text);
    Terminal refused(24, 240);
    StartKonu(refused);
    ASSERT_TRUE(refused.WaitForText(HostFile("etc/konu-sim/host.json") + ": malformed state: " + c.fault))
        << refused.Screen();
    ASSERT_TRUE(refused.WaitForExit(5000, &status));
    EXPECT_EQ(1, WEXITSTATUS(status)) << c.fault;
  }

  Terminal missing(24, 80);
  missing.Spawn({KONU_BIN, "--host-root", HostFile("no-such-host")}, {});
  ASSERT_TRUE(missing.WaitForText("konu: cannot open the host at")) << missing.Screen();
  ASSERT_TRUE(missing.WaitForExit(5000, &status));
  EXPECT_EQ(1, WEXITSTATUS(status));
}

}  // namespace
