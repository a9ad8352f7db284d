// The host root. Every absolute host path (tools, pid file, marker file, logs, certificates,
// "/dev/console") is resolved here: a directory for a simulated host; on the real host the
// backend's path map places each one at its home on this machine.
#pragma once

#include <string>
#include <string_view>

namespace Konu {

// Sets the root for the whole process. "" or "/" is the real host; anything else is the
// directory of a simulated host (stored without a trailing slash).
void SetHostRoot(std::string_view root);

// The root as set ("/" until SetHostRoot is called).
const std::string& HostRoot();

// True when the root is not "/".
bool IsSimulatedHost();

// Where a real host keeps the document's paths. Set once at start-up by the program that
// picks the backend; without one a real host path is used as it is.
class HostPathMap {
 public:
  virtual ~HostPathMap() = default;
  virtual std::string Resolve(std::string_view absolutePath) const = 0;
  // The PATH the host's tools are found on by the children of the console.
  virtual std::string ToolSearchPath() const = 0;
};
void SetHostPathMap(const HostPathMap* map);

// An absolute host path ("/var/run/konu.pid") as a path on this machine.
std::string HostPath(std::string_view absolutePath);

// The PATH the console's children get: the simulated host's tool folders, the real host's
// tool folder alone, or "" (the shell's default) without a map.
std::string HostToolSearchPath();

}  // namespace Konu
