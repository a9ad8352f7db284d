// Putting the terminal back as it was, on every way out of the console: the normal end and
// exit() (curses' endwin and the Linux console's palette reset), and, when the
// user-interface thread cannot do it because its output is stuck, from another thread.
#pragma once

#include <termios.h>

namespace Konu {

// Keeps what the emergency restore needs: the terminal attributes from before curses and
// the terminal's own sequences that leave the full-screen mode. Call once curses runs.
// Also makes an exception that nobody catches restore the terminal before the abort.
void PrepareTerminalRestore(const termios& saved);

// endwin() and ESC ] R on stdout; does nothing the second time. Registered with atexit.
// While the terminal is lent to a child (the pager), which may have been killed in its own
// modes, it restores as EmergencyRestoreTerminal does instead.
void RestoreTerminal();

// Whether the terminal is lent to a child now (TerminalLoan).
void SetTerminalLent(bool lent);

// For the signal thread when the user-interface thread does not answer a terminating
// signal (its output held by XOFF, for instance). LetOutputFlow lets the terminal take
// output again. EmergencyRestoreTerminal drops the output still queued, puts back the
// saved attributes and writes the leaving sequences, giving up after a fraction of a
// second rather than block. Both are safe from any thread and touch no curses state.
void LetOutputFlow();
void EmergencyRestoreTerminal();

}  // namespace Konu
