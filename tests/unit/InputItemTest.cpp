// The line an input field shows: label, brackets and colours, scrolling through the field
// window, masking, the selection coming back with the focus, and one row per editing rule
// (tests/fuzz/InputItemFuzz.cpp checks the same rules on random keys and values).
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

// A focused field, drawn once (which scrolls it so the cursor shows), then the keys.
TEST(InputItem, EachEditingKeyFollowsItsRule) {
  const struct {
    const char* rule;
    const char* value;
    int fieldWidth;
    std::initializer_list<int> keys;
    const char* after;
    size_t cursor;
  } kRows[] = {
      {"typing replaces the selected value", "10.0.0.5", 8, {'9', '1'}, "91", 2},
      {"Home keeps the value and typing inserts at the cursor", "host", 8, {KEY_HOME, '9'}, "9host", 1},
      {"End, Left, Right move without changing it",
       "host",
       8,
       {KEY_END, KEY_LEFT, KEY_LEFT, KEY_RIGHT, 'x'},
       "hosxt",
       4},
      {"Left at the start and Right at the end stay",
       "ab",
       8,
       {KEY_HOME, KEY_LEFT, KEY_END, KEY_RIGHT},
       "ab",
       2},
      {"Delete clears a selected value", "host", 8, {KEY_DC}, "", 0},
      {"Backspace clears a selected value", "host", 8, {KEY_BACKSPACE}, "", 0},
      {"any other key clears it but types nothing", "host", 8, {KEY_F(2), 27, 'x'}, "x", 1},
      {"other keys leave an unselected value alone", "host", 8, {KEY_END, KEY_F(2), 27, 9, 1000}, "host", 4},
      {"Delete takes the byte at the cursor", "host", 8, {KEY_HOME, KEY_DC, KEY_END, KEY_DC}, "ost", 3},
      {"Backspace and Ctrl-H take the byte before it", "host", 8, {KEY_END, KEY_BACKSPACE, 8}, "ho", 2},
      {"Backspace at the start does nothing", "host", 8, {KEY_HOME, KEY_BACKSPACE}, "host", 0},
      {"Backspace past the field's left edge jumps to the end",
       "abcdefghij",
       4,
       {KEY_LEFT, KEY_LEFT, KEY_LEFT, KEY_LEFT, KEY_BACKSPACE},
       "abcdeghij",
       9},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.rule);
    InputItem item("L", row.value, row.fieldWidth);
    item.SetFocus(true);
    item.Line(20, nullptr);
    for (int key : row.keys) item.HandleKey(key);
    EXPECT_EQ(item.Value(), row.after);
    EXPECT_EQ(item.Cursor(), row.cursor);
    EXPECT_FALSE(item.ReplaceOnType());
  }
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
