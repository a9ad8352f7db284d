// The machine's own commands (systemctl, virsh, localectl, journalctl, ...) run with a time
// limit: found on PATH, output captured, stopped when the limit passes.
#pragma once

#include <string>
#include <vector>

namespace HostCtl::Linux {

struct CommandResult {
  int exitCode = -1;     // the exit status, 128 + signal, or -1 when it did not run or end
  bool missing = false;  // the program is not on PATH
  bool timedOut = false;
  std::string out;  // standard output (not kept when it went to a file)
  std::string err;

  bool Ok() const { return exitCode == 0; }
};

// Runs `argv` (argv[0] looked up on PATH) with this process's environment and no input.
// Standard output goes to `outFile` when it is given, else into the result. After
// `seconds` the command is killed and the result says so.
CommandResult RunLimited(const std::vector<std::string>& argv, int seconds, const std::string& outFile = "");

// One line for the operator: "systemctl not found", "virsh timed out after 30 s", or the
// command's own error output.
std::string DescribeFailure(const std::string& program, const CommandResult& result);

}  // namespace HostCtl::Linux
