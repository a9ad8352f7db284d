// The product line on a full screen; keys are read and ignored, signals end it.
#include "screens/ProductLineFrame.h"

#include <curses.h>

#include "screens/FirstScreen.h"

namespace Konu {

ProductLineFrame::ProductLineFrame() : Frame(nullptr, 0, 0, COLS, LINES, 0, 7) {
  text_ = std::make_unique<TextArea>(this, 2, 1, COLS - 4, LINES - 2, 7);
  text_->SetText(GetString(2));
}

int ProductLineFrame::EventLoop() {
  for (;;) GetKey(false);
}

void RunFirstScreen() {
  auto frame = std::make_unique<ProductLineFrame>();
  frame->RunModal();
}

}  // namespace Konu
