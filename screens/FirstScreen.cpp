// The first screen: the host variables wired, then the welcome screen for the life of the
// process.
#include "screens/FirstScreen.h"

#include <memory>

#include "screens/HostVariables.h"
#include "screens/WelcomeWindow.h"

namespace Konu {

void RunFirstScreen() {
  RegisterHostVariables();
  auto welcome = std::make_unique<WelcomeWindow>();
  welcome->RunModal();
}

}  // namespace Konu
