// The troubleshooting menu, its timeout dialogs and the agent restart, each run by itself on
// a fresh simulated host: the toggles' command order and fallbacks, the timeouts' limits and
// writes, the console's idle timer taking a new timeout at once, the live core.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "ops/KonuTimeoutDialog.h"
#include "ops/RestartAgentsDialog.h"
#include "ops/ShellTimeoutDialog.h"
#include "ops/TroubleShootingWindow.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::DialogChildSetup;
using KonuTest::SimHostFixture;
using KonuTest::Terminal;
using Json = nlohmann::json;
using Commands = std::vector<std::string>;

constexpr const char kShellOption[] = "/advancedOptions/~1UserVars~1OrinShellTimeOut/value";
constexpr const char kShellIdleOption[] = "/advancedOptions/~1UserVars~1OrinShellInteractiveTimeOut/value";
constexpr const char kKonuOption[] = "/advancedOptions/~1UserVars~1KonuTimeOut/value";
constexpr const char kReadShell[] = "orincfg-advcfg -q -g /UserVars/OrinShellTimeOut";
constexpr const char kReadShellIdle[] = "orincfg-advcfg -q -g /UserVars/OrinShellInteractiveTimeOut";
constexpr const char kStatuses[] = "OrinShell status|SSH status";

class Troubleshooting : public SimHostFixture {
 protected:
  template <typename DialogType>
  void Open(Terminal& term, const char* shown) {
    KonuTest::ForkDialog<DialogType>(term, DialogChildSetup{Root(), false, "root"});
    ASSERT_NO_FATAL_FAILURE(Ready(term, shown));
  }
  void Press(Terminal& term, const std::vector<const char*>& keys) {
    for (const char* key : keys) term.Press(key);
  }
  bool Logged(const std::string& line) const { return Contains(Syslog(), line); }
};

// "OrinShell status|SSH status" -> {"OrinShell status", "SSH status"}.
Commands Split(const std::string& joined) {
  Commands all;
  size_t start = 0;
  for (size_t bar = joined.find('|'); bar != std::string::npos; bar = joined.find('|', start)) {
    all.push_back(joined.substr(start, bar - start));
    start = bar + 1;
  }
  if (!joined.empty()) all.push_back(joined.substr(start));
  return all;
}

// The value between "[ " and " ]" on the row that shows `label`.
std::string FieldValue(const Terminal& term, const std::string& label) {
  int row = 0;
  if (!term.Find(label, &row, nullptr)) return "?";
  std::string line = term.Row(row);
  size_t open = line.find("[ ", line.find(label));
  size_t close = line.find(" ]", open);
  if (open == std::string::npos || close == std::string::npos) return "?";
  std::string value = line.substr(open + 2, close - open - 2);
  value.erase(value.find_last_not_of(' ') + 1);
  return value;
}

TEST_F(Troubleshooting, TogglesRunTheirCommandsInOrderAndFallBackToTheScripts) {
  const struct {
    const char* name;
    Json state;  // pointer -> value
    int downs;
    const char* commands;  // after the two status runs, '|'-separated
    const char* label;
    const char* pane;
    std::vector<const char*> logs;
    Json after;  // pointer -> value
  } kCases[] = {
      {"shell on",
       Json::object(),
       0,
       "qal-cmd -U root hostsvc/start_orin_shell|qal-cmd -U root hostsvc/enable_orin_shell",
       "Disable Orin Shell",
       "Orin Shell is Enabled",
       {"User root enabled Orin Shell"},
       {{"/services/OrinShell/running", true}, {"/services/OrinShell/enabled", true}}},
      {"shell on, qal-cmd cannot start it",
       {{"/faults/tools/qal-cmd hostsvc~1start_orin_shell", {{"exitCode", 1}}}},
       0,
       "qal-cmd -U root hostsvc/start_orin_shell|OrinShell start|qal-cmd -U root hostsvc/enable_orin_shell",
       "Disable Orin Shell",
       "Orin Shell is Enabled",
       {"Unable to run qal-cmd to start/stop Orin Shell", "User root enabled Orin Shell"},
       {{"/services/OrinShell/running", true}}},
      {"ssh off, qal-cmd failing: the script and the firewall rule set",
       {{"/services/SSH/running", true},
        {"/firewall/sshServer/enabled", true},
        {"/faults/tools/qal-cmd", {{"exitCode", 1}}}},
       1,
       "qal-cmd -U root hostsvc/stop_ssh|SSH stop|qal-cmd -U root hostsvc/disable_ssh",
       "Enable SSH",
       "SSH is Disabled",
       {"Unable to run qal-cmd to start/stop ssh", "Unable to run qal-cmd to enable/disable ssh",
        "User root disabled SSH"},
       {{"/services/SSH/running", false}, {"/firewall/sshServer/enabled", false}}},
      {"shell off, nothing works: the label flips anyway",
       {{"/services/OrinShell/running", true},
        {"/faults/tools/qal-cmd", {{"exitCode", 1}}},
        {"/faults/tools/OrinShell stop", {{"exitCode", 1}}}},
       0,
       "qal-cmd -U root hostsvc/stop_orin_shell|OrinShell stop|qal-cmd -U root hostsvc/disable_orin_shell",
       "Enable Orin Shell",
       "Orin Shell is Disabled",
       {"Unable to run qal-cmd to enable/disable Orin Shell", "User root disabled Orin Shell"},
       {{"/services/OrinShell/running", true}}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    SetUp();
    for (const auto& [pointer, value] : c.state.items()) SetState(pointer, value);
    Terminal term(24, 80);
    Open<Konu::TroubleShootingWindow>(term, "Troubleshooting Mode Options");
    for (int i = 0; i < c.downs; ++i) term.Press("Down");
    term.Press("Enter");
    ASSERT_TRUE(term.WaitForText(c.label)) << term.Screen();
    EXPECT_TRUE(term.WaitForText(c.pane)) << term.Screen();
    Commands expected = Split(kStatuses);
    for (const std::string& command : Split(c.commands)) expected.push_back(command);
    EXPECT_EQ(expected, JournalCommands());
    for (const char* line : c.logs)
      EXPECT_TRUE(term.WaitFor([&] { return Logged(line); })) << line << Syslog();
    for (const auto& [pointer, value] : c.after.items()) EXPECT_EQ(value, State(pointer)) << pointer;
  }
}

TEST_F(Troubleshooting, TheTimeoutsEntryGreysWhenBothAreOffAndStillOpens) {
  Terminal term(24, 80);
  Open<Konu::TroubleShootingWindow>(term, "Modify Orin Shell and SSH timeouts");
  EXPECT_EQ(6, Foreground(term, "Modify Orin Shell and SSH timeouts")) << "greyed";
  Press(term, {"Down", "Down"});
  ASSERT_TRUE(term.WaitForText("Modify the number of minutes")) << term.Screen();
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Set the timeouts for Orin Shell access"));
  term.Press("Esc");
  ReadyWithout(term, "Set the timeouts for Orin Shell access");
  Press(term, {"Up", "Enter"});  // SSH on
  ASSERT_TRUE(term.WaitForText("Disable SSH")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());  // the entries below are redrawn after it
  EXPECT_NE(6, Foreground(term, "Modify Orin Shell and SSH timeouts")) << term.Screen();
}

TEST_F(Troubleshooting, ShellTimeoutsAreCheckedWrittenAndRestartTheRunningServices) {
  const struct {
    const char* name;
    Json state;
    const char* shown;  // availability / idle as read
    const char* availability;
    const char* idle;
    int refusals;
    const char* commands;  // after the two reads
    std::vector<const char*> logs;
    int shellSeconds;
    int idleSeconds;
  } kCases[] = {
      {"1440 accepted, 1441 refused",
       Json::object(),
       "0/0",
       "1440",
       "1441",
       1,
       "orincli system settings advanced set -o /UserVars/OrinShellTimeOut -i 86400|OrinShell status|SSH "
       "status",
       {"Modified Shell timeout to 1440 minutes"},
       86400,
       0},
      {"an invalid availability lets the idle value apply",
       {{kShellIdleOption, 600}},
       "0/10",
       "1441",
       "0",
       1,
       "orincli system settings advanced set -o /UserVars/OrinShellInteractiveTimeOut -i 0",
       {"Disabled shell interactive timeout"},
       0,
       0},
      {"90 s shows 1 minute; orincli failing falls back to localcli; running SSH restarts",
       {{kShellOption, 90}, {"/services/SSH/running", true}, {"/faults/tools/orincli", {{"exitCode", 1}}}},
       "1/0",
       "0",
       "0",
       0,
       "orincli system settings advanced set -o /UserVars/OrinShellTimeOut -i 0|"
       "localcli system settings advanced set -o /UserVars/OrinShellTimeOut -i 0|OrinShell status|SSH "
       "status|SSH restart",
       {"Disabled Shell timeout"},
       0,
       0},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    SetUp();
    for (const auto& [pointer, value] : c.state.items()) SetState(pointer, value);
    Terminal term(24, 80);
    Open<Konu::ShellTimeoutDialog>(term, "Idle timeout");  // the fields are drawn last
    EXPECT_EQ(c.shown, FieldValue(term, "Availability timeout") + "/" + FieldValue(term, "Idle timeout"));
    term.Type(c.availability);
    term.Press("Down");
    term.Type(c.idle);
    term.Press("Enter");
    for (int i = 0; i < c.refusals; ++i)
      Acknowledge(term, "Timeout value must be between 0 (disabled) and 1440 minutes");
    FinishDialogChild(term, 1);
    Commands expected = {kReadShell, kReadShellIdle};
    for (const std::string& command : Split(c.commands)) expected.push_back(command);
    EXPECT_EQ(expected, JournalCommands());
    for (const char* line : c.logs) EXPECT_TRUE(Logged(line)) << line << Syslog();
    EXPECT_EQ(c.shellSeconds, State(kShellOption).get<int>());
    EXPECT_EQ(c.idleSeconds, State(kShellIdleOption).get<int>());
  }
}

TEST_F(Troubleshooting, KonuTimeoutIsCheckedAndSavedInSeconds) {
  const struct {
    int stored;
    const char* shown;
    const char* typed;
    bool refused;
    int saved;
    const char* log;
  } kCases[] = {
      {600, "10", "1441", true, 600, ""},
      {600, "10", "1440", false, 86400, "Modified Konu timeout to 1440 minutes"},
      {600, "10", "0", false, 0, "Disabled Konu timeout"},
      {90, "1", "1", false, 60, "Modified Konu timeout to 1 minutes"},  // seconds compared
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.typed);
    SetUp();
    SetState(kKonuOption, c.stored);
    Terminal term(24, 80);
    Open<Konu::KonuTimeoutDialog>(term, "KONU idle timeout");  // the field is drawn last
    EXPECT_EQ(c.shown, FieldValue(term, "KONU idle timeout"));
    term.Type(c.typed);
    term.Press("Enter");
    if (c.refused) Acknowledge(term, "Invalid timeout value");
    FinishDialogChild(term, 1);
    EXPECT_EQ(c.saved, State(kKonuOption).get<int>());
    if (*c.log) {
      EXPECT_TRUE(Logged(c.log)) << Syslog();
    } else {
      EXPECT_FALSE(Logged("Konu timeout")) << Syslog();
    }
  }
}

// Through the console: the running session's idle timer takes the new timeout at once, from
// never (0) to one minute, which then passes on a clock ten times faster and logs out. (A
// faster clock would dim the screen between keys, and waking it discards keys typed ahead.)
TEST_F(Troubleshooting, ANewConsoleTimeoutAppliesToTheRunningSession) {
  SetState(kKonuOption, 0);
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(OpenFromMenu(term, "To view various troubleshooting",
                                       "Troubleshooting Mode Options", /*clockSpeed=*/10));
  Press(term, {"Down", "Down", "Down"});
  ASSERT_TRUE(term.WaitForText("Modify the number of idle minutes")) << term.Screen();
  term.Press("Enter");
  // The field is drawn last ("KONU idle timeout" alone is also the menu's entry).
  ASSERT_NO_FATAL_FAILURE(Ready(term, "[ 0 "));
  term.Type("1");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitFor([&] { return Logged("User root logged out due to time out"); }, 30000))
      << Syslog();
  EXPECT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  EXPECT_EQ(60, State(kKonuOption).get<int>());
  EXPECT_TRUE(Logged("Modified Konu timeout to 1 minutes")) << Syslog();
}

TEST_F(Troubleshooting, RestartingTheAgentsStopsThenStartsThemAndEscBeforeF11DoesNothing) {
  {
    Terminal term(24, 80);
    Open<Konu::RestartAgentsDialog>(term, "Restart management agents now?");
    term.Press("Esc");
    FinishDialogChild(term, 0);
    EXPECT_EQ(Commands{}, JournalCommands());
    EXPECT_FALSE(Contains(Events(), "restarting.hostagents"));
  }
  Terminal term(24, 80);
  Open<Konu::RestartAgentsDialog>(term, "Restart management agents now?");
  term.Press("F11");
  ASSERT_TRUE(term.WaitForText("Starting management agents. Done.")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("Stopping management agents. Done.", 0)) << term.Screen();
  EXPECT_FALSE(term.WaitForText("live core", 0)) << term.Screen();
  ASSERT_NO_FATAL_FAILURE(Ready(term, "<Enter> OK"));
  term.Press("Enter");
  FinishDialogChild(term, 1);
  EXPECT_EQ((Commands{"services.sh stop", "services.sh start"}), JournalCommands()) << "no core, no thread";
  EXPECT_FALSE(Logged("nukbacktrace")) << Syslog();
  EXPECT_TRUE(Logged("Restarting host agents")) << Syslog();
  EXPECT_TRUE(Contains(Events(), "(zeb.user.konu.restarting.hostagents)Restarting host agents"));
  EXPECT_EQ(1, State("/agents/restarts").get<int>());
}

// The live core is collected on its own thread while the agents stop (held here so that
// the agent is still up for it).
TEST_F(Troubleshooting, TickedTheLiveCoreIsCollectedAndTheAlertRaised) {
  SetState("/faults/tools/services.sh stop", {{"hang", true}});
  Terminal term(24, 80);
  Open<Konu::RestartAgentsDialog>(term, "Collect extra troubleshooting information");
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Space", "[X] Collect extra troubleshooting information"));
  term.Press("F11");
  ASSERT_TRUE(term.WaitForText("Collecting host agent live core information. Done.")) << term.Screen();
  ASSERT_TRUE(term.WaitForText("Stopping management agents.")) << term.Screen();
  ASSERT_TRUE(term.WaitFor([&] {
    const Json host = State("/host");
    const Json alerts = host.contains("systemAlerts") ? host["systemAlerts"] : Json::array();
    return std::find(alerts.begin(), alerts.end(), Json("Mgmtd core dump completed")) != alerts.end();
  })) << State("/host");
  const Commands ran = JournalCommands();
  EXPECT_NE(ran.end(),
            std::find(ran.begin(), ran.end(), "nukbacktrace -w -n mgmtd -o mgmtd-restart% -d /var/log/"))
      << Journal();
  EXPECT_TRUE(Logged("Executing nukbacktrace -c against mgmtd")) << Syslog();
  EXPECT_FALSE(ReadFile("var/log/mgmtd-restart4000.core").empty());
}

// Every box of these screens drawn whole on the console's two sizes. (The running machines'
// warning, at both sizes with its keys: e2e.NetworkRestore.FactoryRestoreAsksTwice...)
TEST_F(Troubleshooting, EveryScreenDrawsFullyOnTheConsoleSizes) {
  const struct {
    std::function<void(Terminal&, const DialogChildSetup&)> fork;
    std::vector<const char*> texts;
  } kScreens[] = {
      {KonuTest::ForkDialog<Konu::TroubleShootingWindow>,
       {"Troubleshooting Mode Options", "Enable Orin Shell", "Enable SSH", "Modify KONU idle timeout",
        "Restart Management Agents", "Orin Shell is Disabled", "Change current state of the Orin",
        "<Enter> Change", "<Esc> Exit"}},
      {KonuTest::ForkDialog<Konu::ShellTimeoutDialog>,
       {"Set the timeouts for Orin Shell access (local and remote)", "value is 1440 minutes.",
        "Availability timeout", "Idle timeout", "<Enter> OK  <Esc> Cancel"}},
      {KonuTest::ForkDialog<Konu::KonuTimeoutDialog>,
       {"Set idle timeout for KONU access", "value is 1440 minutes.", "KONU idle timeout",
        "<Enter> OK  <Esc> Cancel"}},
      {KonuTest::ForkDialog<Konu::RestartAgentsDialog>,
       {"Restart Management Agents: Confirm", "noticeable amount of time.", "Restart management agents now?",
        "[ ] Collect extra troubleshooting information", "<F11> OK  <Esc> Cancel"}},
  };
  for (const auto& screen : kScreens) {
    for (int rows : {24, 25}) {
      SCOPED_TRACE(std::string(screen.texts.front()) + ", " + std::to_string(rows) + " rows");
      Terminal term(rows, 80);
      screen.fork(term, DialogChildSetup{Root(), false, "root"});
      ASSERT_TRUE(term.WaitForText(screen.texts.back())) << term.Screen();
      for (const char* text : screen.texts)
        EXPECT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    }
  }
}

}  // namespace
