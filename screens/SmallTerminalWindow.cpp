// SmallTerminalWindow: the one line that says which size the console needs.
#include "screens/SmallTerminalWindow.h"

#include <curses.h>
#include <syslog.h>

#include <string>

#include "host/Log.h"

namespace Konu {

bool TerminalTooSmall() { return COLS < kSmallestColumns || LINES < kSmallestRows; }

SmallTerminalWindow::SmallTerminalWindow() : Frame(nullptr, 0, 0, COLS, LINES, 0, 7) {
  Log(LOG_WARNING, "Terminal is %dx%d, smaller than %dx%d: showing only the size needed", COLS, LINES,
      kSmallestColumns, kSmallestRows);
  // The size needed comes first, so a narrow terminal still shows it; what does not fit
  // wraps onto the rows below. Centred by position: a centred alignment would break up the
  // words it wraps.
  const std::string text = "KONU needs at least " + std::to_string(kSmallestColumns) + "x" +
                           std::to_string(kSmallestRows) + " (this terminal: " + std::to_string(COLS) + "x" +
                           std::to_string(LINES) + ")";
  const int length = static_cast<int>(text.size());
  const int column = length < COLS ? (COLS - length) / 2 : 0;
  const int row = LINES / 2;
  line_ = std::make_unique<TextArea>(this, column, row, COLS - column, LINES - row, 7);
  Update();
  line_->SetText(text);
}

SmallTerminalWindow::~SmallTerminalWindow() = default;

int SmallTerminalWindow::EventLoop() {
  for (;;) {
    (void)GetKey(false);  // no screen to give a key to
  }
}

}  // namespace Konu
