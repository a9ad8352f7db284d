// Moving the focus through an item list and scrolling it.
#include <gtest/gtest.h>

#include <memory>

#include "ui/Item.h"
#include "ui/ListFocus.h"

namespace Konu {
namespace {

class Row : public Item {
 public:
  explicit Row(bool focusable, bool enabled = true) : Item(focusable) { SetEnabled(enabled); }
  void Draw(TextArea&) override {}
};

// 'f' focusable, 'd' focusable but disabled, 'h' a heading (not focusable).
struct Rows {
  explicit Rows(const std::string& kinds) {
    for (char kind : kinds) {
      owned.push_back(std::make_unique<Row>(kind != 'h', kind != 'd'));
      items.push_back(owned.back().get());
    }
  }
  std::vector<std::unique_ptr<Row>> owned;
  std::vector<Item*> items;
};

TEST(ListFocus, AFreshListFocusesTheFirstUsableItemWithoutScrolling) {
  Rows rows("hhdff");
  ListFocus focus;
  focus.Reset(rows.items);
  EXPECT_EQ(focus.first, 0);
  EXPECT_EQ(focus.focusedRow, 3);
  EXPECT_EQ(focus.ordinal, 0);

  Rows farDown("hhhhhhf");
  focus.Reset(farDown.items);
  EXPECT_EQ(focus.first, 0);
  EXPECT_EQ(focus.focusedRow, 6);  // beyond a 4-row list: no scrolling
}

TEST(ListFocus, DownAndUpSkipHeadingsAndDisabledItemsAndCountTheOrdinal) {
  Rows rows("fhdfhf");
  ListFocus focus;
  focus.Reset(rows.items);
  ASSERT_TRUE(focus.Down(rows.items, 10));
  EXPECT_EQ(focus.FocusedIndex(), 3);
  EXPECT_EQ(focus.ordinal, 2);  // the disabled item still counts among focusable ones
  ASSERT_TRUE(focus.Down(rows.items, 10));
  EXPECT_EQ(focus.FocusedIndex(), 5);
  EXPECT_EQ(focus.ordinal, 3);
  EXPECT_FALSE(focus.Down(rows.items, 10));
  EXPECT_EQ(focus.FocusedIndex(), 5);
  ASSERT_TRUE(focus.Up(rows.items));
  EXPECT_EQ(focus.FocusedIndex(), 3);
  EXPECT_EQ(focus.ordinal, 2);
  ASSERT_TRUE(focus.Up(rows.items));
  EXPECT_EQ(focus.FocusedIndex(), 0);
  EXPECT_EQ(focus.ordinal, 0);
  EXPECT_FALSE(focus.Up(rows.items));
}

TEST(ListFocus, DownJumpsOverAHiddenRunOfDisabledItems) {
  Rows rows("fddddf");
  ListFocus focus;
  focus.Reset(rows.items);
  ASSERT_TRUE(focus.Down(rows.items, 3));
  EXPECT_EQ(focus.first, 3);  // the found item goes on the last row
  EXPECT_EQ(focus.focusedRow, 2);
  EXPECT_EQ(focus.ordinal, 5);
}

TEST(ListFocus, FocusOrdinalCountsDisabledItemsAndDoesNotScroll) {
  Rows rows("hfdhff");
  ListFocus focus;
  focus.Reset(rows.items);
  ASSERT_TRUE(focus.FocusOrdinal(rows.items, 1));
  EXPECT_EQ(focus.FocusedIndex(), 2);
  EXPECT_EQ(focus.ordinal, 1);
  ASSERT_TRUE(focus.FocusOrdinal(rows.items, 3));
  EXPECT_EQ(focus.first, 0);
  EXPECT_EQ(focus.focusedRow, 5);
  EXPECT_FALSE(focus.FocusOrdinal(rows.items, 4));
  EXPECT_EQ(focus.FocusedIndex(), 5);
}

}  // namespace
}  // namespace Konu
