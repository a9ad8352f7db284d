// What a terminal too small for the console's screens shows instead of them: one line with
// the size needed. It takes no keys; signals and a resize end the console as anywhere else.
#pragma once

#include <memory>

#include "ui/Frame.h"
#include "ui/TextArea.h"

namespace Konu {

// The smallest terminal every screen and dialog is drawn whole on.
constexpr int kSmallestColumns = 80;
constexpr int kSmallestRows = 24;

// True when the terminal (COLS x LINES) is below the smallest size.
bool TerminalTooSmall();

class SmallTerminalWindow : public Frame {
 public:
  // Full screen, no owner; logs the size it was started on.
  SmallTerminalWindow();
  ~SmallTerminalWindow() override;
  // Reads keys and drops them; never returns (a resize, ESC R or a signal ends the process).
  int EventLoop() override;

 private:
  std::unique_ptr<TextArea> line_;
};

}  // namespace Konu
