// The state behind a test Terminal: the pty master, the child, and the emulator reading it.
#pragma once

#include <sys/types.h>
#include <vterm.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/harness/Terminal.h"

namespace KonuTest {

struct Terminal::Impl {
  Impl(int rowCount, int colCount);
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  // Opens the pty at the terminal's size: the master is kept (non-blocking, close-on-exec),
  // the slave (close-on-exec) is returned for the child.
  int OpenPty();
  // Reads whatever the program has written, waiting up to `ms` for the first byte
  // (0: no wait). Feeds the emulator and sends its answers back. True when bytes came.
  bool ReadOnce(int ms);
  // Reads until nothing more is pending right now.
  void Drain();
  // Writes every byte to the program; keeps reading its output meanwhile so neither
  // side can block the other.
  void WriteAll(std::string_view bytes);
  // Reaps the child if it has ended (never blocks). True once it is reaped.
  bool Reap();
  // Kills the child's process group and the child, then reaps it.
  void KillAndReap();
  // True when the application asked for cursor keys in application mode (ESC O A).
  bool ApplicationCursorKeys();

  // Text of one row from `col`, `count` columns wide; `columns` (optional) receives the
  // screen column of each byte of the result.
  std::string RowText(int row, int col, int count, std::vector<int>* columns) const;
  void CheckPosition(int row, int col) const;

  static void OnOutput(const char* bytes, size_t len, void* user);
  static int OnTermProp(VTermProp prop, VTermValue* val, void* user);
  static int OnBell(void* user);
  static int OnDamage(VTermRect rect, void* user);

  int rows;
  int cols;
  int master = -1;
  pid_t pid = -1;
  bool reaped = false;
  int exitStatus = 0;
  bool hungUp = false;  // the slave side is closed: reads give EIO
  size_t bytesRead = 0;
  std::string output;  // the last kOutputKept bytes read, raw
  static constexpr size_t kOutputKept = 65536;

  VTerm* vt = nullptr;
  VTermScreen* screen = nullptr;
  std::string replies;             // the emulator's answers to the program's queries, not yet sent
  std::string* capture = nullptr;  // when set, emulator output goes here instead
  bool altScreen = false;
  bool cursorVisible = true;
  int bells = 0;
  std::vector<int> cellWrites;  // rows x cols, row by row
};

}  // namespace KonuTest
