// SamePasswordConfirmDialog: a message-box sized warning with Confirm and Cancel.
#include "screens/SamePasswordConfirmDialog.h"

#include <curses.h>

namespace Konu {
namespace {
constexpr int kWidth = 70;
constexpr int kHeight = 10;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 155;    // "Configure Password: Warning"
constexpr int kMessage = 159;  // "New password is same as old password. Are you sure?"
constexpr const char* kFooter =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}{align:right}{color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
constexpr int kEsc = 27;
}  // namespace

SamePasswordConfirmDialog::SamePasswordConfirmDialog(Frame* owner)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight) {}

int SamePasswordConfirmDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kMessage));
  SetFooter(kFooter);
  for (;;) {
    const int key = GetKey(true);
    if (key == '\n' || key == '\r' || key == KEY_ENTER) return 1;
    if (key == kEsc) return 0;
  }
}

}  // namespace Konu
