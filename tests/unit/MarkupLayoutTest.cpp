// The layout pass of screen texts: alignment, padding, wrapping, variables and tags.
#include <gtest/gtest.h>

#include "ui/Markup.h"

namespace Konu {
namespace {

const char* const kEnterFooter =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}";

// The laid-out text as it shows: tags removed.
std::string Shown(const std::string& laidOut) {
  std::string shown;
  bool inTag = false;
  for (char c : laidOut) {
    if (c == '{') inTag = true;
    if (!inTag) shown.push_back(c);
    if (c == '}') inTag = false;
  }
  return shown;
}

std::string Lay(int width, std::string_view text) {
  static VariableTable none({});
  return LayoutMarkup(width, text, none);
}

TEST(MarkupLayout, RightAlignedFooterEndsAtTheRightEdge) {
  std::string laid = Lay(20, kEnterFooter);
  EXPECT_EQ(Shown(laid), "          <Enter> OK");
  EXPECT_EQ(laid, "          {color:black}<Enter>{/color} {color:dark-grey}OK{/color}");
}

TEST(MarkupLayout, CentredTextTakesHalfTheFreeColumns) {
  EXPECT_EQ(Lay(10, "{align:center}abcd{/align}"), "   abcd");
  EXPECT_EQ(Lay(11, "{align:center}abcd{/align}"), "   abcd");
  EXPECT_EQ(Lay(10, "ab{align:center}cd{/align}"), "ab   cd");
}

TEST(MarkupLayout, TextAfterAnAlignmentStartsOnTheNextLine) {
  EXPECT_EQ(Lay(10, "{align:right}OK{/align}next"), "        OK\nnext");
  EXPECT_EQ(Lay(10, "{align:center}OK{/align}next"), "    OK\nnext");
  EXPECT_EQ(Lay(10, "{align:right}OK{/align} next"), "        OK\nnext");
  EXPECT_EQ(Lay(10, "{align:right}OK{/align}\nnext"), "        OK\nnext");
}

TEST(MarkupLayout, OtherAlignValuesAndNestedAlignmentsAreIgnored) {
  EXPECT_EQ(Lay(10, "{align:left}ab{/align}"), "ab");
  EXPECT_EQ(Lay(5, "{align:right}a{align:center}b{/align}"), "   ab");
  EXPECT_EQ(Lay(10, "a{/align}b"), "ab");
}

TEST(MarkupLayout, PaddingMakesAFieldOfExactlyThatWidth) {
  EXPECT_EQ(Lay(20, "{align:padding:5}ab{/align}|"), "ab   |");
  EXPECT_EQ(Lay(20, "{align:padding:3}abcdef{/align}|"), "abc|");
  EXPECT_EQ(Lay(20, "{align:padding:0}hidden words{/align}shown"), "shown");
  EXPECT_EQ(Lay(20, "{align:padding:4}a b c{/align}|"), "a b |");
  // Never wider than the room left on the line.
  EXPECT_EQ(Lay(5, "{align:padding:10}ab{/align}|"), "ab   \n|");
}

TEST(MarkupLayout, AWordLongerThanTheWidthIsBrokenHard) {
  EXPECT_EQ(Lay(4, "abcdefghij"), "abcd\nefgh\nij");
  EXPECT_EQ(Lay(4, "ab cdefghij"), "ab\ncdef\nghij");
}

TEST(MarkupLayout, WordsWrapAtTheLastWhitespace) {
  EXPECT_EQ(Lay(4, "abcd efgh"), "abcd\nefgh");  // whitespace at a full line is the break
  EXPECT_EQ(Lay(4, "abcd\nef"), "abcd\nef");     // one newline only
  EXPECT_EQ(Lay(10, "ab\n\ncd"), "ab\n\ncd");
  // A carried word counts on its new line: "world again" (11) does not fit in 10 columns.
  EXPECT_EQ(Lay(10, "hello world again"), "hello\nworld\nagain");
  EXPECT_EQ(Lay(11, "hello world again"), "hello world\nagain");
}

TEST(MarkupLayout, AWrapInsideARightAlignmentShiftsThePartBeforeTheBreak) {
  // "ab cd" fills the line; at "e" the word "cd" moves down, two spaces (its length) go in
  // front of "ab", and the alignment goes on from "e", after the carried word.
  EXPECT_EQ(Lay(5, "{align:right}ab cde{/align}"), "  ab\ncd  e");
}

TEST(MarkupLayout, RecordedIndexesAreNotMovedByLaterInsertions) {
  // The space recorded at index 1 is taken after three spaces were inserted in front of
  // it, so the break lands inside the inserted spaces, not between "a" and "b".
  EXPECT_EQ(Lay(6, "{align:right}a b{/align}c"), " \n a bc");
}

TEST(MarkupLayout, UnknownTagsPassThroughAndTakeNoColumns) {
  EXPECT_EQ(Lay(4, "{unknown}abcd"), "{unknown}abcd");
  EXPECT_EQ(Lay(4, "ab{color:purple}cd"), "ab{color:purple}cd");
  EXPECT_EQ(Lay(4, "a{}b"), "ab");
  EXPECT_EQ(Lay(4, "ab{cd"), "ab{cd");  // unterminated: left for the drawing pass to drop
}

TEST(MarkupLayout, VariablesAreExpandedWithoutWordWrap) {
  VariableTable table({"ip", "memory"});
  ASSERT_TRUE(table.SetProvider("ip", [] { return std::string("10.0.0.1"); }));
  EXPECT_EQ(LayoutMarkup(20, "IP: {ip}", table), "IP: 10.0.0.1");
  EXPECT_EQ(LayoutMarkup(6, "ab {ip}", table), "ab 10.\n0.0.1");
  EXPECT_EQ(LayoutMarkup(20, "[{memory}]", table), "[]");
  EXPECT_EQ(LayoutMarkup(20, "{align:padding:4}{ip}{/align}|", table), "10.0|");
  EXPECT_EQ(LayoutMarkup(20, "{align:right}{ip}{/align}", table), "            10.0.0.1");
  EXPECT_EQ(LayoutMarkup(20, "{servicetag}", table), "{servicetag}");
}

TEST(MarkupLayout, ProvidersAreCalledOnEveryPass) {
  VariableTable table({"ip"});
  int calls = 0;
  table.SetProvider("ip", [&calls] { return std::to_string(++calls); });
  EXPECT_EQ(LayoutMarkup(20, "{ip}", table), "1");
  EXPECT_EQ(LayoutMarkup(20, "{ip} {ip}", table), "2 3");
}

TEST(MarkupTables, StandardVariablesAllStartEmptyAndCanBeWired) {
  VariableTable& table = VariableTable::Standard();
  const char* names[] = {
      "ip",          "ssl-thumbprint", "ssh-dsa-fingerprint", "ssh-rsa-fingerprint", "orinproduct",
      "orinversion", "supportstart",   "supportperiod",       "servicetag",          "assettag",
      "BIOSversion", "BMCversion",     "CPLDversion",         "PLSAversion",         "memory"};
  EXPECT_EQ(table.Entries().size(), std::size(names));
  for (const char* name : names) {
    const MarkupVariable* variable = table.Find(name);
    ASSERT_NE(variable, nullptr) << name;
    EXPECT_EQ(variable->provider(), "") << name;
  }
  EXPECT_FALSE(table.SetProvider("hostname", [] { return std::string("x"); }));
  EXPECT_TRUE(table.SetProvider("memory", [] { return std::string("4 GiB"); }));
  EXPECT_EQ(LayoutMarkup(20, "{memory}", table), "4 GiB");
  EXPECT_TRUE(table.SetProvider("memory", nullptr));
  EXPECT_EQ(LayoutMarkup(20, "{memory}", table), "");
}

TEST(MarkupTables, ColourNames) {
  EXPECT_EQ(FindColor("white"), 7);
  EXPECT_EQ(FindColor("black"), 0);
  EXPECT_EQ(FindColor("dark-grey"), 6);
  EXPECT_EQ(FindColor("light-grey"), 2);
  EXPECT_EQ(FindColor("yellow"), 3);
  EXPECT_EQ(FindColor("red"), 1);
  EXPECT_EQ(FindColor("purple"), -1);
  EXPECT_EQ(FindColor("White"), -1);
}

}  // namespace
}  // namespace Konu
