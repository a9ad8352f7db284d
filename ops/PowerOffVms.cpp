// Stopping the virtual machines before a shutdown or restart.
#include "ops/PowerOffVms.h"

#include <string>

#include "app/Runtime.h"
#include "ops/CommandRunner.h"
#include "ops/QalCmd.h"

namespace Konu {

void PowerOffVms(bool keepRunning) {
  std::string user = Runtime::Get().session.user;
  const char* autostop[] = {"qal-cmd", "-U", user.c_str(), "hostsvc/autostartmanager/autostop", nullptr};
  RunQalCmd("/bin/qal-cmd", autostop);

  const char* powerOff[] = {"powerOffVms", keepRunning ? nullptr : "--terminate", nullptr};
  RunCommand("/bin/powerOffVms", powerOff);
}

}  // namespace Konu
