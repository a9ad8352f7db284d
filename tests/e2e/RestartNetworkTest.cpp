// Restart Management Network on a fresh simulated host: the confirmation (only F11 goes on),
// the progress texts in their order, the addresses listed afterwards (static IPv4 only, the
// IPv6 cap of two with its exception for three entries), the log line and event, and a
// library failure reaching the caller. The dialog runs in a forked child on nuk0.
#include <gtest/gtest.h>

#include "host/Host.h"
#include "host/HostCtlException.h"
#include "network/RestartNetworkDialog.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;
using nlohmann::json;

// The child's result when a library failure came out of the dialog.
constexpr int kThrown = 7;

class RestartNetwork : public SimHostFixture {
 protected:
  // Opens the confirmation for the management interface on a terminal of `rows` rows.
  void Open(Terminal& term) {
    KonuTest::DialogChildSetup setup{Root(), false, "root"};
    term.Fork(
        [setup] {
          return KonuTest::RunDialogChild(setup, [](Konu::Frame& owner) {
            auto info = Konu::Runtime::Get().Host().CreateNetworkInfo();
            auto nic = info->GetManagementInterface();
            try {
              Konu::RestartNetworkDialog dialog(&owner, *nic);
              return dialog.RunModal();
            } catch (const HostCtl::Lib::HostCtlException& e) {
              return kThrown;
            }
          });
        },
        KonuTest::UiEnv());
    ASSERT_TRUE(term.WaitForText("Restart Management Network: Confirm")) << term.Screen();
    ASSERT_TRUE(term.WaitForText("Restart management network now?")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Ready(term, "<F11> OK  <Esc> Cancel"));
  }

  // F11, then the restart's screen up to its last text.
  void Restart(Terminal& term) {
    term.Press("F11");
    ASSERT_TRUE(term.WaitForText("<Enter> OK")) << term.Screen();
  }

  void SetIpv6Addresses(const json& addresses) const {
    SetState("/network/nukNics/nuk0/ipv6/addresses", addresses);
  }

  static json Global(const std::string& address) { return {{"address", address}, {"prefixLength", 64}}; }

  // The progress text's rows, from the first progress line on, blank rows kept.
  static std::string Progress(const Terminal& term) {
    int row = 0, col = 0;
    if (!term.Find("Stopping management network.", &row, &col)) return "";
    std::string text;
    for (int r = row; r < term.Rows(); ++r) {
      std::string line = term.Region(r, col, 1, 64);
      line.erase(line.find_last_not_of(' ') + 1);
      text += line + "\n";
      if (line == "Done.") break;
    }
    return text;
  }
};

TEST_F(RestartNetwork, EnterDoesNothingEscCancels) {
  Terminal term(24, 80);
  Open(term);
  term.Press("Enter");
  term.Press("Esc");
  FinishDialogChild(term, 0);
  EXPECT_FALSE(Contains(Syslog(), "Restarting nuk0")) << Syslog();
  EXPECT_FALSE(Contains(Events(), "network.restart"));
}

// Static IPv4 on both terminal sizes: the address line, the global IPv6 addresses of a list
// of exactly three entries (the link-local one is left out), the log line and the event.
TEST_F(RestartNetwork, StaticConfigurationShowsItsAddressesOnBothSizes) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(rows);
    Terminal term(rows, 80);
    Open(term);
    Restart(term);
    EXPECT_TRUE(term.WaitForText("Please wait while the management network restarts."));
    EXPECT_EQ(
        "Stopping management network. Done.\n"
        "Starting management network.\n"
        "   IP address is  10.0.0.5\n"
        "\n"
        "IP address is  2001:db8:10::5\n"
        "\n"
        "IP address is  2001:db8:10::50\n"
        "Done.\n",
        Progress(term))
        << term.Screen();
    EXPECT_TRUE(term.Find("Restart Management Network", nullptr, nullptr));
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Type("x");  // only Enter closes
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Enter");
    FinishDialogChild(term, 1);
  }
  EXPECT_TRUE(Contains(Syslog(), "Restarting nuk0")) << Syslog();
  EXPECT_TRUE(Contains(Events(), "@&!*@*@(zeb.user.konu.network.restart)Restarting nuk0")) << Events();
  EXPECT_EQ(true, State("/network/nukNics/nuk0/up"));
}

// The IPv6 walk: which entries show and where it stops, with DHCP (no IPv4 line, the extra
// line end) and with a static configuration.
TEST_F(RestartNetwork, Ipv6ListIsCappedAtTwoExceptForExactlyThreeEntries) {
  struct Case {
    const char* name;
    bool dhcp;
    json addresses;
    const char* expected;
  };
  const Case cases[] = {
      {"four global with DHCP: two and the ellipsis", true,
       json::array({Global("2001:db8:1::1"), Global("2001:db8:1::2"), Global("2001:db8:1::3"),
                    Global("2001:db8:1::4")}),
       "Stopping management network. Done.\n"
       "Starting management network.\n"
       "\n"
       "IP address is  2001:db8:1::1\n"
       "\n"
       "IP address is  2001:db8:1::2\n"
       "   ...\n"
       "Done.\n"},
      {"exactly three entries: every qualifying one", false,
       json::array({Global("2001:db8:1::1"), Global("2001:db8:1::2"), Global("2001:db8:1::3")}),
       "Stopping management network. Done.\n"
       "Starting management network.\n"
       "   IP address is  10.0.0.5\n"
       "\n"
       "IP address is  2001:db8:1::1\n"
       "\n"
       "IP address is  2001:db8:1::2\n"
       "\n"
       "IP address is  2001:db8:1::3\n"
       "Done.\n"},
      {"link-local entries never show and do not count", false,
       json::array({Global("fe80::1"), Global("2001:db8:1::1"), Global("fe80::2"), Global("fe80::3")}),
       "Stopping management network. Done.\n"
       "Starting management network.\n"
       "   IP address is  10.0.0.5\n"
       "\n"
       "IP address is  2001:db8:1::1\n"
       "Done.\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    SetIpv6Addresses(c.addresses);
    SetState("/network/nukNics/nuk0/ipv4/dhcp", c.dhcp);
    Terminal term(24, 80);
    Open(term);
    Restart(term);
    EXPECT_EQ(c.expected, Progress(term)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Enter");
    FinishDialogChild(term, 1);
  }
  // Coming up renewed the DHCP lease of the first case.
  EXPECT_EQ("10.0.0.77", State("/network/nukNics/nuk0/ipv4Lease/address"));
}

TEST_F(RestartNetwork, LibraryFailureReachesTheCallerWithTheInterfaceDown) {
  SetState("/faults/operations/NukNic.BringUp", "interface nuk0 is busy");
  Terminal term(24, 80);
  Open(term);
  term.Press("F11");
  FinishDialogChild(term, kThrown);
  EXPECT_EQ(false, State("/network/nukNics/nuk0/up")) << "taken down before bringing up failed";
  EXPECT_TRUE(Contains(Syslog(), "Restarting nuk0"));
}

}  // namespace
