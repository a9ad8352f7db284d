// The screen a session opens with F2: the System Customization menu.
#include "screens/SessionScreens.h"

#include "screens/GeneralWindow.h"

namespace Konu {

std::unique_ptr<Frame> MakeCustomizationWindow(Frame* owner) {
  return std::make_unique<GeneralWindow>(owner);
}

}  // namespace Konu
