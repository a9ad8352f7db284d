// Lists on screen: the selection bar, the scroll bar, a list with nothing to focus, and
// input fields being typed into.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/harness/Terminal.h"
#include "tests/screen/UiChild.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {
namespace {

using KonuTest::Say;
using KonuTest::Terminal;
using KonuTest::UiCurses;

const std::string kShade = "\u2593";
const std::string kBlock = "\u2588";

// A list 30 x `rows` at column 2, row 1 of a black-on-yellow pane; Down and Up move it,
// every other key goes to the focused input field. Reports the focused index after each key.
int RunList(std::vector<std::unique_ptr<Item>>& owned, int rows) {
  UiCurses curses;
  if (!curses.Ok()) return 2;
  Window pane(0, 0, 40, 12, 3, 0);
  ItemList list(&pane, 2, 1, 30, rows);
  std::vector<Item*> items;
  for (auto& item : owned) items.push_back(item.get());
  list.SetItems(items);
  pane.Update();
  list.Draw();
  int moves = 0;
  Say("moves 0 focus " + std::to_string(list.Focus().FocusedIndex()));
  for (;;) {
    int key = wgetch(stdscr);
    if (key == 'q') return 0;
    if (key == KEY_DOWN) {
      list.Down();
    } else if (key == KEY_UP) {
      list.Up();
    } else if (auto* input = dynamic_cast<InputItem*>(list.FocusedItem())) {
      input->HandleKey(key);
      list.Draw();
    }
    ++moves;
    Say("moves " + std::to_string(moves) + " focus " + std::to_string(list.Focus().FocusedIndex()));
  }
}

TEST(ItemListScreen, TenItemsInFourRowsScrollAndTheBarReachesTheLastRow) {
  Terminal t(24, 80);
  t.Fork(
      [] {
        std::vector<std::unique_ptr<Item>> owned;
        for (int i = 0; i < 10; ++i)
          owned.push_back(std::make_unique<LabelItem>("Item " + std::to_string(i), true));
        return RunList(owned, 4);
      },
      KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("moves 0", 5000)) << t.Screen();
  EXPECT_EQ(t.Region(1, 2, 4, 6), "Item 0\nItem 1\nItem 2\nItem 3");
  EXPECT_EQ(t.Region(1, 31, 4, 1), kBlock + "\n" + kShade + "\n" + kShade + "\n" + kShade);
  ExpectColors(t, 1, 2, 0, 7);  // the selection bar
  ExpectColors(t, 2, 2, 3, 0);
  ExpectColors(t, 1, 31, 3, 0);  // the scroll bar in the pane's colours
  ExpectColors(t, 2, 31, 3, 0);

  for (int i = 0; i < 9; ++i) t.Press("Down");
  ASSERT_TRUE(t.WaitForText("moves 9 focus 9", 5000)) << t.Screen();
  EXPECT_EQ(t.Region(1, 2, 4, 6), "Item 6\nItem 7\nItem 8\nItem 9");
  EXPECT_EQ(t.Region(1, 31, 4, 1), kShade + "\n" + kShade + "\n" + kShade + "\n" + kBlock);
  ExpectColors(t, 4, 2, 0, 7);
  ExpectColors(t, 1, 2, 3, 0);

  t.Press("Down");  // nothing below: the focus stays
  ASSERT_TRUE(t.WaitForText("moves 10 focus 9", 5000)) << t.Screen();
  for (int i = 0; i < 4; ++i) t.Press("Up");
  ASSERT_TRUE(t.WaitForText("moves 14 focus 5", 5000)) << t.Screen();
  EXPECT_EQ(t.Region(1, 2, 4, 6), "Item 5\nItem 6\nItem 7\nItem 8");
  EXPECT_EQ(t.Region(1, 31, 4, 1),
            kShade + "\n" + kShade + "\n" + kBlock + "\n" + kShade);  // 5 * 100 / 6 = 83 %
  Quit(t);
}

TEST(ItemListScreen, AListOfHeadingsAndDisabledItemsKeepsItsFocus) {
  Terminal t(24, 80);
  t.Fork(
      [] {
        std::vector<std::unique_ptr<Item>> owned;
        owned.push_back(std::make_unique<LabelItem>("Heading", false));
        for (const char* text : {"Off one", "Off two"}) {
          owned.push_back(std::make_unique<LabelItem>(text, true));
          owned.back()->SetEnabled(false);
        }
        return RunList(owned, 4);
      },
      KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("moves 0 focus 0", 5000)) << t.Screen();
  EXPECT_EQ(t.Region(1, 2, 3, 7), "Heading\nOff one\nOff two");
  ExpectColors(t, 2, 2, 3, 6);  // disabled: dark grey
  t.Press("Down");
  t.Press("Down");
  t.Press("Up");
  ASSERT_TRUE(t.WaitForText("moves 3 focus 0", 5000)) << t.Screen();
  ExpectColors(t, 1, 2, 0, 7);
  ExpectColors(t, 3, 2, 3, 6);
  EXPECT_EQ(t.Region(1, 31, 3, 1), " \n \n ");  // everything fits: no scroll bar
  Quit(t);
}

TEST(ItemListScreen, TypingReplacesAFreshFieldShowsBracesAsTypedAndMaskedFieldsShowStars) {
  Terminal t(24, 80);
  t.Fork(
      [] {
        std::vector<std::unique_ptr<Item>> owned;
        owned.push_back(std::make_unique<InputItem>("Port", "2049", 8));
        owned.push_back(std::make_unique<InputItem>("Backup", "2049", 8));
        auto secret = std::make_unique<InputItem>("Secret", "hunter2", 10);
        secret->SetMasked(true);
        owned.push_back(std::move(secret));
        return RunList(owned, 4);
      },
      KonuTest::UiEnv());
  // Rows are 29 columns: a field of 8 has its value from column 19 of the row, 21 on screen.
  ASSERT_TRUE(t.WaitForText("moves 0", 5000)) << t.Screen();
  EXPECT_EQ(t.Region(1, 2, 3, 29),
            "Port             [ 2049     ]\n"
            "Backup           [ 2049 ]    \n"
            "Secret         [ ******* ]   ");
  ExpectColors(t, 1, 21, 7, 0);  // the whole value selected: black on white
  ExpectColors(t, 1, 2, 0, 7);

  t.Type("{red}");  // shown as typed, not taken for mark-up
  ASSERT_TRUE(t.WaitForText("moves 5", 5000)) << t.Screen();
  EXPECT_EQ(t.Region(1, 2, 1, 29), "Port             [ {red}    ]");
  ExpectColors(t, 1, 21, 0, 7);  // now editing: white on black

  t.Press("Down");
  t.Press("Left");
  t.Press("1");
  ASSERT_TRUE(t.WaitForText("moves 8", 5000)) << t.Screen();
  EXPECT_EQ(t.Region(1, 2, 2, 29),
            "Port             [ {red} ]   \n"
            "Backup           [ 20419    ]");
  Quit(t);
}

}  // namespace
}  // namespace Konu
