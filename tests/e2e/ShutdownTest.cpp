// Shutting down and restarting from the welcome screen (F12, login, the shutdown dialog) and
// resetting the configuration, on a fresh simulated host: the event first, the machines
// powered off, the host command, the console ending as the host goes down; failures bring
// the operator back; no idle time-out closes these dialogs.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

constexpr const char kAutostop[] = "qal-cmd -U root hostsvc/autostartmanager/autostop";
constexpr const char kShutdownEvent[] = "zeb.user.konu.shutdown.host";
constexpr const char kRebootEvent[] = "zeb.user.konu.reboot.host";

class Shutdown : public SimHostFixture {
 protected:
  // F12 and root's login; the shutdown dialog reads keys. `clockSpeed` as StartKonu.
  void OpenShutdownDialog(Terminal& term, double clockSpeed = 0) {
    ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term, {}, clockSpeed));
    ASSERT_NO_FATAL_FAILURE(LogIn(term, "F12"));
    ASSERT_NO_FATAL_FAILURE(Ready(term, "Forcefully terminate running VMs, if any ..."));
  }
};

// The dimmed look of the first place `title` is shown.
bool Dimmed(const Terminal& term, const char* title) {
  int row = 0, col = 0;
  if (!term.Find(title, &row, &col)) return false;
  KonuTest::CellColors cell = term.Colors(row, col);
  return cell.background == 0 && cell.foreground == 6;
}

TEST_F(Shutdown, TheDialogDrawsFullyOnSmallTerminals) {
  for (int rows : {24, 25}) {
    Terminal term(rows, 80);
    OpenShutdownDialog(term);
    const std::string screen = term.Screen();
    for (const char* text : {"Shut Down/Restart", "Remote management software", "[ ] Forcefully terminate",
                             "<F2> Shut Down  <F11> Restart", "<Esc> Cancel"})
      EXPECT_TRUE(Contains(screen, text)) << rows << " rows, " << text << ":\n" << screen;
  }
}

// The event, then the auto-start manager, the power-off tool (with "--terminate" only when
// ticked) and the host command; the host going down ends the console.
TEST_F(Shutdown, EachKeyPostsItsEventPowersOffTheMachinesAndTakesTheHostDown) {
  const struct {
    std::vector<const char*> keys;
    const char* event;
    const char* powerOff;
    const char* command;
    const char* power;
  } kCases[] = {
      {{"Space", "Space", "F2"}, kShutdownEvent, "powerOffVms", "poweroff", "off"},
      {{"Space", "F2"}, kShutdownEvent, "powerOffVms --terminate", "poweroff", "off"},
      {{"F11"}, kRebootEvent, "powerOffVms", "reboot", "rebooting"},
      {{"Space", "F11"}, kRebootEvent, "powerOffVms --terminate", "reboot", "rebooting"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.powerOff) + ", " + c.command);
    SetUp();  // a fresh host for each case
    Terminal term(24, 80);
    OpenShutdownDialog(term);
    for (const char* key : c.keys) {
      term.Press(key);
      if (std::string(key) == "Space") {
        ASSERT_TRUE(term.WaitUntilPolling());
      }
    }
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(10000, &status)) << term.Screen();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ((std::vector<std::string>{kAutostop, c.powerOff, c.command}), JournalCommands());
    EXPECT_TRUE(Contains(Events(), c.event)) << Events();
    EXPECT_EQ(c.power, State("/power/state").get<std::string>());
    EXPECT_EQ("poweredOff", State("/vms/0/powerState").get<std::string>());
  }
}

TEST_F(Shutdown, TheEventIsPostedAndTheProgressShownBeforeAnyMachineIsPoweredOff) {
  SetState("/faults/tools/qal-cmd hostsvc~1autostartmanager~1autostop", {{"hang", true}});
  Terminal term(24, 80);
  OpenShutdownDialog(term);
  term.Press("F2");
  ASSERT_TRUE(term.WaitForText("Shutdown in progress...")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("Shut Down Host", 0)) << term.Screen();
  ASSERT_TRUE(term.WaitFor([&] { return Ran(std::string(kAutostop) + " (hang)"); })) << Journal();
  EXPECT_TRUE(Contains(Events(), std::string("(") + kShutdownEvent + ")Shutting down host")) << Events();
  EXPECT_TRUE(Contains(Syslog(), "Shutting down host")) << Syslog();
  EXPECT_FALSE(Ran("powerOffVms")) << Journal();
}

// -1 from the shell: the host has no usable "/bin/sh", so "poweroff" cannot be run.
TEST_F(Shutdown, AHostCommandThatCannotRunBringsTheOperatorBack) {
  Terminal term(24, 80);
  OpenShutdownDialog(term);
  ASSERT_EQ(0, unlink(HostFile("bin/sh").c_str()));
  term.Press("F2");
  ASSERT_TRUE(term.WaitFor([&] { return Ran("powerOffVms"); })) << Journal();
  ASSERT_TRUE(term.WaitForNoText("Shutdown in progress...")) << term.Screen();
  ASSERT_TRUE(term.WaitForText("<F2> Shut Down  <F11> Restart")) << term.Screen();
  EXPECT_EQ("on", State("/power/state").get<std::string>());
  // Still the shutdown dialog, taking keys: Esc leads back to the welcome screen.
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForNoText("Forcefully terminate")) << term.Screen();
  EXPECT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
}

TEST_F(Shutdown, NoIdleTimeOutClosesTheDialogOpenedWithF12) {
  SetState("/advancedOptions/~1UserVars~1KonuTimeOut/value", 60);
  Terminal term(24, 80);
  OpenShutdownDialog(term, /*clockSpeed=*/60);
  // Dimmed after a minute of its clock, when the idle time-out would also be due.
  ASSERT_TRUE(term.WaitFor([&] { return Dimmed(term, "Shut Down/Restart"); })) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Space");
  EXPECT_TRUE(term.WaitForText("[X] Forcefully terminate")) << term.Screen();
}

// Through the menu, in a session with a one-minute time-out on a clock twenty times faster:
// only F11 resets, the factory values come back, the box outlasts the idle time-out and only
// Enter restarts the host (no machine is powered off), which ends the console.
TEST_F(Shutdown, ResetRestoresTheDefaultsAndOnlyEnterRestarts) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(rows);
    SetUp();
    const nlohmann::json factory = State("/network/dns/defaultTcpipStack/searchDomains");
    SetState("/network/dns/defaultTcpipStack/searchDomains", nlohmann::json::array({"example.org"}));
    SetState("/advancedOptions/~1UserVars~1KonuTimeOut/value", 60);
    Terminal term(rows, 80);
    ASSERT_NO_FATAL_FAILURE(OpenFromMenu(term, "<Enter> Reset", "<F11> OK  <Esc> Cancel", /*clockSpeed=*/20));
    for (const char* text : {"Reset System Configuration: Confirm", "Warning! All system parameters",
                             "Reset System Configuration now?"})
      EXPECT_TRUE(term.WaitForText(text, 0)) << text << ":\n" << term.Screen();
    term.Press("Enter");  // ignored: only F11 goes on
    term.Press("F11");
    ASSERT_TRUE(term.WaitForText("Default settings are restored. Press <Enter> to")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());  // the footer and the event come after the text
    EXPECT_TRUE(term.WaitForText("<Enter> Restart Host", 0)) << term.Screen();
    EXPECT_FALSE(term.WaitForText("Reset System Configuration now?", 0)) << term.Screen();
    EXPECT_EQ(factory, State("/network/dns/defaultTcpipStack/searchDomains"));
    EXPECT_EQ(1, State("/factoryResets").get<int>());
    EXPECT_TRUE(Contains(Events(), "zeb.user.konu.restore.factory.defaults")) << Journal();
    // Left alone past the idle time-out, and Esc: the box stays.
    ASSERT_TRUE(term.WaitFor([&] { return Dimmed(term, "Default settings are restored"); })) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Esc");  // wakes the screen and is ignored
    ASSERT_TRUE(term.WaitFor([&] { return !Dimmed(term, "Default settings are restored"); })) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_TRUE(term.WaitForText("<Enter> Restart Host", 0)) << term.Screen();
    EXPECT_FALSE(Contains(Syslog(), "logged out due to time out")) << Syslog();
    term.Press("Enter");
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(10000, &status)) << term.Screen();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    const std::vector<std::string> ran = JournalCommands();
    const auto reset = std::find(ran.begin(), ran.end(), "firmwareConfig.py --reset-only");
    EXPECT_NE(ran.end(), std::find(reset, ran.end(), "reboot -f")) << Journal();
    EXPECT_FALSE(Ran("powerOffVms") || Ran(kAutostop)) << Journal();
    EXPECT_EQ("rebooting", State("/power/state").get<std::string>());
  }
}

// A failing reset closes without a word, back to the menu; Esc before F11 runs nothing.
TEST_F(Shutdown, AFailingResetClosesSilentlyAndEscBeforeF11DoesNothing) {
  SetState("/faults/tools/firmwareConfig.py", {{"exitCode", 1}});
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(OpenFromMenu(term, "<Enter> Reset", "<F11> OK  <Esc> Cancel"));
  for (const char* key : {"F11", "Esc"}) {
    SCOPED_TRACE(key);
    term.Press(key);
    ASSERT_TRUE(term.WaitForNoText("Reset System Configuration now?")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Ready(term, "<Esc> Log Out"));
    EXPECT_FALSE(Contains(term.Screen(), "Restart Host")) << term.Screen();
    if (std::string(key) == "F11") {
      ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "<F11> OK  <Esc> Cancel"));
    }
  }
  const std::vector<std::string> ran = JournalCommands();
  EXPECT_EQ(1, std::count(ran.begin(), ran.end(), "firmwareConfig.py --reset-only")) << Journal();
  EXPECT_FALSE(Ran("reboot -f")) << Journal();
  const std::string events = Events();
  EXPECT_EQ(events.find("restore.factory.defaults"), events.rfind("restore.factory.defaults"))
      << "one event, for F11 only: " << events;
  EXPECT_TRUE(Contains(events, "restore.factory.defaults")) << events;
}

}  // namespace
