// Service scripts run through sh, their paths under the host root.
#include "ops/ServiceScript.h"

#include <string>

#include "host/HostRoot.h"
#include "ops/CommandRunner.h"

namespace Konu {

int RunServiceScript(const char* script, const char* action) {
  const std::string path = HostPath(script);  // sh does not know the host root
  const char* argv[] = {"sh", path.c_str(), action, nullptr};
  return RunCommand("/bin/sh", argv);
}

}  // namespace Konu
