// Curses started in a Terminal::Fork child the way the console starts it (UTF-8 locale,
// colours, key definitions), and the usual ways for the child to hold its picture.
#pragma once

#include <curses.h>

#include <clocale>
#include <string>

#include "app/Colors.h"
#include "app/Keys.h"
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

}  // namespace KonuTest
