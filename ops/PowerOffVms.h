// Stopping the virtual machines before the host shuts down or restarts.
#pragma once

namespace Konu {

// Asks the host's auto-start manager to stop its machines (qal-cmd as the logged-in
// user), then runs "/bin/powerOffVms", with "--terminate" unless `keepRunning` (running
// machines are not to be terminated forcibly). Results are ignored.
void PowerOffVms(bool keepRunning);

}  // namespace Konu
