// Network Restore Options through the console on a fresh simulated host, on both console
// sizes: the window's switch entries follow where the management interface is plugged in;
// the factory restore asks twice, then powers the machines off and puts the network back as
// it left the factory, showing the address it came back with; a failing step is shown and
// the rest still runs.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

constexpr const char kMenuPane[] = "To view various network restore";
constexpr const char kFactoryPane[] = "revert all network configuration";
constexpr const char kStandardSwitchPane[] = "All management network and";
constexpr const char kDvsPane[] = "Reconfigure properties of";
constexpr const char kConfirmTitle[] = "Restore Network Factory Settings";
constexpr const char kQuestion[] = "Are you sure you want to reset the host network configuration?";
constexpr const char kWarningTitle[] = "Warning: VMs running on the host";
constexpr const char kEvent[] =
    "@&!*@*@(zeb.user.konu.factory.network.restored)Restoring factory network settings";

class NetworkRestore : public SimHostFixture {
 protected:
  // Starts the console on `term`, logs in and opens the restore window from the menu.
  void OpenWindow(Terminal& term) const {
    StartKonu(term);
    ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2"));
    ASSERT_NO_FATAL_FAILURE(MenuDownTo(term, kMenuPane));
    term.Press("Enter");
    ASSERT_TRUE(term.WaitForText(kFactoryPane)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }

  // The management interface on a distributed switch, as the README's state edits put it.
  void PlugIntoDistributedSwitch() const {
    SetState("/network/dvSwitches/dvs0", {{"uplinks", {"nic2"}}, {"ports", nlohmann::json::object()}});
    SetState("/network/nukNics/nuk0/switch", "dvs0");
    SetState("/network/nukNics/nuk0/dvsPort", "10");
  }

  // Enter on the focused "Restore Network Settings": the confirmation.
  static void Confirmation(Terminal& term) {
    term.Press("Enter");
    for (const char* text : {kConfirmTitle, "This option will reset the host network configuration to its",
                             kQuestion, "<F11> OK  <Esc> Cancel"})
      ASSERT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }

  // Back in the restore window with the given box closed.
  static void BackInWindow(Terminal& term, const char* closed) {
    ASSERT_TRUE(term.WaitForNoText(closed)) << term.Screen();
    ASSERT_TRUE(term.WaitForText(kFactoryPane)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }

  static int Foreground(const Terminal& term, const std::string& text) {
    int row = 0, col = 0;
    return term.Find(text, &row, &col) ? term.Colors(row, col).foreground : -100;
  }

  // Moves with `key` and waits until the pane shows `text`.
  static void Move(Terminal& term, const char* key, const char* text) {
    term.Press(key);
    ASSERT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }
};

TEST_F(NetworkRestore, SwitchEntriesAreDimmedOnAStandardSwitchAndEnabledOnADistributedOne) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(std::to_string(rows) + " rows");
    SetUp();
    Terminal term(rows, 80);
    ASSERT_NO_FATAL_FAILURE(OpenWindow(term));
    for (const char* text : {"Network Restore Options", "Restore Network Settings", "Restore Standard Switch",
                             "Restore DVS", "machines on the host.", "<Enter> Restore", "<Esc> Exit"})
      EXPECT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    // On vSwitch0 the two switch entries are dimmed and the cursor cannot reach them.
    const int dimmed = Foreground(term, "Restore DVS");
    EXPECT_EQ(dimmed, Foreground(term, "Restore Standard Switch"));
    term.Press("Down");
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_TRUE(term.WaitForText(kFactoryPane, 0)) << term.Screen();
    term.Press("Esc");
    ASSERT_TRUE(term.WaitForText(kMenuPane)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());

    // On a distributed switch both are drawn as entries and take the cursor.
    PlugIntoDistributedSwitch();
    term.Press("Enter");
    ASSERT_TRUE(term.WaitForText(kFactoryPane)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_NE(dimmed, Foreground(term, "Restore DVS")) << term.Screen();
    EXPECT_NE(dimmed, Foreground(term, "Restore Standard Switch")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Move(term, "Down", kStandardSwitchPane));
    EXPECT_TRUE(term.WaitForText("Try Restore DVS option")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Move(term, "Down", kDvsPane));
    EXPECT_TRUE(term.WaitForText("Corbel DVS")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Move(term, "Up", kStandardSwitchPane));
  }
}

// A management interface on a distributed switch, a second standard switch and a first NIC
// without link: the restore leaves one switch on the first connected NIC, the interface on
// DHCP with automatic IPv6 and DNS from DHCP, and the host name as it was.
TEST_F(NetworkRestore, FactoryRestoreAsksTwiceThenStopsTheMachinesAndResetsTheNetwork) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(std::to_string(rows) + " rows");
    SetUp();
    PlugIntoDistributedSwitch();
    SetState("/network/vswitches/vSwitch1",
             {{"uplinks", {"nic3"}}, {"portGroups", nlohmann::json::object()}});
    SetState("/network/pnics/nic0/linkUp", false);
    const nlohmann::json before = State("");
    Terminal term(rows, 80);
    ASSERT_NO_FATAL_FAILURE(OpenWindow(term));
    const int enabled = Foreground(term, "Restore DVS");

    // Esc at the question, then Esc at the machines' warning: nothing happens.
    ASSERT_NO_FATAL_FAILURE(Confirmation(term));
    term.Press("Esc");
    ASSERT_NO_FATAL_FAILURE(BackInWindow(term, kConfirmTitle));
    ASSERT_NO_FATAL_FAILURE(Confirmation(term));
    term.Press("F11");
    for (const char* text : {kWarningTitle, "restore the network.", "<Enter> Confirm"})
      ASSERT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Esc");
    ASSERT_NO_FATAL_FAILURE(BackInWindow(term, kWarningTitle));
    EXPECT_FALSE(term.WaitForText(kConfirmTitle, 0)) << term.Screen();
    EXPECT_EQ(before, State("")) << "cancelled";
    EXPECT_FALSE(Contains(Syslog(), "Restoring factory network settings"));
    EXPECT_FALSE(Contains(ReadFile("var/log/zebd.log"), "factory.network"));

    ASSERT_NO_FATAL_FAILURE(Confirmation(term));
    term.Press("F11");
    ASSERT_TRUE(term.WaitForText(kWarningTitle)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Enter");
    for (const char* text : {"Restore Network Settings", "Please wait while the factory network settings are",
                             "Powering Off VMs. Done.", "Auto-configuring network. Done.",
                             "IP address is  10.0.0.77", "<Enter> OK"})
      EXPECT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    EXPECT_TRUE(Contains(Syslog(), "Restoring factory network settings")) << Syslog();
    EXPECT_TRUE(Contains(ReadFile("var/log/zebd.log"), kEvent)) << ReadFile("var/log/zebd.log");
    const std::vector<std::string> ran = JournalCommands();
    EXPECT_NE(ran.end(), std::find(ran.begin(), ran.end(), "powerOffVms --terminate")) << Journal();
    for (const auto& vm : State("/vms")) EXPECT_EQ("poweredOff", vm["powerState"]) << vm;

    const nlohmann::json switches = State("/network/vswitches");
    EXPECT_EQ(1u, switches.size()) << switches;
    EXPECT_EQ(nlohmann::json({"nic1"}), switches["vSwitch0"]["uplinks"]) << switches;
    const nlohmann::json portGroups = switches["vSwitch0"]["portGroups"];
    EXPECT_EQ(1u, portGroups.size()) << switches;
    EXPECT_EQ(0, portGroups["Management Network"]["vlanId"]) << switches;
    EXPECT_EQ(nlohmann::json::object(), State("/network/dvSwitches"));
    const nlohmann::json nic = State("/network/nukNics/nuk0");
    EXPECT_EQ(1u, State("/network/nukNics").size());
    EXPECT_EQ("vSwitch0", nic["switch"]);
    EXPECT_EQ("Management Network", nic["portGroup"]);
    EXPECT_FALSE(nic.contains("dvsPort"));
    EXPECT_EQ(State("/network/pnics/nic1/mac"), nic["mac"]);
    EXPECT_EQ(true, nic["ipv4"]["dhcp"]);
    EXPECT_EQ("10.0.0.77", nic["ipv4Lease"]["address"]);
    EXPECT_EQ(
        nlohmann::json({{"dhcp", false}, {"routerAdvertised", true}, {"addresses", nlohmann::json::array()}}),
        nic["ipv6"]);
    EXPECT_EQ(true, nic["dnsFromDhcp"]);
    EXPECT_EQ(true, State("/network/dns/defaultTcpipStack/fromDhcp"));
    EXPECT_EQ(true, nic["up"]);
    EXPECT_EQ(before["host"], State("/host"));
    const std::string kernel = ReadFile("var/log/nukernel.log");
    EXPECT_TRUE(Contains(kernel, "nuk0 taken down") && Contains(kernel, "nuk0 brought up")) << kernel;

    // Enter closes; the interface left the distributed switch, so the switch entries dim.
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Enter");
    ASSERT_NO_FATAL_FAILURE(BackInWindow(term, "<Enter> OK"));
    EXPECT_NE(enabled, Foreground(term, "Restore DVS")) << term.Screen();
  }
}

// A host that cannot restore its network refuses before anything runs: no question, no
// machine stopped, nothing changed. Then one that can, with no machine running (so no
// warning), whose restore fails: shown, logged, and the interface still restarts. Nothing is
// rolled back.
TEST_F(NetworkRestore, AHostThatCannotRestoreStopsNothingAndAFailingRestoreIsShown) {
  SetState("/faults/operations/NetworkInfo.CanRestoreFactoryNetwork", "no factory image");
  const nlohmann::json before = State("");
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(OpenWindow(term));
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Network Configuration Error")) << term.Screen();
  EXPECT_FALSE(term.WaitForText(kConfirmTitle, 0)) << term.Screen();
  ASSERT_NO_FATAL_FAILURE(Acknowledge(term, "This host cannot restore its factory network settings."));
  ASSERT_NO_FATAL_FAILURE(BackInWindow(term, "Network Configuration Error"));
  EXPECT_TRUE(Contains(Syslog(), "Unable to restore the factory network settings: no factory image"))
      << Syslog();
  const std::vector<std::string> ran = JournalCommands();
  EXPECT_TRUE(std::none_of(ran.begin(), ran.end(), [](const auto& c) { return Contains(c, "powerOffVms"); }))
      << Journal();
  EXPECT_EQ(before, State("")) << "refused";

  SetState("/faults/operations/NetworkInfo.CanRestoreFactoryNetwork", nullptr);
  SetState("/vms", nlohmann::json::array());
  SetState("/faults/operations/NetworkInfo.RestoreFactoryNetwork", "vSwitch0 is busy");
  const nlohmann::json network = State("/network");
  ASSERT_NO_FATAL_FAILURE(Confirmation(term));
  term.Press("F11");
  ASSERT_TRUE(term.WaitForText("Network Configuration Error")) << term.Screen();
  EXPECT_FALSE(term.WaitForText(kWarningTitle, 0));
  ASSERT_NO_FATAL_FAILURE(Acknowledge(term, "vSwitch0 is busy"));
  ASSERT_TRUE(term.WaitForText("Auto-configuring network. Failed.")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("IP address is  10.0.0.5")) << term.Screen();
  EXPECT_TRUE(Contains(Syslog(), "Unable to restore the factory network settings: vSwitch0 is busy"))
      << Syslog();
  EXPECT_TRUE(Contains(ReadFile("var/log/nukernel.log"), "nuk0 brought up"));
  nlohmann::json after = State("/network");
  EXPECT_EQ(network["vswitches"], after["vswitches"]);
  EXPECT_EQ(network["nukNics"]["nuk0"]["ipv4"], after["nukNics"]["nuk0"]["ipv4"]);
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ASSERT_NO_FATAL_FAILURE(BackInWindow(term, "<Enter> OK"));
}

}  // namespace
