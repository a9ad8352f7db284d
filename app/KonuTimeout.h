// Thrown by Frame::GetKey when a logged-in session has been idle for its time-out; caught
// by the welcome screen, which logs the user out.
#pragma once

namespace Konu {
struct KonuTimeout {};
}  // namespace Konu
