// TerminalLoan: terminal attributes, foreground group and keypad mode around a borrowed terminal.
#include "ui/TerminalLoan.h"

#include <curses.h>
#include <signal.h>
#include <unistd.h>

#include "app/Runtime.h"
#include "app/TerminalRestore.h"

namespace Konu {

TerminalLoan::TerminalLoan() {
  haveSaved_ = tcgetattr(1, &saved_) == 0;
  const Runtime& runtime = Runtime::Get();
  if (runtime.startupTerminalSaved) tcsetattr(1, TCSANOW, &runtime.startupTerminal);
  clear();
  refresh();
  SetTerminalLent(true);
}

TerminalLoan::~TerminalLoan() {
  SetTerminalLent(false);
  if (haveSaved_) tcsetattr(1, TCSANOW, &saved_);
  // Taking the terminal back from a background group would stop the console with SIGTTOU.
  sigset_t ttou, old;
  sigemptyset(&ttou);
  sigaddset(&ttou, SIGTTOU);
  pthread_sigmask(SIG_BLOCK, &ttou, &old);
  tcsetpgrp(1, getpgrp());
  pthread_sigmask(SIG_SETMASK, &old, nullptr);
  keypad(stdscr, FALSE);
  keypad(stdscr, TRUE);
}

void TerminalLoan::RepaintScreen() {
  clearok(curscr, TRUE);
  wrefresh(curscr);
}

}  // namespace Konu
