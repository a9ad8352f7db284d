// The network test on a fresh simulated host: the form filled from the host, the probes'
// results in order with the pings journalled through the management interface, skipped
// fields, names resolved from the DNS model only (the hosts file set aside and put back
// byte for byte), and Esc ending a hanging ping at once without leaving a child behind.
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <sstream>

#include "network/TestDialog.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::DialogChildSetup;
using KonuTest::SimHostFixture;
using KonuTest::Terminal;

class NetworkTest : public SimHostFixture {
 protected:
  void OpenDialog(Terminal& term) {
    KonuTest::ForkDialog<Konu::TestDialog>(term, DialogChildSetup{Root(), false, "root"});
    ASSERT_NO_FATAL_FAILURE(Ready(term, "<Esc> Cancel"));
  }

  // The argument vectors of the pings run so far, in order.
  std::vector<std::vector<std::string>> Pings() const {
    std::vector<std::vector<std::string>> pings;
    std::istringstream lines(Journal());
    std::string line;
    while (std::getline(lines, line)) {
      auto entry = nlohmann::json::parse(line, nullptr, false);
      if (!entry.is_discarded() && entry["argv"][0] == "nukping") pings.push_back(entry["argv"]);
    }
    return pings;
  }

  // Row numbers of `texts` on the screen, -1 for a missing one.
  static std::vector<int> RowsOf(const Terminal& term, const std::vector<std::string>& texts) {
    std::vector<int> rows;
    for (const std::string& text : texts) {
      int row = -1, col = -1;
      rows.push_back(term.Find(text, &row, &col) ? row : -1);
    }
    return rows;
  }
};

TEST_F(NetworkTest, FilledFromTheHostResultsInOrderThroughTheManagementInterface) {
  SetState("/network/reachable", {"10.0.0.1", "10.0.0.2"});  // the alternate name server is down
  const std::string hosts = ReadFile("etc/hosts");
  ASSERT_TRUE(Contains(hosts, "konu-host.example.test")) << hosts;
  Terminal term(24, 80);
  OpenDialog(term);
  for (const char* text : {"Test Management Network", "attempt to ping your default", "Ping Address",
                           "[ 10.0.0.1", "[ 10.0.0.2 ]", "[ 10.0.0.3 ]", "Resolve Hostname",
                           "[ konu-host.example.test ]", "<Up/Down> Select", "<Enter> OK  <Esc> Cancel"})
    EXPECT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();

  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Resolving hostname konu-host.example.test ... OK.")) << term.Screen();
  ASSERT_TRUE(term.WaitForText("<Enter> OK")) << term.Screen();
  const std::vector<int> rows = RowsOf(
      term, {"Testing Management Network", "You may interrupt the test at any time.",
             "Pinging address 10.0.0.1 ... OK.", "Pinging address 10.0.0.2 ... OK.",
             "Pinging address 10.0.0.3 ... Failed.", "Resolving hostname konu-host.example.test ... OK."});
  for (size_t i = 1; i < rows.size(); ++i) EXPECT_LT(rows[i - 1], rows[i]) << term.Screen();
  using Argv = std::vector<std::string>;
  EXPECT_EQ(Pings(), (std::vector<Argv>{{"nukping", "-c", "3", "-I", "nuk0", "10.0.0.1"},
                                        {"nukping", "-c", "3", "-I", "nuk0", "10.0.0.2"},
                                        {"nukping", "-c", "3", "-I", "nuk0", "10.0.0.3"}}));
  EXPECT_EQ(hosts, ReadFile("etc/hosts"));
  EXPECT_EQ(hosts, ReadFile("etc/hosts.backup"));

  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");  // back to the form, then out
  ReadyWithout(term, "Testing Management Network");
  term.Press("Esc");
  FinishDialogChild(term, 0);
}

TEST_F(NetworkTest, SkipsEmptyAndZeroFieldsAndResolvesOnlyWhatTheNameServersKnow) {
  SetState("/network/dnsRecords/10.0.0.2", {{"gateway.example.test", "10.0.0.1"}});
  SetState("/network/dnsRecords/10.0.0.3", nlohmann::json::object());
  const std::string hosts = ReadFile("etc/hosts");
  Terminal term(25, 80);
  OpenDialog(term);
  term.Type("0.0.0.0");  // the whole value is replaced by what is typed
  term.Press("Down");
  term.Type("1");
  term.Press("Backspace");  // empty
  term.Press("Down");
  term.Type("10.0.0.3gz");  // letters beyond hex digits are not taken
  term.Press("Down");
  term.Type("konu-host.example.test");  // in the hosts file, unknown to the name servers
  ASSERT_TRUE(term.WaitForText("10.0.0.3 ")) << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "10.0.0.3g")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Resolving hostname konu-host.example.test ... Failed.")) << term.Screen();
  EXPECT_TRUE(Contains(term.Screen(), "Pinging address 10.0.0.3 ... OK.")) << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "Pinging address 0.0.0.0")) << term.Screen();
  EXPECT_EQ(Pings().size(), 1u);
  EXPECT_EQ(hosts, ReadFile("etc/hosts"));

  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ReadyWithout(term, "Testing Management Network");
  term.Press("Up");  // a name the servers know
  term.Press("Down");
  term.Type("GATEWAY.example.test");
  ASSERT_TRUE(term.WaitUntilPolling());
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Resolving hostname GATEWAY.example.test ... OK."));
  term.Press("Esc");
  ReadyWithout(term, "Testing Management Network");
  term.Press("Esc");
  FinishDialogChild(term, 0);
}

TEST_F(NetworkTest, EscEndsAHangingPingAtOnceAndLeavesNoChild) {
  SetState("/faults/tools/nukping 10.0.0.2", {{"hang", true}});
  Terminal term(24, 80);
  OpenDialog(term);
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Pinging address 10.0.0.2 ... ")) << term.Screen();
  // The journal has the hanging ping once its fault holds it.
  ASSERT_TRUE(term.WaitFor([&] { return Pings().size() == 2; })) << Journal();
  ASSERT_FALSE(ChildrenOf(term.Pid()).empty());
  ASSERT_TRUE(term.WaitUntilPolling());
  const auto pressed = std::chrono::steady_clock::now();
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForNoText("Testing Management Network")) << term.Screen();
  const auto took =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - pressed);
  EXPECT_LT(took.count(), 1000) << "Esc took " << took.count() << " ms";
  EXPECT_TRUE(ChildrenOf(term.Pid()).empty());
  EXPECT_FALSE(Contains(term.Screen(), "Pinging address 10.0.0.3")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  FinishDialogChild(term, 0);
  EXPECT_EQ(Pings().size(), 2u);  // the third never started
}

}  // namespace
