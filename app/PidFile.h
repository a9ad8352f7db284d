// The pid file: one instance writes its pid; a second leaves a live instance's file alone.
#pragma once

#include <string>

namespace Konu {

// Reads one integer from `path` (missing or unreadable = 0). If that process is alive, logs
// "Attempt to run multiple KONU instances, not updating PATH" and leaves the file; otherwise
// truncates the file and writes the own pid (decimal, no newline). Returns true when written.
bool ClaimPidFile(const std::string& path);

}  // namespace Konu
