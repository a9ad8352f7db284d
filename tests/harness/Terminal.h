// A pseudo-terminal of a given size whose output is decoded by a terminal emulator
// (libvterm), so tests read the screen back as a person sees it: text by row or region,
// colours by cell. The program under test is either an executable (Spawn) or a function
// run in a forked child whose terminal is the pty (Fork), for in-process curses tests.
//
// A screen test draws with curses in a forked child and reads the result back:
//
//   KonuTest::Terminal t(24, 80);
//   t.Fork([] {
//     SCREEN* screen = newterm(nullptr, stdout, stdin);
//     ...draw...; refresh();
//     getch();  // keep the picture until the test is done with it
//     endwin(); delscreen(screen);
//     return 0;  // the child's exit status; gtest assertions inside the child are lost
//   }, {"ESCDELAY=25"});
//   ASSERT_TRUE(t.WaitForText("some text", 3000)) << t.Screen();
//   EXPECT_EQ(t.Region(5, 10, 3, 40), "...");
//   EXPECT_EQ(t.Colors(5, 10).background, COLOR_BLUE);
//   t.Press("q");
//   int status = 0;
//   ASSERT_TRUE(t.WaitForExit(3000, &status));
//
// An end-to-end test starts the program itself on a fresh simulated host (KONU_BIN,
// KONU_HOSTSIM_BIN are compile definitions of every test), presses keys by name and waits
// for the screen:
//
//   KonuTest::Terminal t(24, 80);
//   t.Spawn({KONU_BIN, <host root option>, dir}, {"ESCDELAY=25", "LANG=C.UTF-8"});
//   ASSERT_TRUE(t.WaitForText("...", 5000)) << t.Screen();
//   t.Press("F2"); t.Type("root"); t.Press("Enter");
//
// Things to know:
// - `env` is the child's whole environment (nothing is inherited, for Fork too) plus
//   TERM=xterm-256color when it has no TERM. curses waits ESCDELAY ms (1000 by default)
//   after a lone Esc before it reports it: pass a short ESCDELAY to keep tests fast.
//   Press("Esc") does not pause: curses tells "Esc, then Up" apart from "Up" even when the
//   bytes arrive together, because no key sequence starts with two ESCs.
// - Cursor keys (Up/Down/Left/Right/Home/End) follow the cursor-key mode the program set,
//   as a real xterm does: ESC O A after curses' keypad(), ESC [ A otherwise.
// - Never sleep: wait for what the person would see (WaitForText / WaitForNoText / WaitFor,
//   all bounded, all pumping output). Print t.Screen() when a wait fails.
// - WaitForText searches the rows joined by '\n', so a text never matches across rows.
// - Colours are palette indexes; -1 is the terminal's default colour, -2 a direct (RGB)
//   colour that is no palette entry. curses without use_default_colors() paints pair 0
//   white on black (7 and 0), not the default colour.
// - The emulator switches to the alternate screen as xterm does, so after a curses
//   program's endwin() the screen shows what was there before it; read the program's
//   screen before it exits. AltScreen()/CursorVisible() tell whether it restored the
//   terminal.
// - Positions off the screen throw std::out_of_range; a failed exec throws
//   std::system_error from Spawn. A Terminal runs one program in its life.
// - Only fds 0, 1 and 2 reach a spawned program. The destructor kills (SIGKILL) the child
//   and its process group and reaps the child: no zombie, no fd left open.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/harness/BuildPaths.h"

namespace KonuTest {

// Colours of one cell as palette indexes (-1 = the terminal's default colour, -2 = a
// direct colour that is no palette entry).
struct CellColors {
  int foreground = -1;
  int background = -1;
  bool reverse = false;
  bool bold = false;
};

class Terminal {
 public:
  Terminal(int rows, int cols);
  ~Terminal();  // kills (SIGKILL) and reaps a child still running; closes the pty
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Starts argv[0] (a path) with the pty as its terminal and controlling tty. `env` is the
  // whole environment (TERM=xterm-256color added when it has no TERM).
  void Spawn(const std::vector<std::string>& argv, const std::vector<std::string>& env = {});
  // Runs `body` in a forked child on the pty (stdin, stdout, stderr, TERM as Spawn) and
  // exits with its result.
  void Fork(const std::function<int()>& body, const std::vector<std::string>& env = {});

  // Keys by name: "F1".."F12", "Up", "Down", "Left", "Right", "Home", "End", "PgUp",
  // "PgDn", "Insert", "Delete", "Backspace", "Tab", "Enter", "Esc", "Space"; any other
  // text is typed as it stands.
  void Press(std::string_view key);
  void Type(std::string_view text);
  void Write(std::string_view bytes);  // raw bytes to the program

  // Read the program's output into the emulator for up to `ms` milliseconds.
  void Pump(int ms);
  // Bounded waits; each pumps output while it waits. True when the condition held.
  bool WaitForText(std::string_view text, int timeoutMs = 5000);
  bool WaitForNoText(std::string_view text, int timeoutMs = 5000);
  bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 5000);
  // Waits until the program's main thread sleeps in poll() with no child of its own, or in a
  // blocking read() of the terminal (curses' wgetch() without a time-out): until it waits
  // for the next key, with everything it drew sent and taken in. One curses update reaches
  // the terminal in several writes, so a test waits for this, not only for a text, before
  // it reads other parts of the screen that update drew. Programs discard keys typed
  // while a screen changes (curses' flushinp), so a test waits for this before a key it
  // means to reach the new screen, as a person waits to see it.
  bool WaitUntilPolling(int timeoutMs = 5000);
  // Waits for the child to end; true with its wait status in *status.
  bool WaitForExit(int timeoutMs, int* status);

  std::string Row(int row) const;  // the row's text, trailing blanks kept, UTF-8
  std::string Region(int row, int col, int rows, int cols) const;  // rows joined by '\n'
  std::string Screen() const;                                      // every row, joined by '\n'
  CellColors Colors(int row, int col) const;
  // Position of the first occurrence of `text` on screen; false when absent.
  bool Find(std::string_view text, int* row, int* col) const;

  size_t BytesWritten() const;  // bytes the program has written so far (pumped)
  std::string Output() const;   // the last 64 KiB of them, raw (escape sequences and all)
  // How many times each cell was written (a character put, erased or scrolled in) since
  // the last ResetCellWrites: what a key or a screen change costs a slow line.
  void ResetCellWrites();
  int CellWrites(int row, int col) const;
  pid_t Pid() const;
  void Signal(int signal);
  // Changes the pty size (TIOCSWINSZ, which also sends SIGWINCH) and the emulator's.
  void Resize(int rows, int cols);
  int Rows() const;
  int Cols() const;

  // Terminal state a program leaves behind (is the terminal restored on exit?).
  bool AltScreen() const;      // the program is on the alternate screen (smcup)
  bool CursorVisible() const;  // the cursor is shown
  void CursorPosition(int* row, int* col) const;
  int Bells() const;  // BEL characters received so far

  // The bytes Press sends for `key`; with `applicationCursorKeys` as after curses' keypad().
  static std::string KeyBytes(std::string_view key, bool applicationCursorKeys = false);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace KonuTest
