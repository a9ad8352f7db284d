// LoginDisabledDialog: 60 x 9, the refusal and an Enter footer.
#include "screens/LoginDisabledDialog.h"

#include <curses.h>

#include "screens/HostAndDomain.h"
#include "ui/Footers.h"

namespace Konu {
namespace {
constexpr int kWidth = 60;
constexpr int kHeight = 9;
constexpr int kHeaderHeight = 6;
constexpr int kTitle = 139;    // "Authentication Denied"
constexpr int kMessage = 140;  // "Direct console access has been disabled by the administrator for "
}  // namespace

LoginDisabledDialog::LoginDisabledDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {}

int LoginDisabledDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(std::string(GetString(kMessage)) + HostAndDomain() + ".");
  SetFooter(kFooterOk);
  for (;;) {
    int key = GetKey(true);
    if (key == '\n' || key == '\r' || key == KEY_ENTER) return 0;
  }
}

}  // namespace Konu
