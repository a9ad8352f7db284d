// Curses started in a Terminal::Fork child the way the console starts it (UTF-8 locale,
// colours, key definitions), the usual ways for the child to hold its picture and to say how
// far it got, and the test's checks of cell colours and of the child's end.
#pragma once

#include <curses.h>
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "app/Colors.h"
#include "app/Keys.h"
#include "tests/harness/Terminal.h"
#include "ui/Window.h"

namespace KonuTest {

// The environment of the child: a short Esc delay so lone Escapes arrive at once.
inline std::vector<std::string> UiEnv() { return {"ESCDELAY=25", "LANG=C.UTF-8"}; }

class UiCurses {
 public:
  UiCurses() {
    setlocale(LC_ALL, "C.UTF-8");
    screen_ = newterm(nullptr, stdout, stdin);
    if (!screen_) return;
    start_color();
    curs_set(0);
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    Konu::SetupColors();
    Konu::DefineKeys();
    refresh();
  }
  ~UiCurses() {
    if (!screen_) return;
    endwin();
    delscreen(screen_);
  }
  UiCurses(const UiCurses&) = delete;
  UiCurses& operator=(const UiCurses&) = delete;

  bool Ok() const { return screen_ != nullptr; }

  // Keeps the picture until the test presses `key`.
  static void HoldUntil(int key) {
    Konu::Window::Paint();  // what was drawn goes out as the key reader sends it
    wtimeout(stdscr, -1);
    while (wgetch(stdscr) != key) {
    }
  }

 private:
  SCREEN* screen_ = nullptr;
};

// In the child: the bottom row says `text` (how far the child got).
inline void Say(const std::string& text) {
  move(LINES - 1, 0);
  clrtoeol();
  mvaddstr(LINES - 1, 0, text.c_str());
  refresh();
}

inline void ExpectColors(const Terminal& t, int row, int column, int background, int foreground) {
  CellColors cell = t.Colors(row, column);
  EXPECT_EQ(cell.background, background) << "row " << row << " column " << column;
  EXPECT_EQ(cell.foreground, foreground) << "row " << row << " column " << column;
}

// "q" ends the child, which exits with 0.
inline void Quit(Terminal& t) {
  t.Press("q");
  int status = -1;
  ASSERT_TRUE(t.WaitForExit(5000, &status));
  EXPECT_EQ(status, 0);
}

}  // namespace KonuTest
