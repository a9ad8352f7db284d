// The Configure Management Network screen on a fresh simulated host, run by itself in a pty
// child (and once through the menu, as an operator reaches it): summary panes, the exit
// confirmation, the adapters, VLAN and address dialogs with their refusals and modes, and the
// apply with its log lines, host changes and error dialogs.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "network/NetworkWindow.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::DialogChildSetup;
using KonuTest::SimHostFixture;
using KonuTest::Terminal;
using nlohmann::json;

class NetworkScreen : public SimHostFixture {
 protected:
  // Runs the screen in a pty child; `ready` waits until it reads keys.
  void Open(Terminal& term, bool ready = true) {
    DialogChildSetup setup{Root(), false, "root"};
    term.Fork(
        [setup] {
          return KonuTest::RunDialogChild(
              setup, [](Konu::Frame& owner) { return Konu::NetworkWindow(&owner).Run(); });
        },
        KonuTest::UiEnv());
    if (ready) Ready(term, "<Esc> Exit");
  }

  // Moves the selection down until the pane shows `heading` (staying when it does already),
  // and waits for key reading.
  static void Select(Terminal& term, const std::string& heading) {
    for (int i = 0; i < 6 && PaneHeading(term) != heading; ++i) {
      const std::string before = PaneHeading(term);
      term.Press("Down");
      ASSERT_TRUE(term.WaitFor([&] { return PaneHeading(term) != before; })) << term.Screen();
      ASSERT_TRUE(term.WaitUntilPolling());
    }
    ASSERT_EQ(heading, PaneHeading(term)) << term.Screen();
  }

  // The heading of the summary pane: row 1, after the screen's title.
  static std::string PaneHeading(const Terminal& term) {
    const std::string title = "Configure Management Network";
    std::string row = term.Row(1);
    const size_t at = row.find(title);
    if (at == std::string::npos) return "";
    row = row.substr(at + title.size());
    const size_t begin = row.find_first_not_of(' ');
    const size_t end = row.find("  ", begin);
    return begin == std::string::npos ? "" : row.substr(begin, end - begin);
  }

  // The first line of the summary pane (row 4, beside the first menu entry).
  static std::string PaneFirstLine(const Terminal& term) {
    std::string row = term.Row(4);
    const size_t at = row.find("Network Adapters");
    if (at == std::string::npos) return "";
    row = row.substr(at + 16);
    const size_t begin = row.find_first_not_of(' ');
    const size_t end = row.find(' ', begin);
    return begin == std::string::npos ? "" : row.substr(begin, end - begin);
  }
  static void WaitForPane(Terminal& term, const std::string& firstLine) {
    ASSERT_TRUE(term.WaitFor([&] { return PaneFirstLine(term) == firstLine; })) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }

  // Leaves the screen: Esc, then the confirmation's answer ("" when none is expected).
  static void Leave(Terminal& term, const std::string& question, const std::string& answer) {
    term.Press("Esc");
    if (!question.empty()) {
      Ready(term, question);
      term.Press(answer);
    }
  }

  // The VLAN dialog: types `text` over the value and presses Enter.
  static void EnterVlan(Terminal& term, const std::string& text) {
    Ready(term, "VLAN ID (1-4094, or 4095 to access all VLANs):");
    for (int i = 0; i < 6; ++i) term.Press("Backspace");
    term.Type(text);
    term.Press("Enter");
  }

  // From the first entry: Space on the adapter `row` rows down (showing `markedRow` after),
  // Enter; then the VLAN entry set to `vlan`.
  static void ChangeAdapterAndVlan(Terminal& term, int row, const std::string& markedRow,
                                   const std::string& vlan) {
    term.Press("Enter");
    Ready(term, "Hardware Label (MAC Address)");
    for (int i = 0; i < row; ++i) term.Press("Down");
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Space", markedRow));
    term.Press("Enter");
    ReadyWithout(term, "Hardware Label (MAC Address)");
    Select(term, "VLAN (optional)");
    term.Press("Enter");
    EnterVlan(term, vlan);
    WaitForPane(term, vlan);
  }

  static constexpr const char* kDialogFooter = "<Enter> OK  <Esc> Cancel";

  // The open dialog is drawn whole: `lastRow` above its footer, its own bottom edge (not the
  // screen's, which starts its row) right below.
  static void ExpectWholeDialog(const Terminal& term, const std::string& lastRow) {
    int footer = 0, last = 0, col = 0;
    ASSERT_TRUE(term.Find(kDialogFooter, &footer, &col)) << term.Screen();
    EXPECT_TRUE(term.Find(lastRow, &last, &col) && last < footer) << lastRow << "\n" << term.Screen();
    ASSERT_LT(footer + 1, term.Rows()) << term.Screen();
    const size_t corner = term.Row(footer + 1).find("└");
    EXPECT_TRUE(corner != std::string::npos && corner > 0) << term.Screen();
  }

  std::string Pnic(const std::string& name) const {
    return State("/network/pnics/" + name + "/mac").get<std::string>();
  }
  json Switch0() const { return State("/network/vswitches/vSwitch0"); }
  json ManagementGroup() const { return State("/network/vswitches/vSwitch0/portGroups/Management Network"); }
  std::string NicMac() const { return State("/network/nukNics/nuk0/mac").get<std::string>(); }

  // Checks that `lines` occur in the syslog in this order.
  void ExpectLogOrder(const std::vector<std::string>& lines) const {
    const std::string log = Syslog();
    size_t at = 0;
    for (const std::string& line : lines) {
      size_t found = log.find(line, at);
      ASSERT_NE(std::string::npos, found) << "missing or out of order: " << line << "\n" << log;
      at = found + line.size();
    }
  }
};

// Every pane with its lines and help text, on both console sizes; then every dialog opened,
// drawn whole and accepted unchanged, and Esc: nothing applied, no confirmation.
TEST_F(NetworkScreen, PanesDrawFullyAndUnchangedDialogsApplyNothing) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(rows);
    Terminal term(rows, 80);
    Open(term);
    const std::string bottom = term.Row(rows - 3);
    EXPECT_TRUE(Contains(bottom, "<Up/Down> Select")) << term.Screen();
    EXPECT_TRUE(Contains(bottom, "<Enter> Change")) << term.Screen();
    EXPECT_TRUE(Contains(term.Row(rows - 2), "└")) << term.Screen();
    EXPECT_EQ("nic0", PaneFirstLine(term)) << term.Screen();
    EXPECT_TRUE(Contains(term.Screen(), "be load-balanced.")) << term.Screen();
    struct Pane {
      const char* heading;
      std::vector<const char*> texts;
    };
    const Pane panes[] = {
        {"VLAN (optional)", {"Not set", "A VLAN is a virtual network within a"}},
        {"IPv4 Configuration",
         {"Manual", "IPv4 Address: 10.0.0.5", "Subnet Mask: 255.255.255.0", "Default Gateway: 10.0.0.1",
          "This host can obtain an IPv4 address"}},
        {"IPv6 Configuration",
         {"IPv6 is enabled.", "Manual", "IPv6 Addresses:", "2001:db8:10::5/64",
          "Default Gateway: 2001:db8:10::1", "This host can obtain IPv6 addresses"}},
        {"DNS Configuration",
         {"Manual", "Primary DNS Server: 10.0.0.2", "Alternate DNS Server: 10.0.0.3",
          "Hostname: ", "If this host is configured using"}},
        {"Custom DNS Suffixes", {"example.test", "When using short, unqualified names,"}},
    };
    for (const Pane& pane : panes) {
      Select(term, pane.heading);
      for (const char* text : pane.texts)
        EXPECT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
      EXPECT_TRUE(Contains(term.Row(rows - 3), "<Esc> Exit")) << term.Screen();
    }
    for (int i = 0; i < 5; ++i) term.Press("Up");
    ASSERT_TRUE(term.WaitFor([&] { return PaneHeading(term) == "Network Adapters"; })) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Enter");
    Ready(term, "Hardware Label (MAC Address)");
    EXPECT_TRUE(Contains(term.Screen(), "load-balancing.")) << term.Screen();
    term.Press("Enter");
    ReadyWithout(term, "Hardware Label (MAC Address)");
    // Every other dialog drawn whole, its first field filled from the host, and accepted as
    // it stands; IPv6 disabled and enabled again in its dialog.
    struct Entry {
      const char* heading;
      const char* field;
      const char* value;
      const char* lastRow;
      std::vector<std::string> keys;
    };
    const Entry entries[] = {
        {"VLAN (optional)", "VLAN ID (1-4094", "", "VLAN ID (1-4094", {}},
        {"IPv4 Configuration", "IPv4 Address", "[ 10.0.0.5 ", "Default Gateway", {}},
        {"IPv6 Configuration",
         "Static address",
         "[ 2001:db8:10::5/64 ",
         "Default gateway",
         {" ", "Down", "Down", " "}},
        {"DNS Configuration", "Primary DNS Server", "[ 10.0.0.2 ", "Hostname", {}},
        {"Custom DNS Suffixes", "Suffixes:", "[ example.test ", "Suffixes:", {}},
    };
    for (const Entry& entry : entries) {
      SCOPED_TRACE(entry.heading);
      Select(term, entry.heading);
      term.Press("Enter");
      Ready(term, kDialogFooter);
      ExpectWholeDialog(term, entry.lastRow);
      int row = 0, col = 0;
      EXPECT_TRUE(term.Find(entry.field, &row, &col) && Contains(term.Row(row), entry.value))
          << term.Screen();
      for (const std::string& key : entry.keys) term.Press(key);
      term.Press("Enter");
      ReadyWithout(term, kDialogFooter);
    }
    Leave(term, "", "");
    ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
    EXPECT_FALSE(Contains(term.Screen(), "Apply changes")) << term.Screen();
    FinishDialogChild(term, 1);
  }
  EXPECT_FALSE(Contains(Syslog(), "Setting ")) << Syslog();
  EXPECT_FALSE(Contains(Syslog(), "Network settings changed.")) << Syslog();
}

// Adapters marked C, A, B (C a 12-character NIC serving another switch); A unmarked and
// marked again gives C, B, A, which the apply makes the uplinks and the teaming order; C's
// MAC becomes the interface's.
TEST_F(NetworkScreen, AdaptersKeepTheOrderOfMarkingAndMoveANicOffItsOtherSwitch) {
  SetState("/network/pnics/uplinkport12",
           {{"label", ""}, {"mac", "02:00:00:00:00:12"}, {"linkUp", true}, {"pci", "0000:05:00.0"}});
  SetState("/network/pnics/uplinkport1",
           {{"label", "virtio_net adapter"}, {"mac", "02:00:00:00:00:11"}, {"linkUp", false}});
  SetState("/network/vswitches/vSwitch1", {{"uplinks", {"uplinkport12"}}, {"portGroups", json::object()}});
  SetState("/network/vswitches/vSwitch0/uplinks", {"nic0"});
  SetState("/network/vswitches/vSwitch0/portGroups/Management Network/teaming",
           {{"maxActiveUplinks", 1},
            {"explicitOrder", true},
            {"activeUplinks", {"nic0"}},
            {"standbyUplinks", json::array()}});
  Terminal term(24, 80);
  Open(term);
  term.Press("Enter");
  Ready(term, "Hardware Label (MAC Address)");
  const std::string list = term.Screen();
  EXPECT_TRUE(Contains(list, "uplinkpo...  0000:05:00.0 (...0:00:00:12)  Connected (...)")) << list;
  EXPECT_TRUE(Contains(list, "uplinkport1  virtio_net ... (...00:00:11)  Disconnected")) << list;
  // Rows in device order: nic0..nic3, uplinkport1, uplinkport12.
  int at = 0;
  auto moveTo = [&](int row) {
    for (; at < row; ++at) term.Press("Down");
    for (; at > row; --at) term.Press("Up");
  };
  auto mark = [&](int row, const std::string& expectRow) {
    moveTo(row);
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Space", expectRow));
  };
  mark(0, "[ ] nic0");
  mark(5, "[X] uplinkpo...");  // C
  mark(1, "[X] nic1");         // A
  mark(2, "[X] nic2");         // B
  term.Press("d");
  Ready(term, "Adapter Details");
  EXPECT_TRUE(Contains(term.Screen(), "Used By: None")) << term.Screen();
  term.Press("Esc");
  ReadyWithout(term, "Adapter Details");
  mark(1, "[ ] nic1");
  mark(1, "[X] nic1");  // A again: now last
  moveTo(5);
  term.Press("d");
  Ready(term, "Adapter Details");
  EXPECT_TRUE(Contains(term.Screen(), "Device Name: uplinkport12")) << term.Screen();
  EXPECT_TRUE(Contains(term.Screen(), "vSwitch1")) << term.Screen();
  term.Press("Enter");
  ReadyWithout(term, "Adapter Details");
  term.Press("Enter");
  Ready(term, "Remove these adapters from their current connections?");
  EXPECT_TRUE(Contains(term.Screen(), "Network Adapters: Warning")) << term.Screen();
  term.Press("n");  // stays in the list
  ASSERT_TRUE(term.WaitForNoText("Remove these adapters")) << term.Screen();
  Ready(term, "Hardware Label (MAC Address)");
  term.Press("Enter");
  Ready(term, "Remove these adapters from their current connections?");
  term.Press("y");
  ReadyWithout(term, "Hardware Label (MAC Address)");
  WaitForPane(term, "uplinkport12");
  EXPECT_TRUE(Contains(term.Row(5), "  nic2  ")) << term.Screen();
  EXPECT_TRUE(Contains(term.Row(6), "  nic1  ")) << term.Screen();
  Leave(term, "Apply changes and restart management network?", "y");
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);

  const std::vector<std::string> order = {"uplinkport12", "nic2", "nic1"};
  EXPECT_EQ(json(order), Switch0()["uplinks"]);
  EXPECT_EQ(json(order), ManagementGroup()["teaming"]["activeUplinks"]);
  EXPECT_EQ(4, ManagementGroup()["teaming"]["maxActiveUplinks"]);  // one more per added uplink
  EXPECT_EQ(json::array(), State("/network/vswitches/vSwitch1/uplinks"));
  EXPECT_EQ("02:00:00:00:00:12", NicMac());
  ExpectLogOrder(
      {"Setting adapters to uplinkport12 nic2 nic1", "Setting suffixes to ", "Network settings changed."});
}

// On a distributed switch no adapter, MAC or VLAN change is attempted, even when chosen.
TEST_F(NetworkScreen, OnADistributedSwitchAdaptersMacAndVlanAreLeftAlone) {
  SetState("/network/dvSwitches/dvs0", {{"uplinks", {"nic2"}}, {"ports", json::object()}});
  SetState("/network/nukNics/nuk0/switch", "dvs0");
  SetState("/network/nukNics/nuk0/dvsPort", "10");
  const json before = State("/network");
  Terminal term(24, 80);
  Open(term);
  WaitForPane(term, "Not");  // "Not set": no adapters held
  ChangeAdapterAndVlan(term, 3, "[X] nic3", "12");
  Leave(term, "Apply changes and restart management network?", "Y");
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);
  EXPECT_EQ(before["vswitches"], State("/network/vswitches"));
  EXPECT_EQ(before["dvSwitches"], State("/network/dvSwitches"));
  EXPECT_EQ(before["nukNics"]["nuk0"]["mac"], NicMac());
  EXPECT_FALSE(Contains(Syslog(), "Setting adapters to")) << Syslog();
  ExpectLogOrder({"Setting suffixes to ", "Network settings changed."});
}

// VLAN ids: 0 and 4096 refused, empty accepted as unset, 4095 after the warning. Esc in the
// confirmation keeps the change, N drops it; the next visit applies it with Y, restarting
// the interface.
TEST_F(NetworkScreen, VlanRulesAndTheConfirmationAnswers) {
  {
    Terminal term(24, 80);
    Open(term);
    Select(term, "VLAN (optional)");
    for (const char* refused : {"0", "4096"}) {
      term.Press("Enter");
      EnterVlan(term, refused);
      Acknowledge(term, "Please reenter a valid VLAN ID (1-4095).");
      term.Press("Esc");
      ReadyWithout(term, "VLAN ID (1-4094");
    }
    term.Press("Enter");
    EnterVlan(term, "");
    ReadyWithout(term, "VLAN ID (1-4094");
    term.Press("Enter");
    EnterVlan(term, "4095");
    Ready(term, "You entered a VLAN ID of 4095.");
    EXPECT_TRUE(Contains(term.Screen(), "Warning")) << term.Screen();
    term.Press("Enter");
    WaitForPane(term, "4095");
    Leave(term, "Apply changes and restart management network?", "Esc");
    ReadyWithout(term, "Apply changes");
    WaitForPane(term, "4095");  // still held
    Leave(term, "Apply changes and restart management network?", "n");
    ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
    FinishDialogChild(term, 1);
    EXPECT_EQ(0, ManagementGroup()["vlanId"]);
    EXPECT_FALSE(Contains(Syslog(), "Setting ")) << Syslog();
  }
  Terminal term(24, 80);
  Open(term);
  Select(term, "VLAN (optional)");
  term.Press("Enter");
  EnterVlan(term, "42");
  WaitForPane(term, "42");
  Leave(term, "Apply changes and restart management network?", "Y");
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);
  EXPECT_EQ(42, ManagementGroup()["vlanId"]);
  EXPECT_TRUE(State("/network/nukNics/nuk0/up").get<bool>());
  ExpectLogOrder({"Changed vlan, restarting management interface", "Network settings changed."});
  const std::string kernel = ReadFile("var/log/nukernel.log");
  const size_t down = kernel.find("Net: nuk0 taken down");
  const size_t refreshed = kernel.find("Net: nuk0 refreshed", down);
  ASSERT_NE(std::string::npos, down) << kernel;
  ASSERT_NE(std::string::npos, refreshed) << kernel;
  EXPECT_NE(std::string::npos, kernel.find("Net: nuk0 brought up", refreshed)) << kernel;
}

// One fault per apply step: the step's error dialog (or, for the uplink and VLAN helpers,
// the log line), and a later step still runs.
TEST_F(NetworkScreen, EachFailingStepIsReportedAndTheNextStepRuns) {
  struct Case {
    const char* operation;
    std::vector<std::pair<const char*, json>> state;  // set before the screen opens
    const char* dialog;                               // "" when the step only logs
    const char* logged;
    const char* later;  // a later step's log line
  };
  const Case cases[] = {
      {"VirtualSwitchInfo.RemoveUplink",
       {},
       "",
       "Removing uplink nic0 failed: boom",
       "Setting ipv6 configuration"},
      {"NukNic.SetMacAddressFromPnic",
       {},
       "Setting mac address of nunic failed: boom",
       "",
       "Setting ipv6 configuration"},
      {"VirtualSwitchInfo.SetPortGroupVlanId",
       {},
       "",
       "Setting VlanID failed: boom",
       "Setting ipv6 configuration"},
      {"NukNic.GetCurrentIpConfig",
       {},
       "Setting ip configuration failed: boom",
       "",
       "Setting ipv6 configuration"},
      {"NetworkInfo.SetNukIpv6Enabled",
       {},
       "Setting ipv6 configuration failed: boom",
       "",
       "Setting suffixes to"},
      {"NukNic.SetIpConfig", {}, "Setting ip/ipv6 configuration failed: boom", "", "Setting suffixes to"},
      {"RoutingInfo.GetNuKernelDefaultGateway",
       {},
       "Setting default gateway failed: boom",
       "",
       "Setting suffixes to"},
      {"NukNic.RenewIpv4Lease",
       {{"/network/nukNics/nuk0/ipv4/dhcp", true}},
       "Renewing DHCP lease failed: boom",
       "",
       "Setting suffixes to"},
      {"NukNic.TakeDown", {}, "Restarting management interface failed: boom", "", "Setting suffixes to"},
      {"DnsConfig.SaveConfig", {}, "Setting DNS failed: boom", "", "Network settings changed."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.operation);
    SetUp();  // a fresh host per case
    for (const auto& [pointer, value] : c.state) SetState(pointer, value);
    SetState(std::string("/faults/operations/") + c.operation, "boom");
    Terminal term(24, 80);
    Open(term);
    // A change for every step: nic0 unmarked (nic1 first now), VLAN 7.
    ChangeAdapterAndVlan(term, 0, "[ ] nic0", "7");
    Leave(term, "Apply changes and restart management network?", "y");
    if (*c.dialog) {
      Ready(term, c.dialog);
      EXPECT_TRUE(Contains(term.Screen(), "Enable Management Network: Error")) << term.Screen();
      term.Press("Enter");
    }
    ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
    FinishDialogChild(term, 1);
    ExpectLogOrder({*c.dialog ? c.dialog : c.logged, c.later});
  }
}

// An opaque connection: no adapters dialog (the switch name cannot be had). No management
// interface at all: the error message instead of the screen, and 0.
TEST_F(NetworkScreen, WithoutAUsableInterfaceTheScreenSaysSo) {
  SetState("/network/nukNics/nuk0/opaqueNetwork", "net-1");
  {
    Terminal term(24, 80);
    Open(term);
    term.Press("Enter");
    ASSERT_TRUE(term.WaitFor([&] {
      return Contains(Syslog(), "Getting switch name failed: Opaque network connectee type not supported");
    })) << Syslog();
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_FALSE(Contains(term.Screen(), "Hardware Label")) << term.Screen();
    Leave(term, "", "");
    ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
    FinishDialogChild(term, 1);
  }
  SetState("/network/managementInterface", "");
  Terminal term(24, 80);
  Open(term, false);
  Ready(term, "Management network interface cannot be found.");
  EXPECT_TRUE(Contains(term.Screen(), "Enable Management Network: Error")) << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "Network Adapters")) << term.Screen();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
  EXPECT_TRUE(Contains(Syslog(), "Could not get a suitable management interface")) << Syslog();
}

// The address entries through the screen: their dialogs' refusals and modes as the apply hands
// them to the host.
class NetworkAddresses : public NetworkScreen {
 protected:
  // Opens the entry whose pane shows `heading` (below the selected one) and waits for its dialog.
  static void Edit(Terminal& term, const std::string& heading, const std::string& dialogText) {
    Select(term, heading);
    term.Press("Enter");
    Ready(term, dialogText);
  }
  // Types into the dialog (printable text) or presses the named keys, then Enter, and waits
  // until the screen reads keys again.
  static void Fill(Terminal& term, const std::string& dialogText, const std::vector<std::string>& keys) {
    for (const std::string& key : keys) term.Press(key);
    term.Press("Enter");
    ReadyWithout(term, dialogText);
  }
  // The text cursor is shown on the field labelled `label`.
  static bool CursorOn(const Terminal& term, const std::string& label) {
    int row = -1, col = -1;
    term.CursorPosition(&row, &col);
    return term.CursorVisible() && row >= 0 && col > 0 && Contains(term.Region(row, 0, 1, col), label);
  }
  // Runs the console on the host and waits for `text` on the welcome screen.
  void ExpectWelcome(const std::string& text) {
    Terminal term(24, 80);
    StartKonu(term);
    EXPECT_TRUE(term.WaitForText(text)) << term.Screen();
  }
  // Switches IPv4 to DHCP on a host whose DHCP server is there or not, applies it, and
  // checks the lease, the static values kept for a later switch back, and what the welcome
  // screen shows.
  void SwitchToDhcp(bool server, const std::string& address, const std::string& welcome) {
    SetState("/network/dhcpServer/available", server);
    Terminal term(24, 80);
    Open(term);
    Edit(term, "IPv4 Configuration", kStaticChoice);
    for (const char* key : {"Down", " ", "Down", "Down", "Down"}) term.Press(key);
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_FALSE(term.CursorVisible()) << "the address fields are disabled and passed over";
    Fill(term, kStaticChoice, {});
    Leave(term, "Apply changes and restart management network?", "y");
    FinishDialogChild(term, 1);
    EXPECT_EQ(true, State("/network/nukNics/nuk0/ipv4/dhcp"));
    EXPECT_EQ("10.0.0.5", State("/network/nukNics/nuk0/ipv4/address"));
    EXPECT_EQ("255.255.255.0", State("/network/nukNics/nuk0/ipv4/netmask"));
    EXPECT_EQ(address, State("/network/nukNics/nuk0/ipv4Lease/address"));
    EXPECT_TRUE(Contains(Syslog(), "Switching to DHCP on nuk0")) << Syslog();
    ExpectWelcome(welcome);
  }
  static constexpr const char* kStaticChoice = "Set static IPv4 address and network configuration:";
  static constexpr const char* kIpv6Static = "Set static IPv6 address and network configuration";
  static constexpr const char* kDnsManual = "Use the following DNS server addresses and hostname:";
};

// The typical change as an operator makes it: from the menu, a static IPv4 address (letters
// are not taken), mask and gateway; Esc in the confirmation keeps them, Y applies them in
// order, and after logging out the welcome screen shows the new address.
TEST_F(NetworkAddresses, TypicalStaticChangeFromTheMenuShowsOnTheWelcomeScreen) {
  Terminal term(25, 80);
  OpenFromMenu(term, "<Enter> More", "<Esc> Exit");  // the first entry with more behind it
  ASSERT_EQ("Network Adapters", PaneHeading(term)) << term.Screen();
  Edit(term, "IPv4 Configuration", kStaticChoice);
  Fill(term, kStaticChoice,
       {"Down", "Down", "Down", "1a0.0.0.9", "Down", "255.255.0.0", "Down", "10.0.0.254"});
  Leave(term, "Apply changes and restart management network?", "Esc");
  ReadyWithout(term, "Apply changes");
  Leave(term, "Apply changes and restart management network?", "Y");
  Ready(term, "<Esc> Log Out");
  term.Press("Esc");
  EXPECT_TRUE(term.WaitForText("https://10.0.0.9/")) << term.Screen();
  EXPECT_EQ("10.0.0.9", State("/network/nukNics/nuk0/ipv4/address"));
  EXPECT_EQ("255.255.0.0", State("/network/nukNics/nuk0/ipv4/netmask"));
  EXPECT_EQ("10.0.0.254", State("/network/routing/defaultTcpipStack/ipv4Gateway"));
  ExpectLogOrder({"Setting ipv4 configuration to 10.0.0.9 255.255.0.0 on nuk0",
                  "Setting default gateway to 10.0.0.254", "Setting suffixes to ",
                  "Network settings changed."});
}

// Each refusal once, from the top of its dialog: the keys fill the fields and go back up to a
// choice, so that the selection has to move to the offending field. Esc then drops the
// dialog, and nothing is applied.
TEST_F(NetworkAddresses, EveryRefusalMovesTheSelectionToItsField) {
  SetState("/network/dns/defaultTcpipStack/nameServers", {"10.0.0.2", "2001:db8:10::2"});
  struct Case {
    const char* entry;
    std::vector<std::string> keys;
    const char* errorTitle;
    const char* errorText;
    const char* field;
  };
  const Case cases[] = {
      {"IPv4 Configuration",
       {"Down", "Down", "Down", "10.0.0", "Up"},
       "Invalid IP address",
       "Please reenter a valid IPv4 address (x.x.x.x).",
       "IPv4 Address"},
      {"IPv4 Configuration",
       {"Down", "Down", "Down", "Down", "255.0.255.0", "Up", "Up"},
       "Invalid subnet",
       "Please reenter a valid subnet (x.x.x.x).",
       "Subnet Mask"},
      {"IPv4 Configuration",
       {"Down", "Down", "Down", "Down", "Down", "10.0.0.256", "Up", "Up", "Up"},
       "Invalid gateway address",
       "Please reenter a valid gateway address (x.x.x.x).",
       "Default Gateway"},
      {"IPv6 Configuration",
       {"Down", "Down", "Down", "2001:db8::9", "Up"},
       "Invalid IP address",
       "Please reenter a valid IPv6 network address (x:x:x/x).",
       "Static address"},
      {"IPv6 Configuration",
       {"Down", "Down", "Down", "fe80::1/64", "Up"},
       "Invalid scope",
       "Cannot add a link-local address as static address.",
       "Static address"},
      {"IPv6 Configuration",
       {"Down", "Down", "Down", "Down", "2001:db8::zz", "Up", "Up"},
       "Invalid gateway address",
       "Please reenter a valid IPv6 gateway address (x:x:x).",
       "Default gateway"},
      {"DNS Configuration",
       {"Down", "Down", "1.2.3", "Up", "Up"},
       "Invalid DNS server address",
       "Please reenter a valid DNS server address (IP or IPv6).",
       "Primary DNS Server"},
      {"DNS Configuration",
       {"Down", "Down", "Down", "2001:db8::1::2", "Up", "Up", "Up"},
       "Invalid DNS server address",
       "Please reenter a valid DNS server address (IP or IPv6).",
       "IPv6 DNS Server"},
  };
  Terminal term(24, 80);
  Open(term);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.errorText + std::string(" / ") + c.field);
    Select(term, c.entry);
    term.Press("Enter");
    Ready(term, kDialogFooter);
    for (const std::string& key : c.keys) term.Press(key);
    ASSERT_TRUE(term.WaitFor([&] { return !term.CursorVisible(); })) << "back on a choice";
    term.Press("Enter");
    ASSERT_TRUE(term.WaitForText(c.errorTitle)) << term.Screen();
    Acknowledge(term, c.errorText);
    EXPECT_TRUE(CursorOn(term, c.field)) << term.Screen();
    term.Press("Esc");
    ReadyWithout(term, kDialogFooter);
  }
  Leave(term, "", "");
  FinishDialogChild(term, 1);
  EXPECT_FALSE(Contains(Syslog(), "Setting ")) << Syslog();
}

// The address dialogs' modes as the apply hands them to the host: IPv4 none (the static
// values stay configured); IPv6 dynamic with DHCPv6 or with router advertisement, the gateway
// left alone; a DNS form whose IPv6 server is emptied and whose host name drops the character
// it does not take.
TEST_F(NetworkAddresses, ModesAsApplied) {
  struct Change {
    const char* heading;
    const char* dialogText;
    std::vector<std::string> keys;
  };
  struct Case {
    const char* name;
    std::vector<Change> changes;
    std::vector<std::string> logged;  // in this order
    std::vector<std::pair<const char*, json>> state;
  };
  const Case cases[] = {
      {"none, DHCPv6, DNS",
       {{"IPv4 Configuration", kStaticChoice, {" "}},
        {"IPv6 Configuration", kIpv6Static, {"Down", " ", "Down", " "}},
        {"DNS Configuration", kDnsManual, {"Down", "Down", "Down", "Backspace", "Down", "new-host.x_y"}}},
       {"Setting ipv4 configuration to none on nuk0", "Setting ipv6 configuration",
        "Setting hostname to new-host.xy", "Setting nameservers to 10.0.0.2 ", "Network settings changed."},
       {{"/network/nukNics/nuk0/ipv4/none", true},
        {"/network/nukNics/nuk0/ipv4/address", "10.0.0.5"},
        {"/network/nukNics/nuk0/ipv6/dhcp", true},
        {"/network/nukNics/nuk0/ipv6/routerAdvertised", false},
        {"/network/routing/defaultTcpipStack/ipv6Gateway", "2001:db8:10::1"},
        {"/network/dns/defaultTcpipStack/nameServers", {"10.0.0.2"}}}},
      {"router advertisement",
       {{"IPv6 Configuration", kIpv6Static, {"Down", " "}}},
       {"Setting ipv6 configuration", "Network settings changed."},
       {{"/network/nukNics/nuk0/ipv6/dhcp", false},
        {"/network/nukNics/nuk0/ipv6/routerAdvertised", true},
        {"/network/routing/defaultTcpipStack/ipv6Gateway", "2001:db8:10::1"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    SetUp();  // a fresh host per case
    SetState("/network/dns/defaultTcpipStack/nameServers", {"10.0.0.2", "2001:db8:10::2"});
    Terminal term(24, 80);
    Open(term);
    for (const Change& change : c.changes) {
      Edit(term, change.heading, change.dialogText);
      Fill(term, change.dialogText, change.keys);
    }
    Leave(term, "Apply changes and restart management network?", "y");
    FinishDialogChild(term, 1);
    ExpectLogOrder(c.logged);
    EXPECT_FALSE(Contains(Syslog(), "Setting default ipv6 gateway")) << Syslog();
    for (const auto& [pointer, value] : c.state) EXPECT_EQ(value, State(pointer)) << pointer;
  }
}

// The IPv6 default gateway step, reached only through the IPv6 dialog (with a static address
// beside it): its failure is shown and the DNS step still runs (the faults table above covers
// every other step).
TEST_F(NetworkAddresses, AFailingIpv6GatewayStepIsReportedAndTheNextStepRuns) {
  SetState("/faults/operations/RoutingInfo.SetIpv6NuKernelDefaultGateway", "boom");
  Terminal term(24, 80);
  Open(term);
  Edit(term, "IPv6 Configuration", kIpv6Static);
  Fill(term, kIpv6Static, {"Down", "Down", "Down", "fe81::1/64", "Down", "2001:db8:10::2"});
  Edit(term, "Custom DNS Suffixes", "Suffixes:");
  Fill(term, "Suffixes:", {"x.test"});
  Leave(term, "Apply changes and restart management network?", "y");
  Ready(term, "Setting default ipv6 gateway failed: boom");
  EXPECT_TRUE(Contains(term.Screen(), "Enable Management Network: Error")) << term.Screen();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);
  ExpectLogOrder({"Setting default ipv6 gateway to 2001:db8:10::2",
                  "Setting default ipv6 gateway failed: boom", "Setting suffixes to x.test",
                  "Network settings changed."});
  // Only fe80 is link-local to the dialog: fe81 is taken as a static address.
  EXPECT_EQ((json{{"address", "fe81::1"}, {"prefixLength", 64}}),
            State("/network/nukNics/nuk0/ipv6/addresses/3"));
}

// DHCP takes the simulated server's lease; without a server the address is 0.0.0.0 and the
// welcome screen warns.
TEST_F(NetworkAddresses, SwitchingToDhcpTakesTheLease) { SwitchToDhcp(true, "10.0.0.77", "10.0.0.77"); }

TEST_F(NetworkAddresses, SwitchingToDhcpWithoutAServerWarns) {
  SwitchToDhcp(false, "0.0.0.0", "DHCP lookup failed");
}

// IPv6 disabled alone: the reboot question; yes runs the other steps and ends in the host
// restart, after which IPv6 is off.
TEST_F(NetworkAddresses, Ipv6ToggledAloneAppliesAndRestartsTheHost) {
  Terminal term(24, 80);
  Open(term);
  Edit(term, "IPv6 Configuration", kIpv6Static);
  Fill(term, kIpv6Static, {" "});
  Leave(term, "Apply changes and reboot host?", "Y");
  ASSERT_TRUE(term.WaitForText("Restart in progress...")) << term.Screen();
  ASSERT_TRUE(term.WaitFor([&] { return !State("/power/history").empty(); })) << term.Screen();
  EXPECT_EQ("reboot", State("/power/history/0/action"));
  EXPECT_EQ(false, State("/network/ipv6Enabled")) << "the host came up with IPv6 off";
  ExpectLogOrder({"Setting adapters to", "Setting nameservers to", "Setting suffixes to "});
  EXPECT_FALSE(Contains(Syslog(), "Setting ipv4 configuration")) << Syslog();
}

// A primary server of 0.0.0.0 and an IPv6 server of "::" add no server; the suffixes are
// taken as typed, without braces, and split at commas and blanks, empty pieces skipped.
TEST_F(NetworkAddresses, DnsServersAndSuffixesAsApplied) {
  Terminal term(24, 80);
  Open(term);
  Edit(term, "DNS Configuration", kDnsManual);
  Fill(term, kDnsManual, {"Down", "Down", "0.0.0.0", "Down", "::"});
  Edit(term, "Custom DNS Suffixes", "Suffixes:");
  Fill(term, "Suffixes:", {"a.test, b.test,,{c}.test"});  // typed at once; braces are not taken
  Leave(term, "Apply changes and restart management network?", "Y");
  FinishDialogChild(term, 1);
  ExpectLogOrder({"Setting nameservers to 0.0.0.0 ::", "Setting suffixes to a.test, b.test,,c.test",
                  "Network settings changed."});
  EXPECT_EQ(json::array(), State("/network/dns/defaultTcpipStack/nameServers"));
  const json domains = State("/network/dns/defaultTcpipStack/searchDomains");
  ASSERT_GE(domains.size(), 3u) << domains;
  EXPECT_EQ((json{"a.test", "b.test", "c.test"}), json(std::vector<json>(domains.end() - 3, domains.end())))
      << domains;
}

}  // namespace
