// A plain stand-in for the System Customization menu: a titled screen that only Esc leaves,
// reading keys with the session's idle time-out like every screen inside a session.
#include "screens/SessionScreens.h"

#include <curses.h>

#include "ui/TextArea.h"

namespace Konu {
namespace {

constexpr int kEsc = 27;

class CustomizationStandIn : public Frame {
 public:
  explicit CustomizationStandIn(Frame* owner) : Frame(owner, 0, 0, COLS, LINES, 0, 7) {
    if (Curses()) {
      werase(Curses());
      box(Curses(), 0, 0);
    }
    title_ = std::make_unique<TextArea>(this, 3, 1, COLS - 6, 1, 7);
    footer_ = std::make_unique<TextArea>(this, 2, LINES - 2, COLS - 4, 1, 2);
    title_->SetText("System Customization");
    footer_->SetText("{align:right}<Esc> Log Out{/align}");
  }

  int EventLoop() override {
    while (GetKey(true) != kEsc) {
    }
    return 0;
  }

 private:
  std::unique_ptr<TextArea> title_;
  std::unique_ptr<TextArea> footer_;
};

}  // namespace

std::unique_ptr<Frame> MakeCustomizationWindow(Frame* owner) {
  return std::make_unique<CustomizationStandIn>(owner);
}

}  // namespace Konu
