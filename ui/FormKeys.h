// The keys forms and dialogs share: Enter in its spellings, Esc, Tab and the keys that
// edit an input field.
#pragma once

#include <curses.h>

namespace Konu {

inline constexpr int kKeyEsc = 27;
inline constexpr int kKeyTab = 9;

inline bool IsEnterKey(int key) { return key == '\n' || key == '\r' || key == KEY_ENTER; }

// Printable characters, Backspace (8 and the curses key), Delete, Left, Right, Home, End.
inline bool IsEditingKey(int key) {
  switch (key) {
    case 8:
    case KEY_BACKSPACE:
    case KEY_DC:
    case KEY_LEFT:
    case KEY_RIGHT:
    case KEY_HOME:
    case KEY_END:
      return true;
    default:
      return key >= 32 && key < 127;
  }
}

}  // namespace Konu
