// The screen a logged-in session opens from the welcome screen with F2: the System
// Customization menu. The welcome screen knows it only through this maker.
#pragma once

#include <memory>

#include "ui/Frame.h"

namespace Konu {

// The "System Customization" menu, full-screen over `owner`; Esc leaves it (logs out).
std::unique_ptr<Frame> MakeCustomizationWindow(Frame* owner);

}  // namespace Konu
