// Injected faults of a simulated host: tool runs that fail or hang, operations that throw.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace Konu::Sim {

struct ToolFault {
  std::string key;  // the entry's name under /faults/tools
  int exitCode = 1;
  std::string out;
  std::string err;
  bool hang = false;
  bool ignoreHangup = false;  // a hanging run that only SIGKILL ends (SIGHUP ignored)
};

// The entry of /faults/tools whose words all occur in `argv` in their order, the first word
// being argv[0]; with several, the one with the most words (then the first in key order).
std::optional<std::string> MatchingFaultKey(const nlohmann::json& state,
                                            const std::vector<std::string>& argv);

// Takes the matching fault out of the state for one use: an entry with "times" counts down
// and disappears at zero. Returns nothing when no entry matches.
std::optional<ToolFault> TakeToolFault(nlohmann::json& state, const std::vector<std::string>& argv);

// What the host operation "<Service>.<Operation>" is made to throw
// (/faults/operations/<Service>.<Operation>), or nothing. A message is thrown as the host
// library's own error; {"unexpected": message} as a standard exception that is not, as a
// library lets one through (out of memory, a failed thread start). An entry {"hang": true}
// throws nothing: see OperationHangs.
struct OperationFailure {
  std::string message;
  bool unexpected = false;
};
std::optional<OperationFailure> OperationFault(const nlohmann::json& state,
                                               const std::string& serviceDotOperation);

// True when the operation's entry is {"hang": true}: an operation that can be given up (a
// name lookup) then waits until it is.
bool OperationHangs(const nlohmann::json& state, const std::string& serviceDotOperation);

}  // namespace Konu::Sim
