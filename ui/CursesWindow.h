// Owns one curses window (newwin or subwin) and deletes it with delwin.
#pragma once

#include <curses.h>

namespace Konu {

class CursesWindow {
 public:
  CursesWindow() = default;
  explicit CursesWindow(WINDOW* window) : window_(window) {}
  ~CursesWindow() {
    if (window_) delwin(window_);
  }
  CursesWindow(const CursesWindow&) = delete;
  CursesWindow& operator=(const CursesWindow&) = delete;
  CursesWindow(CursesWindow&& other) noexcept : window_(other.window_) { other.window_ = nullptr; }
  CursesWindow& operator=(CursesWindow&& other) noexcept {
    if (this != &other) {
      if (window_) delwin(window_);
      window_ = other.window_;
      other.window_ = nullptr;
    }
    return *this;
  }

  // Null when the window could not be made (no room on the screen, or an empty size).
  WINDOW* get() const { return window_; }

 private:
  WINDOW* window_ = nullptr;
};

}  // namespace Konu
