// Colours and the key table: the key table as the keyboards send it, every sequence read back
// through curses, and the working set of colour pairs drawn on real terminal descriptions.
#include <curses.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "app/Colors.h"
#include "app/Keys.h"
#include "app/Runtime.h"
#include "tests/harness/Terminal.h"
#include "tests/screen/UiChild.h"

namespace Konu {
namespace {

constexpr int kWorkingSet[] = {7, 0, 3, 2, 6, 1};

// The table as the console's keyboards send it, built series by series.
std::vector<KeySequence> ExpectedTable(std::vector<std::string>* storage) {
  struct Row {
    std::string bytes;
    int key;
  };
  std::vector<Row> rows;
  const std::string esc = "\033";
  rows.push_back({esc + "R", KEY_RESIZE});
  const char* tilde[] = {"11", "12", "13", "14", "15", "17", "18", "19", "20", "21", "23", "24"};
  for (int i = 0; i < 12; ++i) rows.push_back({esc + "[" + tilde[i] + "~", KEY_F(i + 1)});
  for (int i = 1; i <= 9; ++i) rows.push_back({esc + char('0' + i), KEY_F(i)});
  rows.push_back({esc + "0", KEY_F(10)});
  rows.push_back({esc + "!", KEY_F(11)});
  rows.push_back({esc + "@", KEY_F(12)});
  rows.push_back({esc + "h", KEY_HOME});
  rows.push_back({esc + "k", KEY_END});
  rows.push_back({esc + "+", KEY_IC});
  rows.push_back({esc + "-", KEY_DC});
  rows.push_back({esc + "?", KEY_PPAGE});
  rows.push_back({esc + "/", KEY_NPAGE});
  for (char c = 'M'; c <= 'X'; ++c) rows.push_back({esc + "[" + c, KEY_F(c - 'M' + 1)});
  for (char c = 'P'; c <= 'X'; ++c) rows.push_back({esc + "O" + c, KEY_F(c - 'P' + 1)});
  rows.push_back({esc + "OY", KEY_F(12)});
  const int arrows[] = {KEY_UP, KEY_DOWN, KEY_RIGHT, KEY_LEFT};
  for (const char* lead : {"O", "["}) {
    for (int i = 0; i < 4; ++i) rows.push_back({esc + lead + char('A' + i), arrows[i]});
  }
  rows.push_back({esc + "[2~", KEY_IC});
  rows.push_back({esc + "[3~", KEY_DC});
  rows.push_back({esc + "[1~", KEY_HOME});
  rows.push_back({esc + "[4~", KEY_END});
  rows.push_back({esc + "[5~", KEY_PPAGE});
  rows.push_back({esc + "[6~", KEY_NPAGE});
  rows.push_back({"\x7f", KEY_BACKSPACE});
  storage->clear();
  storage->reserve(rows.size());
  std::vector<KeySequence> table;
  for (const Row& row : rows) {
    storage->push_back(row.bytes);
    table.push_back({storage->back().c_str(), row.key});
  }
  return table;
}

std::vector<KeySequence> Table() {
  int count = 0;
  const KeySequence* table = KeySequences(&count);
  return std::vector<KeySequence>(table, table + count);
}

TEST(KeyTable, EverySequenceInItsOrder) {
  std::vector<std::string> storage;
  std::vector<KeySequence> expected = ExpectedTable(&storage);
  std::vector<KeySequence> table = Table();
  ASSERT_EQ(table.size(), 68u);
  ASSERT_EQ(table.size(), expected.size());
  for (size_t i = 0; i < table.size(); ++i) {
    EXPECT_STREQ(table[i].bytes, expected[i].bytes) << "row " << i;
    EXPECT_EQ(table[i].key, expected[i].key) << "row " << i;
  }
}

// The console's own terminal set-up on the pty of a forked child, then `body`.
int WithCurses(const std::function<int()>& body) {
  KonuTest::UiCurses curses;
  return curses.Ok() ? body() : 90;
}

std::string Shown(const std::string& bytes) { return bytes[0] == '\033' ? "ESC " + bytes.substr(1) : "DEL"; }

std::string TrimRight(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

// The child collects key codes until Enter and then shows them on row 1 as "#N: codes", so
// a sequence that curses splits into several keys shows all of them.
TEST(KeysInTerminal, EverySequenceYieldsItsKeyCode) {
  KonuTest::Terminal terminal(24, 80);
  terminal.Fork([] {
    return WithCurses([] {
      DefineKeys();
      mvaddstr(0, 0, "ready");
      refresh();
      std::string codes;
      for (int batch = 1;;) {
        int key = getch();
        if (key == 'q' && codes.empty()) return 0;
        if (key == '\n') {
          mvprintw(1, 0, "#%d:%s", batch++, codes.c_str());
          clrtoeol();
          refresh();
          codes.clear();
        } else {
          codes += " " + std::to_string(key);
        }
      }
    });
  });
  ASSERT_TRUE(terminal.WaitForText("ready"));
  int batch = 0;
  for (const KeySequence& sequence : Table()) {
    std::string prefix = "#" + std::to_string(++batch) + ":";
    terminal.Write(std::string(sequence.bytes) + "\n");
    ASSERT_TRUE(terminal.WaitFor([&] { return terminal.Row(1).rfind(prefix, 0) == 0; }))
        << Shown(sequence.bytes) << "; row 1: " << terminal.Row(1);
    EXPECT_EQ(TrimRight(terminal.Row(1)), prefix + " " + std::to_string(sequence.key))
        << Shown(sequence.bytes);
  }
  // Plain keys still arrive as themselves.
  terminal.Write("a\t\n");
  const std::string plain = "#" + std::to_string(++batch) + ": 97 9";
  EXPECT_TRUE(terminal.WaitFor([&] { return TrimRight(terminal.Row(1)) == plain; })) << terminal.Row(1);
  terminal.Write("q");
  int status = 0;
  ASSERT_TRUE(terminal.WaitForExit(5000, &status));
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

// Draws one sample cell per (background, foreground) pair of the working set, row by
// background, column by foreground. `attributeWord`: through ColorAttr alone, as windows do
// with wattr_on; otherwise with the whole pair number, which survives pairs above 255.
int DrawSamples(bool attributeWord) {
  SetupColors();
  mvprintw(0, 0, "monochrome=%d", Runtime::Get().monochrome ? 1 : 0);
  for (int row = 0; row < 6; ++row) {
    for (int column = 0; column < 6; ++column) {
      int background = kWorkingSet[row], foreground = kWorkingSet[column];
      int pair = ColorPair(background, foreground);
      if (attributeWord) {
        wattr_on(stdscr, ColorAttr(background, foreground), nullptr);
      } else {
        wattr_set(stdscr, Runtime::Get().monochrome ? ColorAttr(background, foreground) : A_NORMAL, 0, &pair);
      }
      mvaddch(2 + row, 2 * column, 'x');
      wattr_set(stdscr, A_NORMAL, 0, nullptr);
    }
  }
  int foreground = -1, background = -1;
  int status = extended_pair_content(1, &foreground, &background);
  mvprintw(9, 0, "pair1=%d/%d status=%d colors=%d pairs=%d", foreground, background, status == OK ? 0 : 1,
           COLORS, COLOR_PAIRS);
  move(11, 0);
  for (short index : {0, 1, 2, 3, 6, 7}) {
    short red = -1, green = -1, blue = -1;
    color_content(index, &red, &green, &blue);
    printw("%d=%d,%d,%d ", index, red, green, blue);
  }
  // Below everything else: curses sends an update top to bottom, in several writes.
  mvaddstr(12, 0, "done");
  refresh();
  getch();
  return 0;
}

TEST(ColorsInTerminal, WithoutColourChangeBlackAndDarkGreyStandOut) {
  Runtime::Get().monochrome = false;
  KonuTest::Terminal terminal(24, 80);
  terminal.Fork([] { return WithCurses([] { return DrawSamples(true); }); }, {"TERM=xterm"});
  ASSERT_TRUE(terminal.WaitForText("done"));
  EXPECT_EQ(TrimRight(terminal.Row(0)), "monochrome=1");
  // Nothing was defined: pair 1 is still black on black, or curses refuses to say.
  std::string pairLine = TrimRight(terminal.Row(9));
  EXPECT_TRUE(pairLine.rfind("pair1=0/0 status=0", 0) == 0 || pairLine.find("status=1") != std::string::npos)
      << pairLine;
  for (int row = 0; row < 6; ++row) {
    for (int column = 0; column < 6; ++column) {
      int background = kWorkingSet[row];
      KonuTest::CellColors cell = terminal.Colors(2 + row, 2 * column);
      EXPECT_EQ(cell.reverse, background == 0 || background == 6) << "background " << background;
      EXPECT_EQ(cell.foreground, -1);
      EXPECT_EQ(cell.background, -1);
    }
  }
  terminal.Write("q");
}

TEST(ColorsInTerminal, ColourTerminalShowsEveryPairOfTheWorkingSet) {
  KonuTest::Terminal terminal(24, 80);
  terminal.Fork([] { return WithCurses([] { return DrawSamples(false); }); }, {"TERM=xterm-256color"});
  ASSERT_TRUE(terminal.WaitForText("done"));
  EXPECT_EQ(TrimRight(terminal.Row(0)), "monochrome=0");
  EXPECT_NE(terminal.Row(9).find("colors=256"), std::string::npos) << terminal.Row(9);
  // Five colours are redefined; black is kept as the terminal has it.
  EXPECT_EQ(TrimRight(terminal.Row(11)),
            "0=0,0,0 1=1000,0,0 2=667,667,667 3=1000,800,0 6=334,334,334 7=1000,1000,1000");
  for (int row = 0; row < 6; ++row) {
    for (int column = 0; column < 6; ++column) {
      KonuTest::CellColors cell = terminal.Colors(2 + row, 2 * column);
      EXPECT_EQ(cell.background, kWorkingSet[row]) << row << "," << column;
      EXPECT_EQ(cell.foreground, kWorkingSet[column]) << row << "," << column;
      EXPECT_FALSE(cell.reverse);
    }
  }
  terminal.Write("q");
}

// The host's own console: 8 colours, so every pair number fits in the attribute word, but
// only pairs 0-63 exist and white on white (64) is left undefined.
TEST(ColorsInTerminal, LinuxConsoleShowsThePairsThroughTheAttributeWord) {
  KonuTest::Terminal terminal(24, 80);
  terminal.Fork([] { return WithCurses([] { return DrawSamples(true); }); }, {"TERM=linux"});
  ASSERT_TRUE(terminal.WaitForText("done"));
  EXPECT_EQ(TrimRight(terminal.Row(0)), "monochrome=0");
  EXPECT_NE(terminal.Row(9).find("colors=8 pairs=64"), std::string::npos) << terminal.Row(9);
  for (int row = 0; row < 6; ++row) {
    for (int column = 0; column < 6; ++column) {
      if (kWorkingSet[row] == 7 && kWorkingSet[column] == 7) continue;
      KonuTest::CellColors cell = terminal.Colors(2 + row, 2 * column);
      EXPECT_EQ(cell.background, kWorkingSet[row]) << row << "," << column;
      EXPECT_EQ(cell.foreground, kWorkingSet[column]) << row << "," << column;
    }
  }
  terminal.Write("q");
}

}  // namespace
}  // namespace Konu
