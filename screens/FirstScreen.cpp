// The first screen: the host variables wired, then the welcome screen for the life of the
// process, or on a terminal too small for it only the size it needs.
#include "screens/FirstScreen.h"

#include <memory>

#include "screens/HostVariables.h"
#include "screens/SmallTerminalWindow.h"
#include "screens/WelcomeWindow.h"

namespace Konu {

void RunFirstScreen() {
  if (TerminalTooSmall()) {
    // Nothing that cannot be drawn whole may take keys (a password typed into a form that
    // is not there): until the terminal is resized, which ends the console, only this.
    SmallTerminalWindow().RunModal();
    return;
  }
  RegisterHostVariables();
  auto welcome = std::make_unique<WelcomeWindow>();
  welcome->RunModal();
}

}  // namespace Konu
