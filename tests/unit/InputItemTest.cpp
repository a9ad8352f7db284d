// Editing an input field and the line it shows: replace-on-type, cursor keys, scrolling
// through the field window, masking.
#include <curses.h>
#include <gtest/gtest.h>

#include "ui/InputItem.h"

namespace Konu {
namespace {

void Keys(InputItem& item, std::initializer_list<int> keys) {
  for (int key : keys) item.HandleKey(key);
}

void Type(InputItem& item, std::string_view text) {
  for (char c : text) item.HandleKey(static_cast<unsigned char>(c));
}

TEST(InputItem, TypingIntoAFreshFieldReplacesTheWholeValue) {
  InputItem item("Port", "2049", 8);
  item.HandleKey('1');
  EXPECT_EQ(item.Value(), "1");
  EXPECT_EQ(item.Cursor(), 1u);
  Type(item, "2.5");
  EXPECT_EQ(item.Value(), "12.5");
}

TEST(InputItem, MovingFirstKeepsTheValueAndEditsAtTheCursor) {
  InputItem item("Port", "2049", 8);
  item.HandleKey(KEY_LEFT);
  EXPECT_EQ(item.Value(), "2049");
  EXPECT_EQ(item.Cursor(), 3u);
  EXPECT_FALSE(item.ReplaceOnType());
  item.HandleKey('1');
  EXPECT_EQ(item.Value(), "20419");

  Keys(item, {KEY_HOME, 'x', KEY_END, 'y'});
  EXPECT_EQ(item.Value(), "x20419y");
  Keys(item, {KEY_RIGHT, KEY_HOME, KEY_DC, KEY_RIGHT, KEY_BACKSPACE});
  EXPECT_EQ(item.Value(), "0419y");
  EXPECT_EQ(item.Cursor(), 0u);
  Keys(item, {KEY_END, 8, 8});
  EXPECT_EQ(item.Value(), "041");
  Keys(item, {KEY_END, KEY_DC, KEY_RIGHT});  // nothing at or after the end
  EXPECT_EQ(item.Value(), "041");
  EXPECT_EQ(item.Cursor(), 3u);
}

TEST(InputItem, DeleteAndBackspaceClearASelectedValue) {
  for (int key : {KEY_DC, KEY_BACKSPACE, 8}) {
    InputItem item("Name", "host", 8);
    item.HandleKey(key);
    EXPECT_EQ(item.Value(), "") << key;
    EXPECT_FALSE(item.ReplaceOnType()) << key;
  }
}

TEST(InputItem, AnyOtherKeyClearsASelectedValueButOnlyPrintableOnesAreTyped) {
  InputItem item("Name", "host", 8);
  item.HandleKey(KEY_F(5));
  EXPECT_EQ(item.Value(), "");
  item.HandleKey('\t');
  item.HandleKey(0x7f);
  item.HandleKey(0x1b);
  EXPECT_EQ(item.Value(), "");
  item.HandleKey(' ');
  EXPECT_EQ(item.Value(), " ");
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

TEST(InputItem, BackspacePastTheFieldsLeftEdgeShowsTheStartAndJumpsToTheEnd) {
  InputItem item("L", "abcdefgh", 4);
  item.Line(20, nullptr);  // scrolls to offset 4
  ASSERT_EQ(item.Offset(), 4u);
  Keys(item, {KEY_LEFT, KEY_LEFT, KEY_LEFT, KEY_LEFT});
  ASSERT_EQ(item.Cursor(), 4u);
  item.HandleKey(KEY_BACKSPACE);
  EXPECT_EQ(item.Value(), "abcefgh");
  EXPECT_EQ(item.Offset(), 0u);
  EXPECT_EQ(item.Cursor(), 7u);
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
