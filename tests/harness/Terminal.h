// A pseudo-terminal of a given size whose output is decoded by a terminal emulator
// (libvterm), so tests read the screen back as a person sees it: text by row or region,
// colours by cell. The program under test is either an executable (Spawn) or a function
// run in a forked child whose terminal is the pty (Fork), for in-process curses tests.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KonuTest {

// Colours of one cell as palette indexes (-1 = the terminal's default colour).
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
  // Waits for the child to end; true with its wait status in *status.
  bool WaitForExit(int timeoutMs, int* status);

  std::string Row(int row) const;  // the row's text, trailing blanks kept, UTF-8
  std::string Region(int row, int col, int rows, int cols) const;  // rows joined by '\n'
  std::string Screen() const;  // every row, joined by '\n'
  CellColors Colors(int row, int col) const;
  // Position of the first occurrence of `text` on screen; false when absent.
  bool Find(std::string_view text, int* row, int* col) const;

  size_t BytesWritten() const;  // bytes the program has written so far (pumped)
  pid_t Pid() const;
  void Signal(int signal);
  // Changes the pty size (TIOCSWINSZ, which also sends SIGWINCH) and the emulator's.
  void Resize(int rows, int cols);
  int Rows() const;
  int Cols() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace KonuTest
