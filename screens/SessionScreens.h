// The screens a logged-in session opens from the welcome screen: the System Customization
// menu (F2) and the shutdown dialog (F12). The welcome screen knows them only through these
// two makers, so the full screens replace the plain stand-ins here without touching it.
#pragma once

#include <memory>

#include "ui/Frame.h"

namespace Konu {

// The "System Customization" menu, full-screen over `owner`; Esc leaves it (logs out).
std::unique_ptr<Frame> MakeCustomizationWindow(Frame* owner);

// The "Shut Down/Restart" dialog over `owner`; Esc leaves it.
std::unique_ptr<Frame> MakeShutdownDialog(Frame* owner);

}  // namespace Konu
