// The management network screen reached the way an operator reaches it: konu on a fresh
// simulated host, F2 and root's password, the System Customization menu; the typical change
// seen on the welcome screen after logging out.
#include <gtest/gtest.h>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

constexpr const char* kMenuTitle = "System Customization";

class ManagementNetworkConsole : public SimHostFixture {
 protected:
  void OpenMenu(Terminal& term) {
    ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term));
    ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2"));
    ASSERT_NO_FATAL_FAILURE(Ready(term, kMenuTitle));
  }

  // The heading of the right-hand pane.
  static std::string PaneTitle(const Terminal& term) {
    std::string title = term.Region(1, term.Cols() / 2 + 1, 1, term.Cols() / 2 - 2);
    title.erase(0, title.find_first_not_of(' '));
    title.erase(title.find_last_not_of(' ') + 1);
    return title;
  }

  // Moves down the menu to `entry` and opens it.
  static void Choose(Terminal& term, const std::string& entry) {
    for (int i = 0; i < 12 && PaneTitle(term) != entry; ++i) {
      const std::string before = PaneTitle(term);
      term.Press("Down");
      ASSERT_TRUE(term.WaitFor([&] { return PaneTitle(term) != before; })) << term.Screen();
      ASSERT_TRUE(term.WaitUntilPolling());
    }
    ASSERT_EQ(entry, PaneTitle(term)) << term.Screen();
    term.Press("Enter");
  }
};

TEST_F(ManagementNetworkConsole, TypicalChangeShowsOnTheWelcomeScreenAfterLogout) {
  Terminal term(24, 80);
  OpenMenu(term);
  Choose(term, "Configure Management Network");
  Ready(term, "<Esc> Exit");
  term.Press("Down");
  term.Press("Down");
  ASSERT_TRUE(term.WaitFor([&] { return PaneTitle(term) == "IPv4 Configuration"; })) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  Ready(term, "Set static IPv4 address and network configuration:");
  for (const char* key : {"Down", "Down", "Down"}) term.Press(key);
  term.Type("10.0.0.9");
  term.Press("Down");
  term.Type("255.255.0.0");
  term.Press("Down");
  term.Type("10.0.0.254");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText("Set static IPv4 address")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  Ready(term, "Apply changes and restart management network?");
  term.Press("Y");
  ASSERT_TRUE(term.WaitForNoText("Configure Management Network: Confirm")) << term.Screen();
  Ready(term, kMenuTitle);
  term.Press("Esc");  // log out
  EXPECT_TRUE(term.WaitForText("https://10.0.0.9/")) << term.Screen();
  EXPECT_TRUE(Contains(Syslog(), "Setting ipv4 configuration to 10.0.0.9 255.255.0.0 on nuk0")) << Syslog();
  EXPECT_EQ("10.0.0.254", State("/network/routing/defaultTcpipStack/ipv4Gateway"));
}

}  // namespace
