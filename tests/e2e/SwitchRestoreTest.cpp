// Restore Standard Switch and Restore DVS through the console on a fresh simulated host put on
// a distributed switch by "konu-hostsim dvs": what each restore does to the host, the
// refusals and questions on the way, and both screens at 80x24 and 80x25.
#include <gtest/gtest.h>

#include <string>

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

class SwitchRestore : public SimHostFixture {
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
    StartKonu(term);
    ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2"));
    ASSERT_NO_FATAL_FAILURE(MenuDownTo(term, kMenuPane));
    term.Press("Enter");
    ASSERT_TRUE(term.WaitForText(kFactoryPane)) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(MenuDownTo(term, pane));
  }

  // Presses `key` and waits until `text` shows and the console reads keys.
  static void Step(Terminal& term, const char* key, const std::string& text) {
    if (std::string(key).size() > 1)
      term.Press(key);
    else
      term.Type(key);
    ASSERT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
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
    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "<F11> OK"));
    ExpectDrawn(term, {"Restore Standard Switch", "All management network and associated uplinks",
                       "Move the management network onto a standard switch?", "<Esc> Cancel"});
    term.Press("Esc");
    ASSERT_TRUE(term.WaitForNoText("<F11> OK")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_EQ(before, State("/network"));

    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "<F11> OK"));
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
    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "Restore DVS: Error"));
    ASSERT_NO_FATAL_FAILURE(Acknowledge(term, "on 3rd party DVS."));
    SetState("/network/dvSwitches/dvs0/vendor", "Corbel");

    // The form holds the port's VLAN and uplinks; VLAN 0 is refused.
    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "<F11> OK"));
    ExpectDrawn(term, {"Restore DVS", "Enter the properties for new DVS host local port", "taken as default.",
                       "VLAN (optional)", "42", "[ ] Restore to default blocked setting (unblocked)",
                       "Select DVS uplinks: nic0 nic1", "<Esc> Cancel"});
    term.Type("0");
    ASSERT_NO_FATAL_FAILURE(Step(term, "F11", "Please enter a valid VLAN ID (1-4094)."));
    ASSERT_NO_FATAL_FAILURE(Acknowledge(term, "Please enter a valid VLAN ID (1-4094)."));
    term.Press("Backspace");
    term.Type("77");
    ASSERT_NO_FATAL_FAILURE(Step(term, "Down", "<F11> OK"));
    ASSERT_NO_FATAL_FAILURE(Step(term, " ", "[X] Restore to default blocked"));

    // No uplinks: the warning; N returns to the form.
    ASSERT_NO_FATAL_FAILURE(Step(term, "Down", "<F11> OK"));
    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "Select the DVS Uplinks (one or more)"));
    ExpectDrawn(term, {"DVS Uplinks", "Device Name", "[X] nic0", "[X] nic1", "<Space> Toggle Selected"});
    ASSERT_NO_FATAL_FAILURE(Step(term, " ", "[ ] nic0"));
    ASSERT_NO_FATAL_FAILURE(Step(term, "Down", "[ ] nic0"));
    ASSERT_NO_FATAL_FAILURE(Step(term, " ", "[ ] nic1"));
    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "Select DVS uplinks: none"));
    ASSERT_NO_FATAL_FAILURE(Step(term, "F11", "Do you want to continue?"));
    ExpectDrawn(term, {"DVS Uplinks: Warning", "No uplinks were selected.", "<N> No"});
    term.Type("n");
    ASSERT_TRUE(term.WaitForNoText("Do you want to continue?")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_EQ("10", State("/network/nukNics/nuk0/dvsPort"));

    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "[ ] nic1"));
    ASSERT_NO_FATAL_FAILURE(Step(term, "Down", "[ ] nic1"));
    ASSERT_NO_FATAL_FAILURE(Step(term, " ", "[X] nic1"));
    ASSERT_NO_FATAL_FAILURE(Step(term, "Enter", "Select DVS uplinks: nic1"));
    term.Press("F11");
    // Still on the distributed switch: the window keeps the entry selected.
    ASSERT_TRUE(term.WaitForNoText("<F11> OK")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
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
