// The host root. Every absolute host path (tools, pid file, marker file, logs, certificates,
// "/dev/console") is resolved here: "/" on the real host, a directory for a simulated host.
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

// An absolute host path ("/var/run/konu.pid") as a path on this machine.
std::string HostPath(std::string_view absolutePath);

}  // namespace Konu
