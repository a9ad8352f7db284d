// Network Restore Options through the console on a fresh simulated host, on both console
// sizes: the window's switch entries follow where the management interface is plugged in;
// the factory restore asks twice, then powers the machines off and puts the network back as
// it left the factory, showing the address it came back with; a failing step is shown and
// the rest still runs. Restore Standard Switch and Restore DVS on a host put on a distributed
// switch by "konu-hostsim dvs": what each does to the host and the refusals and questions on
// the way.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/harness/BuildPaths.h"
#include "tests/harness/SimHost.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;
using nlohmann::json;

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
  void OpenWindow(Terminal& term) const { OpenFromMenu(term, kMenuPane, kFactoryPane); }

  // The management interface on a distributed switch, as the README's state edits put it.
  void PlugIntoDistributedSwitch() const {
    SetState("/network/dvSwitches/dvs0", {{"uplinks", {"nic2"}}, {"ports", json::object()}});
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
    ASSERT_NO_FATAL_FAILURE(Ready(term, kFactoryPane));
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
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Esc", kMenuPane));

    // On a distributed switch both are drawn as entries and take the cursor.
    PlugIntoDistributedSwitch();
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", kFactoryPane));
    EXPECT_NE(dimmed, Foreground(term, "Restore DVS")) << term.Screen();
    EXPECT_NE(dimmed, Foreground(term, "Restore Standard Switch")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Down", kStandardSwitchPane));
    EXPECT_TRUE(term.WaitForText("Try Restore DVS option")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Down", kDvsPane));
    EXPECT_TRUE(term.WaitForText("Corbel DVS")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Up", kStandardSwitchPane));
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
    SetState("/network/vswitches/vSwitch1", {{"uplinks", {"nic3"}}, {"portGroups", json::object()}});
    SetState("/network/pnics/nic0/linkUp", false);
    const json before = State("");
    Terminal term(rows, 80);
    ASSERT_NO_FATAL_FAILURE(OpenWindow(term));
    const int enabled = Foreground(term, "Restore DVS");

    // Esc at the question, then Space and Esc at the machines' warning: nothing happens.
    ASSERT_NO_FATAL_FAILURE(Confirmation(term));
    term.Press("Esc");
    ASSERT_NO_FATAL_FAILURE(BackInWindow(term, kConfirmTitle));
    ASSERT_NO_FATAL_FAILURE(Confirmation(term));
    term.Press("F11");
    for (const char* text : {kWarningTitle, "restore the network.", "<Enter> Confirm", "<Esc> Cancel"})
      ASSERT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Space");  // ignored
    term.Press("Esc");
    ASSERT_NO_FATAL_FAILURE(BackInWindow(term, kWarningTitle));
    EXPECT_FALSE(term.WaitForText(kConfirmTitle, 0)) << term.Screen();
    EXPECT_EQ(before, State("")) << "cancelled";
    EXPECT_FALSE(Contains(Syslog(), "Restoring factory network settings"));
    EXPECT_FALSE(Contains(Events(), "factory.network"));

    ASSERT_NO_FATAL_FAILURE(Confirmation(term));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F11", kWarningTitle));
    term.Press("Enter");
    for (const char* text : {"Restore Network Settings", "Please wait while the factory network settings are",
                             "Powering Off VMs. Done.", "Auto-configuring network. Done.",
                             "IP address is  10.0.0.77", "<Enter> OK"})
      EXPECT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    EXPECT_TRUE(Contains(Syslog(), "Restoring factory network settings")) << Syslog();
    EXPECT_TRUE(Contains(Events(), kEvent)) << Events();
    EXPECT_TRUE(Ran("powerOffVms --terminate")) << Journal();
    for (const auto& vm : State("/vms")) EXPECT_EQ("poweredOff", vm["powerState"]) << vm;

    const json switches = State("/network/vswitches");
    EXPECT_EQ(1u, switches.size()) << switches;
    EXPECT_EQ(json({"nic1"}), switches["vSwitch0"]["uplinks"]) << switches;
    const json portGroups = switches["vSwitch0"]["portGroups"];
    EXPECT_EQ(1u, portGroups.size()) << switches;
    EXPECT_EQ(0, portGroups["Management Network"]["vlanId"]) << switches;
    EXPECT_EQ(json::object(), State("/network/dvSwitches"));
    const json nic = State("/network/nukNics/nuk0");
    EXPECT_EQ(1u, State("/network/nukNics").size());
    EXPECT_EQ("vSwitch0", nic["switch"]);
    EXPECT_EQ("Management Network", nic["portGroup"]);
    EXPECT_FALSE(nic.contains("dvsPort"));
    EXPECT_EQ(State("/network/pnics/nic1/mac"), nic["mac"]);
    EXPECT_EQ(true, nic["ipv4"]["dhcp"]);
    EXPECT_EQ("10.0.0.77", nic["ipv4Lease"]["address"]);
    EXPECT_EQ(json({{"dhcp", false}, {"routerAdvertised", true}, {"addresses", json::array()}}), nic["ipv6"]);
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
  const json before = State("");
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
  SetState("/vms", json::array());
  SetState("/faults/operations/NetworkInfo.RestoreFactoryNetwork", "vSwitch0 is busy");
  const json network = State("/network");
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
  json after = State("/network");
  EXPECT_EQ(network["vswitches"], after["vswitches"]);
  EXPECT_EQ(network["nukNics"]["nuk0"]["ipv4"], after["nukNics"]["nuk0"]["ipv4"]);
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ASSERT_NO_FATAL_FAILURE(BackInWindow(term, "<Enter> OK"));
}

class SwitchRestore : public NetworkRestore {
 protected:
  // nuk0 on port 10 of dvs0 with nic0 and nic1; the port has VLAN 42 and `portUplinks`; nuk1
  // sits on the same switch.
  void PutOnDistributedSwitch(const json& portUplinks) const {
    const KonuTest::CommandResult moved =
        KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "--root", Root(), "dvs"});
    ASSERT_EQ(0, moved.exitCode) << moved.err;
    SetState("/network/dvSwitches/dvs0/ports/10/vlanId", 42);
    SetState("/network/dvSwitches/dvs0/ports/10/uplinks", portUplinks);
    json nuk1 = State("/network/nukNics/nuk0");
    nuk1["mac"] = "02:4b:4e:6a:10:06";
    nuk1["dvsPort"] = "12";
    SetState("/network/nukNics/nuk1", nuk1);
  }

  // Logs in, opens the restore window and moves to the entry whose pane shows `pane`.
  void OpenEntry(Terminal& term, const char* pane) const {
    ASSERT_NO_FATAL_FAILURE(OpenWindow(term));
    ASSERT_NO_FATAL_FAILURE(MenuDownTo(term, pane));
  }

  // Every text shows on the screen.
  static void ExpectDrawn(const Terminal& term, std::initializer_list<const char*> texts) {
    for (const char* text : texts)
      EXPECT_TRUE(Contains(term.Screen(), text)) << text << "\n" << term.Screen();
  }
};

// A failing uplink move (25 rows) is shown and the rest still runs; the port's own uplink
// moves and the other uplink stays on the distributed switch.
TEST_F(SwitchRestore, StandardSwitchRestoreMovesTheManagementNetworkAndItsUplinksOntoANewSwitch) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(std::to_string(rows) + " rows");
    SetUp();
    const bool failing = rows == 25;
    ASSERT_NO_FATAL_FAILURE(PutOnDistributedSwitch(json::array({"nic1"})));
    if (failing) SetState("/faults/operations/VirtualSwitchInfo.AddUplink", "NIC busy");
    Terminal term(rows, 80);
    ASSERT_NO_FATAL_FAILURE(OpenEntry(term, kStandardSwitchPane));

    // Esc changes nothing.
    const json before = State("/network");
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "<F11> OK"));
    ExpectDrawn(term, {"Restore Standard Switch", "All management network and associated uplinks",
                       "Move the management network onto a standard switch?", "<Esc> Cancel"});
    term.Press("Esc");
    ReadyWithout(term, "<F11> OK");
    EXPECT_EQ(before, State("/network"));

    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "<F11> OK"));
    term.Press("F11");
    if (failing) {
      ASSERT_TRUE(term.WaitForText("Network Configuration Error")) << term.Screen();
      ASSERT_NO_FATAL_FAILURE(Acknowledge(term, "Moving uplink nic1 to vSwitch1 failed: NIC busy"));
    }
    // Off the distributed switch, the window dims the switch entries and selects the first.
    ASSERT_TRUE(term.WaitForText(kFactoryPane)) << term.Screen();

    const json vSwitch1 = State("/network/vswitches/vSwitch1");
    EXPECT_EQ(failing ? json::array() : json::array({"nic1"}), vSwitch1["uplinks"]);
    EXPECT_EQ(42, vSwitch1["portGroups"]["Management Network"]["vlanId"]);
    EXPECT_EQ("vSwitch1", State("/network/nukNics/nuk0/switch"));
    EXPECT_EQ("Management Network", State("/network/nukNics/nuk0/portGroup"));
    // nic0 does not serve the port and stays; a failed move leaves nic1 on neither switch.
    EXPECT_EQ(json::array({"nic0"}), State("/network/dvSwitches/dvs0/uplinks"));
    EXPECT_EQ(false, State("/network/nukNics/nuk1/usable"));
    EXPECT_EQ(true, State("/network/nukNics/nuk0/up"));
    EXPECT_TRUE(Contains(Syslog(), "Moving uplink nic1 from dvs0 to vSwitch1")) << Syslog();
  }
}

TEST_F(SwitchRestore, RestoreDvsRebuildsThePortAsAHostLocalPort) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(std::to_string(rows) + " rows");
    SetUp();
    ASSERT_NO_FATAL_FAILURE(PutOnDistributedSwitch(json::array({"nic0", "nic1"})));
    SetState("/network/dvSwitches/dvs0/ports/10/blocked", true);
    SetState("/network/dvSwitches/dvs0/vendor", "Example Networks");
    Terminal term(rows, 80);
    ASSERT_NO_FATAL_FAILURE(OpenEntry(term, kDvsPane));

    // Another vendor's switch is refused before the form.
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Restore DVS: Error"));
    ASSERT_NO_FATAL_FAILURE(Acknowledge(term, "on 3rd party DVS."));
    SetState("/network/dvSwitches/dvs0/vendor", "Corbel");

    // The form holds the port's VLAN and uplinks; VLAN 0 is refused.
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "<F11> OK"));
    ExpectDrawn(term, {"Restore DVS", "Enter the properties for new DVS host local port", "taken as default.",
                       "VLAN (optional)", "42", "[ ] Restore to default blocked setting (unblocked)",
                       "Select DVS uplinks: nic0 nic1", "<Esc> Cancel"});
    term.Type("0");
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F11", "Please enter a valid VLAN ID (1-4094)."));
    ASSERT_NO_FATAL_FAILURE(Acknowledge(term, "Please enter a valid VLAN ID (1-4094)."));
    term.Press("Backspace");
    term.Type("77");
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Down", "<F11> OK"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, " ", "[X] Restore to default blocked"));

    // No uplinks: the warning; N returns to the form.
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Down", "<F11> OK"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Select the DVS Uplinks (one or more)"));
    ExpectDrawn(term, {"DVS Uplinks", "Device Name", "[X] nic0", "[X] nic1", "<Space> Toggle Selected"});
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, " ", "[ ] nic0"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Down", "[ ] nic0"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, " ", "[ ] nic1"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Select DVS uplinks: none"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F11", "Do you want to continue?"));
    ExpectDrawn(term, {"DVS Uplinks: Warning", "No uplinks were selected.", "<N> No"});
    term.Type("n");
    ReadyWithout(term, "Do you want to continue?");
    EXPECT_EQ("10", State("/network/nukNics/nuk0/dvsPort"));

    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "[ ] nic1"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Down", "[ ] nic1"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, " ", "[X] nic1"));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Select DVS uplinks: nic1"));
    term.Press("F11");
    // Still on the distributed switch: the window keeps the entry selected.
    ReadyWithout(term, "<F11> OK");
    EXPECT_TRUE(Contains(term.Screen(), kDvsPane)) << term.Screen();

    // A new host-local port, cloned from port 10, carries nuk0.
    EXPECT_EQ("11", State("/network/nukNics/nuk0/dvsPort"));
    EXPECT_EQ("dvs0", State("/network/nukNics/nuk0/switch"));
    const json port = State("/network/dvSwitches/dvs0/ports/11");
    EXPECT_EQ(77, port["vlanId"]);
    EXPECT_EQ(json::array({"nic1"}), port["uplinks"]);
    EXPECT_EQ(false, port["blocked"]);
    EXPECT_EQ(true, port["hostLocal"]);
    EXPECT_EQ(1500, port["mtu"]);
    EXPECT_EQ(42, State("/network/dvSwitches/dvs0/ports/10/vlanId"));
  }
}

}  // namespace
