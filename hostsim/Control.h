// The control command of a simulated host: get, set, unset, password, card, dvs, journal.
#pragma once

#include <string>
#include <vector>

namespace Konu::Sim {

// Exit codes of konu-hostsim itself (tools return their own).
enum ControlExit { kControlOk = 0, kControlFailed = 1, kControlUsage = 2 };

// args: everything after "--root DIR". Output to stdout, errors to stderr.
int RunControl(const std::string& root, const std::vector<std::string>& args);

}  // namespace Konu::Sim
