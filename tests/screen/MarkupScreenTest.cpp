// Screen texts as a person sees them: alignment, padding, wrapping, unknown tags, the cut at
// the last row, and colour tags.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/harness/Terminal.h"
#include "tests/screen/UiChild.h"
#include "ui/TextArea.h"
#include "ui/Window.h"

namespace Konu {
namespace {

using KonuTest::Terminal;
using KonuTest::UiCurses;

struct Sample {
  int x, y, width, height;
  const char* text;
};

// Every sample in its own area on a black-on-yellow window.
const Sample kSamples[] = {
    {5, 1, 20, 1, "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}"},
    {5, 3, 20, 1, "{align:padding:5}ab{/align}|"},
    {5, 4, 20, 1, "{align:padding:3}abcdef{/align}|"},
    {5, 5, 20, 1, "{align:padding:0}hidden words{/align}shown"},
    {5, 7, 4, 3, "abcdefghij"},
    {5, 11, 10, 2, "{align:right}OK{/align}next"},
    {5, 13, 10, 2, "{align:center}OK{/align}next"},
    {5, 16, 20, 1, "ab{unknown}cd{color:purple}ef|"},
    {5, 18, 10, 2, "one\ntwo\nthree"},
    {40, 1, 20, 1, "{color:red}R{/color}N{bgcolor:black}B{/bgcolor}"},
};

int DrawSamples() {
  UiCurses curses;
  if (!curses.Ok()) return 2;
  Window background(0, 0, COLS, LINES, 3, 0);
  background.Update();
  std::vector<std::unique_ptr<TextArea>> areas;
  for (const Sample& sample : kSamples) {
    areas.push_back(
        std::make_unique<TextArea>(&background, sample.x, sample.y, sample.width, sample.height, 0));
    areas.back()->SetText(sample.text);
  }
  mvaddstr(LINES - 1, 0, "drawn");
  refresh();
  UiCurses::HoldUntil('q');
  areas.clear();
  return 0;
}

class MarkupScreen : public ::testing::Test {
 protected:
  void SetUp() override {
    terminal_.Fork(DrawSamples, KonuTest::UiEnv());
    ASSERT_TRUE(terminal_.WaitForText("drawn", 5000)) << terminal_.Screen();
  }
  void TearDown() override {
    terminal_.Press("q");
    int status = -1;
    EXPECT_TRUE(terminal_.WaitForExit(5000, &status));
    EXPECT_EQ(status, 0);
  }
  Terminal terminal_{24, 80};
};

TEST_F(MarkupScreen, RightAlignedFooterFillsTheLastTenColumnsInItsColours) {
  // The area starts at column 5: its columns 10 to 19 are the screen's 15 to 24.
  EXPECT_EQ(terminal_.Region(1, 5, 1, 20), "          <Enter> OK");
  EXPECT_EQ(terminal_.Region(1, 25, 1, 1), " ");
  EXPECT_EQ(terminal_.Colors(1, 15).foreground, 0);  // "<Enter>" in black
  EXPECT_EQ(terminal_.Colors(1, 21).foreground, 0);
  EXPECT_EQ(terminal_.Colors(1, 23).foreground, 6);  // "OK" in dark grey
  EXPECT_EQ(terminal_.Colors(1, 24).foreground, 6);
  for (int column = 5; column < 25; ++column) EXPECT_EQ(terminal_.Colors(1, column).background, 3) << column;
}

TEST_F(MarkupScreen, PaddingCutsOrFillsAFieldAndZeroHidesIt) {
  EXPECT_EQ(terminal_.Region(3, 5, 1, 8), "ab   |  ");
  EXPECT_EQ(terminal_.Region(4, 5, 1, 8), "abc|    ");
  EXPECT_EQ(terminal_.Region(5, 5, 1, 8), "shown   ");
}

TEST_F(MarkupScreen, LongWordsBreakHardAndTextAfterAnAlignmentStartsANewLine) {
  EXPECT_EQ(terminal_.Region(7, 5, 3, 4), "abcd\nefgh\nij  ");
  EXPECT_EQ(terminal_.Region(11, 5, 2, 10), "        OK\nnext      ");
  EXPECT_EQ(terminal_.Region(13, 5, 2, 10), "    OK    \nnext      ");
}

TEST_F(MarkupScreen, UnknownTagsAndColoursTakeNoRoom) {
  EXPECT_EQ(terminal_.Region(16, 5, 1, 8), "abcdef| ");
  EXPECT_EQ(terminal_.Colors(16, 9).foreground, 0);  // purple changed nothing
}

TEST_F(MarkupScreen, TextIsCutAfterTheLastRow) {
  EXPECT_EQ(terminal_.Region(18, 5, 3, 6), "one   \ntwo   \n      ");
  EXPECT_EQ(terminal_.Find("three", nullptr, nullptr), false);
}

TEST_F(MarkupScreen, ColourTagsColourOnlyTheirText) {
  EXPECT_EQ(terminal_.Region(1, 40, 1, 3), "RNB");
  EXPECT_EQ(terminal_.Colors(1, 40).foreground, 1);
  EXPECT_EQ(terminal_.Colors(1, 40).background, 3);
  EXPECT_EQ(terminal_.Colors(1, 41).foreground, 0);
  EXPECT_EQ(terminal_.Colors(1, 42).background, 0);
  EXPECT_EQ(terminal_.Colors(1, 43).background, 3);
}

}  // namespace
}  // namespace Konu
