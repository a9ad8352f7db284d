// The drawing pass of screen texts: rows, the cut at the area's edges and colour tags.
#include <gtest/gtest.h>

#include "ui/Markup.h"

namespace Konu {
namespace {

using Op = MarkupDrawOp;

Op Write(int row, int column, std::string text) { return {Op::kWrite, row, column, std::move(text)}; }
Op On(int background, int foreground) { return {Op::kAttrOn, 0, 0, {}, background, foreground}; }
Op Off(int background, int foreground) { return {Op::kAttrOff, 0, 0, {}, background, foreground}; }

// An active area 10 x 3, black on yellow.
std::vector<Op> Plan(std::string_view laidOut, bool active = true) {
  return PlanMarkupDrawing(laidOut, 10, 3, 3, 0, active);
}

TEST(MarkupDrawPlan, NewlinesStartRowsAndTheTextIsCutAfterTheLastRow) {
  EXPECT_EQ(Plan("one\ntwo\nthree\nfour"),
            (std::vector<Op>{Write(0, 0, "one"), Write(1, 0, "two"), Write(2, 0, "three")}));
  EXPECT_EQ(Plan("a\n\nb"), (std::vector<Op>{Write(0, 0, "a"), Write(2, 0, "b")}));
  EXPECT_TRUE(PlanMarkupDrawing("text", 10, 0, 3, 0, true).empty());
}

TEST(MarkupDrawPlan, EveryRowIsCutAtTheRightEdge) {
  EXPECT_EQ(Plan("abcdefghijklm"), (std::vector<Op>{Write(0, 0, "abcdefghij")}));
  EXPECT_EQ(Plan("abcdefgh{color:red}ijklm"),
            (std::vector<Op>{Write(0, 0, "abcdefgh"), On(3, 1), Write(0, 8, "ij")}));
  // A row wider than the area (alignment can make one) must not run on into the next row.
  EXPECT_EQ(Plan("abcdefghijk{color:red}l\nx"),
            (std::vector<Op>{Write(0, 0, "abcdefghij"), On(3, 1), Write(1, 0, "x")}));
}

TEST(MarkupDrawPlan, ColourTagsSwitchTheAttributeWhileActive) {
  EXPECT_EQ(Plan("x{color:red}y{/color}z"),
            (std::vector<Op>{Write(0, 0, "x"), On(3, 1), Write(0, 1, "y"), On(3, 0), Write(0, 2, "z")}));
  EXPECT_EQ(Plan("{color:red}a{color:white}b"),
            (std::vector<Op>{On(3, 1), Write(0, 0, "a"), Off(3, 1), On(3, 7), Write(0, 1, "b")}));
  EXPECT_EQ(Plan("{bgcolor:black}{color:white}v{/color}{/bgcolor}"),
            (std::vector<Op>{On(0, 0), Off(0, 0), On(0, 7), Write(0, 0, "v"), On(3, 0)}));
}

TEST(MarkupDrawPlan, AnInactiveAreaSwitchesNoAttributes) {
  EXPECT_EQ(Plan("x{color:red}y{/color}z", false),
            (std::vector<Op>{Write(0, 0, "x"), Write(0, 1, "y"), Write(0, 2, "z")}));
}

TEST(MarkupDrawPlan, ClosingTagsRestoreTheAttributeButNotTheCurrentColours) {
  // The background set by {bgcolor} is still current after {/bgcolor}: the next {color}
  // draws on black, not on the area's yellow.
  EXPECT_EQ(Plan("{bgcolor:black}a{/bgcolor}b{color:red}c"),
            (std::vector<Op>{On(0, 0), Write(0, 0, "a"), On(3, 0), Write(0, 1, "b"), Off(3, 0), On(0, 1),
                             Write(0, 2, "c")}));
  // A {bgcolor}...{/bgcolor} inside a {color} leaves what follows in the area's colours,
  // and the outer {/color} then has nothing left to close.
  EXPECT_EQ(Plan("{color:red}a{bgcolor:black}b{/bgcolor}c{/color}d"),
            (std::vector<Op>{On(3, 1), Write(0, 0, "a"), Off(3, 1), On(0, 1), Write(0, 1, "b"), On(3, 0),
                             Write(0, 2, "c"), Write(0, 3, "d")}));
  EXPECT_EQ(Plan("a{/color}b"), (std::vector<Op>{Write(0, 0, "a"), Write(0, 1, "b")}));
}

TEST(MarkupDrawPlan, UnknownTagsAndColoursTakeNoRoom) {
  EXPECT_EQ(Plan("ab{unknown}cd"), (std::vector<Op>{Write(0, 0, "abcd")}));
  EXPECT_EQ(Plan("ab{color:purple}cd"), (std::vector<Op>{Write(0, 0, "ab"), Write(0, 2, "cd")}));
  EXPECT_EQ(Plan("ab{cd"), (std::vector<Op>{Write(0, 0, "ab")}));
}

}  // namespace
}  // namespace Konu
