// The host's service scripts ("/etc/init.d/OrinShell", "/etc/init.d/SSH"), run through sh.
#pragma once

namespace Konu {

// RunCommand("/bin/sh", {"sh", script, action}); "status" answers 0 for a running service.
// Returns the exit code, or -1.
int RunServiceScript(const char* script, const char* action);

}  // namespace Konu
