// The line an input field shows: label, brackets and colours, scrolling through the field
// window, masking, and the selection coming back with the focus. (What each editing key does
// is checked key by key against its rule by tests/fuzz/InputItemFuzz.cpp.)
#include <curses.h>
#include <gtest/gtest.h>

#include "ui/InputItem.h"

namespace Konu {
namespace {

void Keys(InputItem& item, std::initializer_list<int> keys) {
  for (int key : keys) item.HandleKey(key);
}

TEST(InputItem, GainingOrLosingTheFocusOrANewValueSelectsTheWholeValueAgain) {
  InputItem item("Name", "host", 8);
  item.HandleKey(KEY_LEFT);
  item.SetFocus(true);
  EXPECT_TRUE(item.ReplaceOnType());
  item.HandleKey(KEY_LEFT);
  item.SetFocus(false);
  EXPECT_TRUE(item.ReplaceOnType());
  item.HandleKey(KEY_HOME);
  item.SetValue("other");
  EXPECT_TRUE(item.ReplaceOnType());
  EXPECT_EQ(item.Cursor(), 5u);
  EXPECT_EQ(item.Offset(), 0u);
}

TEST(InputItem, TheLineHasTheLabelTheBracketsAndTheValue) {
  InputItem item("Name", "host", 8);
  int column = -1;
  // 30 columns: label in 30 - 5 - 8 = 17, " [ ", value, " ]".
  EXPECT_EQ(item.Line(30, &column), "Name              [ host ]");
  EXPECT_EQ(column, 30 - 2 - 8 + 4);

  item.SetFocus(true);
  EXPECT_EQ(item.Line(30, &column),
            "Name              [ {bgcolor:white}{color:black}host{/color}{/bgcolor}     ]");
  item.HandleKey(KEY_HOME);
  EXPECT_EQ(item.Line(30, &column),
            "Name              [ {bgcolor:black}{color:white}host{/color}{/bgcolor}     ]");
  EXPECT_EQ(column, 20);

  InputItem half("Name", "", -1);  // field 30 / 2 - 1 = 14 wide
  EXPECT_EQ(half.Line(30, &column), "Name        [  ]");
  EXPECT_EQ(column, 14);
}

TEST(InputItem, ALongValueScrollsSoTheCursorStaysInTheField) {
  InputItem item("L", "abcdefghij", 4);
  item.SetFocus(true);
  int column = -1;
  EXPECT_EQ(item.Line(20, &column), "L           [ {bgcolor:white}{color:black}ghij{/color}{/bgcolor} ]");
  EXPECT_EQ(item.Offset(), 6u);
  EXPECT_EQ(column, 20 - 2 - 4 + 4);

  // Left at the field's left edge scrolls it by one.
  Keys(item, {KEY_LEFT, KEY_LEFT, KEY_LEFT, KEY_LEFT});
  EXPECT_EQ(item.Cursor(), 6u);
  EXPECT_EQ(item.Offset(), 6u);
  item.HandleKey(KEY_LEFT);
  EXPECT_EQ(item.Cursor(), 5u);
  EXPECT_EQ(item.Offset(), 5u);
  EXPECT_EQ(item.Line(20, &column), "L           [ {bgcolor:black}{color:white}fghi{/color}{/bgcolor} ]");
  EXPECT_EQ(column, 14);
}

TEST(InputItem, AMaskedFieldShowsOneStarPerVisibleByte) {
  InputItem item("Password", "s3cr\xc3\xa9t", 12);
  item.SetMasked(true);
  EXPECT_EQ(item.Line(30, nullptr), "Password      [ ******* ]");
  EXPECT_EQ(item.Value(), "s3cr\xc3\xa9t");

  InputItem longer("P", "0123456789", 4);
  longer.SetMasked(true);
  EXPECT_EQ(longer.Line(20, nullptr), "P           [ **** ]");
}

}  // namespace
}  // namespace Konu
