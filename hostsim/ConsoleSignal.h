// Signals the console of a simulated host through its pid file, and nothing else.
#pragma once

#include <string>

namespace Konu::Sim {

// Sends `signal` to the pid in <root>/var/run/konu.pid, but only when that process is a konu
// run for this root: /proc/PID/cmdline starts with a program named "konu" and one of its
// arguments (or "--option=VALUE" values, or its environment values) names this root.
// Returns true when the signal was sent; otherwise `why` says why not.
bool SignalConsole(const std::string& root, int signal, std::string* why);

// The check alone, for a given pid.
bool IsConsoleOfRoot(int pid, const std::string& root, std::string* why);

}  // namespace Konu::Sim
