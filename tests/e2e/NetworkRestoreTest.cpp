// Network Restore Options through the console on a fresh simulated host: the window's switch
// entries follow where the management interface is plugged in, on both console sizes.
#include <gtest/gtest.h>

#include <string>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

constexpr const char kMenuPane[] = "To view various network restore";
constexpr const char kFactoryPane[] = "revert all network configuration";
constexpr const char kStandardSwitchPane[] = "All management network and";
constexpr const char kDvsPane[] = "Reconfigure properties of";

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

}  // namespace
