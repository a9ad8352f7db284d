// Service scripts run through sh.
#include "ops/ServiceScript.h"

#include "ops/CommandRunner.h"

namespace Konu {

int RunServiceScript(const char* script, const char* action) {
  // The runner places the script's host path on this machine, as it does the program's.
  const char* argv[] = {"sh", script, action, nullptr};
  return RunCommand("/bin/sh", argv);
}

}  // namespace Konu
