// The IPv4, IPv6, DNS and suffix dialogs on a fresh simulated host, each run on its own in a
// forked child over nuk0's configured IP configuration: every refusal with the selection on
// the offending field, the characters each field takes, the IPv6 mode table and scope check,
// DNS server kinds, and the values handed back. The child writes what the dialog handed back
// to "dialog.out" in the host root.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "host/Host.h"
#include "network/DNSConfigurationDialog.h"
#include "network/IPConfigurationDialog.h"
#include "network/IPv6ConfigurationDialog.h"
#include "network/SuffixesDialog.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using HostCtl::Network::IpConfig;
using KonuTest::SimHostFixture;
using KonuTest::Terminal;

enum class Kind { Ipv4, Ipv6, Dns, Suffixes };

std::string Ipv6List(const IpConfig& config) {
  std::string text;
  for (const auto& n : config.GetIpv6Network())
    text += n.GetStringNetwork() + ":" + std::to_string(static_cast<int>(n.GetIpv6AddressType())) + ":" +
            std::to_string(static_cast<int>(n.GetIpv6Scope())) + " ";
  return text;
}

std::string Server(const Konu::DnsServerAddress* server) {
  if (server == nullptr) return "none";
  return Konu::DnsServerText(server) + (Konu::IsIpv6DnsServer(server) ? "(6)" : "(4)");
}

// Runs one dialog in the child and writes its results.
int RunKind(Kind kind, const std::string& out, Konu::Frame& owner) {
  auto info = Konu::Runtime::Get().Host().CreateNetworkInfo();
  IpConfig applied = info->GetManagementInterface()->GetConfiguredIpConfig();
  IpConfig pending = applied;
  std::ostringstream text;
  int result = 0;
  switch (kind) {
    case Kind::Ipv4: {
      Konu::IPConfigurationDialog dialog(&owner, applied, pending);
      result = dialog.RunModal();
      text << "dhcp=" << pending.GetUseDhcp() << " none=" << applied.GetIpv4UseNone()
           << " address=" << applied.GetIpv4Address().GetStringAddress()
           << " netmask=" << applied.GetIpv4Netmask().GetStringAddress()
           << " gateway=" << applied.GetIpv4Gateway().GetStringAddress();
      break;
    }
    case Kind::Ipv6: {
      Konu::IPv6ConfigurationDialog dialog(&owner, applied, pending, true);
      result = dialog.RunModal();
      text << "enabled=" << dialog.Enabled() << " gatewayChanged=" << dialog.GatewayChanged()
           << " dhcpv6=" << pending.GetUseIpv6Dhcp() << " ra=" << pending.GetUseIpv6RouterAdvertised()
           << " gateway=" << applied.GetIpv6Gateway().GetScopedStringAddress()
           << " addresses=" << Ipv6List(applied);
      break;
    }
    case Kind::Dns: {
      Konu::DnsServerAddress primary(HostCtl::Network::Ipv4Address("10.0.0.2"));
      Konu::DnsServerAddress alternate(HostCtl::Network::Ipv6Address("2001:db8:10::2"));
      Konu::DNSConfigurationDialog dialog(&owner, false, &primary, &alternate, "konu-host");
      result = dialog.RunModal();
      text << "dhcpDns=" << dialog.DhcpDns() << " primary=" << Server(dialog.Primary())
           << " alternate=" << Server(dialog.Alternate()) << " hostname=" << dialog.Hostname();
      break;
    }
    case Kind::Suffixes: {
      Konu::SuffixesDialog dialog(&owner, "example.test");
      result = dialog.RunModal();
      text << "suffixes=[" << dialog.Suffixes() << "]";
      break;
    }
  }
  std::ofstream(out) << text.str();
  return result;
}

class NetworkDialogs : public SimHostFixture {
 protected:
  // Opens the dialog on a terminal and waits until it reads keys.
  void Open(Terminal& term, Kind kind, const std::string& title) {
    KonuTest::DialogChildSetup setup{Root(), false, "root"};
    const std::string out = HostFile("dialog.out");
    term.Fork(
        [setup, kind, out] {
          return KonuTest::RunDialogChild(setup, [&](Konu::Frame& o) { return RunKind(kind, out, o); });
        },
        KonuTest::UiEnv());
    ASSERT_TRUE(term.WaitForText(title)) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Ready(term, "<Esc> Cancel"));
  }

  // Enter accepted: the values handed back.
  std::string Accepted(Terminal& term) {
    term.Press("Enter");
    FinishDialogChild(term, 1);
    return ReadFile("dialog.out");
  }

  // Key names are pressed, other text typed (Terminal::Press does both).
  static void Keys(Terminal& term, const std::vector<std::string>& keys) {
    for (const auto& key : keys) term.Press(key);
  }

  // The text cursor is shown, on the row of the field labelled `label`.
  static bool CursorOn(const Terminal& term, const std::string& label) {
    int row = 0, col = 0, cursorRow = -1, cursorCol = -1;
    if (!term.Find(label, &row, &col)) return false;
    term.CursorPosition(&cursorRow, &cursorCol);
    return term.CursorVisible() && cursorRow == row;
  }

  // The field's shown value (between "[ " and " ]").
  static std::string Field(const Terminal& term, const std::string& label) {
    int row = 0, col = 0;
    if (!term.Find(label, &row, &col)) return "?";
    std::string line = term.Row(row);
    size_t open = line.find("[ "), close = line.rfind(" ]");
    if (open == std::string::npos || close == std::string::npos) return "?";
    std::string value = line.substr(open + 2, close - open - 2);
    value.erase(value.find_last_not_of(' ') + 1);
    return value;
  }
};

// Each refusal once, from the top of the form: the keys fill the fields and go back up to a
// choice, so that the selection has to move to the offending field.
TEST_F(NetworkDialogs, EveryRefusalMovesTheSelectionToItsField) {
  struct Case {
    Kind kind;
    const char* title;
    std::vector<std::string> keys;
    const char* errorTitle;
    const char* errorText;
    const char* field;
  };
  const Case cases[] = {
      {Kind::Ipv4,
       "IPv4 Configuration",
       {"Down", "Down", "Down", "10.0.0", "Up"},
       "Invalid IP address",
       "Please reenter a valid IPv4 address (x.x.x.x).",
       "IPv4 Address"},
      {Kind::Ipv4,
       "IPv4 Configuration",
       {"Down", "Down", "Down", "Down", "255.0.255.0", "Up", "Up"},
       "Invalid subnet",
       "Please reenter a valid subnet (x.x.x.x).",
       "Subnet Mask"},
      {Kind::Ipv4,
       "IPv4 Configuration",
       {"Down", "Down", "Down", "Down", "Down", "10.0.0.256", "Up", "Up", "Up"},
       "Invalid gateway address",
       "Please reenter a valid gateway address (x.x.x.x).",
       "Default Gateway"},
      {Kind::Ipv6,
       "IPv6 Configuration",
       {"Down", "Down", "Down", "2001:db8::9", "Up"},
       "Invalid IP address",
       "Please reenter a valid IPv6 network address (x:x:x/x).",
       "Static address"},
      {Kind::Ipv6,
       "IPv6 Configuration",
       {"Down", "Down", "Down", "fe80::1/64", "Up"},
       "Invalid scope",
       "Cannot add a link-local address as static address.",
       "Static address"},
      {Kind::Ipv6,
       "IPv6 Configuration",
       {"Down", "Down", "Down", "Down", "2001:db8::zz", "Up", "Up"},
       "Invalid gateway address",
       "Please reenter a valid IPv6 gateway address (x:x:x).",
       "Default gateway"},
      {Kind::Dns,
       "DNS Configuration",
       {"Down", "Down", "1.2.3", "Up", "Up"},
       "Invalid DNS server address",
       "Please reenter a valid DNS server address (IP or IPv6).",
       "Primary DNS Server"},
      {Kind::Dns,
       "DNS Configuration",
       {"Down", "Down", "Down", "2001:db8::1::2", "Up", "Up", "Up"},
       "Invalid DNS server address",
       "Please reenter a valid DNS server address (IP or IPv6).",
       "IPv6 DNS Server"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.errorText + std::string(" / ") + c.field);
    Terminal term(24, 80);
    Open(term, c.kind, c.title);
    Keys(term, c.keys);
    ASSERT_TRUE(term.WaitFor([&] { return !term.CursorVisible(); })) << "back on a choice";
    term.Press("Enter");
    ASSERT_TRUE(term.WaitForText(c.errorTitle)) << term.Screen();
    Acknowledge(term, c.errorText);
    EXPECT_TRUE(CursorOn(term, c.field)) << term.Screen();
    term.Press("Esc");
    FinishDialogChild(term, 0);
  }
}

// DHCP and none; static values are typed in e2e.NetworkAddresses.TypicalStaticChangeIsAppliedInOrder.
TEST_F(NetworkDialogs, Ipv4Modes) {
  {
    // DHCP: the fields are disabled and skipped, nothing is checked.
    Terminal term(25, 80);
    Open(term, Kind::Ipv4, "IPv4 Configuration");
    Keys(term, {"Down", "Space", "Down", "Down", "Down"});
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_FALSE(term.CursorVisible()) << "disabled fields are not selectable";
    EXPECT_EQ("dhcp=1 none=0 address=10.0.0.5 netmask=255.255.255.0 gateway=10.0.0.1", Accepted(term));
  }
  {
    Terminal term(24, 80);
    Open(term, Kind::Ipv4, "IPv4 Configuration");
    Keys(term, {"Space"});
    EXPECT_EQ("dhcp=0 none=1 address=10.0.0.5 netmask=255.255.255.0 gateway=10.0.0.1", Accepted(term));
  }
}

TEST_F(NetworkDialogs, Ipv6ModesScopeAndGateway) {
  struct Case {
    const char* name;
    std::vector<std::string> keys;
    const char* expected;
  };
  const Case cases[] = {
      {"dynamic with DHCPv6",
       {"Down", "Space", "Down", "Space"},
       "enabled=1 gatewayChanged=0 dhcpv6=1 ra=0 gateway=2001:db8:10::1"},
      {"dynamic without DHCPv6: router advertisement",
       {"Down", "Space"},
       "enabled=1 gatewayChanged=0 dhcpv6=0 ra=1 gateway=2001:db8:10::1"},
      {"fe81 passes the scope check; a new gateway",
       {"Down", "Down", "Down", "fe81::1/64", "Down", "2001:db8:10::fe"},
       "enabled=1 gatewayChanged=1 dhcpv6=0 ra=0 gateway=2001:db8:10::fe"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Terminal term(24, 80);
    Open(term, Kind::Ipv6, "IPv6 Configuration");
    EXPECT_EQ("2001:db8:10::5/64", Field(term, "Static address"));
    Keys(term, c.keys);
    ASSERT_TRUE(term.WaitUntilPolling());
    const std::string out = Accepted(term);
    EXPECT_TRUE(Contains(out, c.expected)) << out;
    EXPECT_EQ(std::string(c.name).starts_with("fe81"), Contains(out, "fe81::1/64:0:3")) << out;
  }
}

TEST_F(NetworkDialogs, DnsServerKindsAndEmptyFields) {
  Terminal term(24, 80);
  Open(term, Kind::Dns, "DNS Configuration");
  EXPECT_EQ("10.0.0.2", Field(term, "Primary DNS Server"));
  EXPECT_EQ("2001:db8:10::2", Field(term, "IPv6 DNS Server"));
  Keys(term, {"Down", "Down", "Down", "Backspace", "Down", "new-host.x_y"});
  ASSERT_TRUE(term.WaitFor([&] { return Field(term, "Hostname") == "new-host.xy"; })) << term.Screen();
  EXPECT_EQ("dhcpDns=0 primary=10.0.0.2(4) alternate=none hostname=new-host.xy", Accepted(term));
}

// Each dialog with its whole frame, footer and last field on both console sizes.
TEST_F(NetworkDialogs, EveryDialogDrawsFullyOnBothSizes) {
  struct Case {
    Kind kind;
    const char* title;
    const char* lastRow;
  };
  const Case cases[] = {{Kind::Ipv4, "IPv4 Configuration", "Default Gateway"},
                        {Kind::Ipv6, "IPv6 Configuration", "Default gateway"},
                        {Kind::Dns, "DNS Configuration", "Hostname"},
                        {Kind::Suffixes, "Custom DNS Suffixes", "Suffixes:"}};
  for (int rows : {24, 25}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(std::string(c.title) + " " + std::to_string(rows));
      Terminal term(rows, 80);
      Open(term, c.kind, c.title);
      int top = 0, bottom = 0, col = 0, footer = 0;
      EXPECT_TRUE(term.Find("┌", &top, &col)) << term.Screen();
      EXPECT_TRUE(term.Find("└", &bottom, &col)) << term.Screen();
      EXPECT_TRUE(term.Find("<Enter> OK  <Esc> Cancel", &footer, &col)) << term.Screen();
      int last = 0;
      EXPECT_TRUE(term.Find(c.lastRow, &last, &col)) << term.Screen();
      EXPECT_LT(last, footer);
      EXPECT_EQ(bottom, footer + 1);
      EXPECT_GE(top, 0);
      term.Press("Esc");
      FinishDialogChild(term, 0);
    }
  }
}

}  // namespace
