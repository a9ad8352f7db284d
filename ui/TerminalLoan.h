// Lending the terminal to a program that draws on it (the pager) and taking it back.
#pragma once

#include <termios.h>

namespace Konu {

class TerminalLoan {
 public:
  // Saves fd 1's attributes, puts back those start-up found, and clears the screen.
  TerminalLoan();
  // Restores the saved attributes, makes the console's process group the terminal's
  // foreground group again and sends the keypad mode again.
  ~TerminalLoan();
  TerminalLoan(const TerminalLoan&) = delete;
  TerminalLoan& operator=(const TerminalLoan&) = delete;

  // Paints every cell of the screen again on the next refresh, and refreshes.
  static void RepaintScreen();

 private:
  termios saved_{};
  bool haveSaved_ = false;
};

}  // namespace Konu
