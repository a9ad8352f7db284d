// The session's screens: the System Customization menu, and a plain stand-in for the
// shutdown dialog (a titled dialog that only Esc leaves).
#include "screens/SessionScreens.h"

#include <curses.h>

#include "screens/GeneralWindow.h"
#include "ui/Dialog.h"

namespace Konu {
namespace {

constexpr int kEsc = 27;
constexpr uint32_t kShutdownTitleId = 1;  // "Shut Down/Restart"

class ShutdownStandIn : public Dialog {
 public:
  explicit ShutdownStandIn(Frame* owner) : Dialog(owner, 60, 9, 5) {}

  int EventLoop() override {
    SetTitle(GetString(kShutdownTitleId));
    SetFooter("{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}");
    while (GetKey(true) != kEsc) {
    }
    return 0;
  }
};

}  // namespace

std::unique_ptr<Frame> MakeCustomizationWindow(Frame* owner) {
  return std::make_unique<GeneralWindow>(owner);
}

std::unique_ptr<Frame> MakeShutdownDialog(Frame* owner) { return std::make_unique<ShutdownStandIn>(owner); }

}  // namespace Konu
