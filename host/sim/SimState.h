// What every simulated service shares: the state file, the injected-fault check, JSON reads
// with defaults, and the translation of state-file errors into host-control errors.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "host/sim/StateFile.h"

namespace HostCtl::Sim {

// State read by this file:
//   /faults/operations/<Service>.<Operation>   message of the exception that operation throws
class SimState {
 public:
  explicit SimState(std::string root) : root_(root), file_(std::move(root)) {}

  const std::string& Root() const { return root_; }
  // An absolute host path ("/var/log/zebd.log") under the simulated root.
  std::string Path(const std::string& absolute) const;

  // Throws HostCtlException with the injected message when
  // "/faults/operations/<operation>" holds one ("NukNic.SetIpConfig").
  void CheckFault(const std::string& operation) const;
  // CheckFault, then the whole state, read-only (the file is parsed again only when it
  // changed).
  std::shared_ptr<const nlohmann::json> Read(const std::string& operation) const;
  // CheckFault, then a locked read-modify-write.
  void Update(const std::string& operation, const std::function<void(nlohmann::json&)>& change);

  // Appends one line (a newline is added) to a host file under the root, creating its folder.
  void AppendLine(const std::string& absolutePath, const std::string& line) const;

 private:
  std::string root_;
  Konu::Sim::StateFile file_;
};

// The node at the JSON pointer, or null when it is absent: what json::contains and json::at
// with a json_pointer give, in one walk and without splitting the pointer into strings (the
// welcome screen alone makes dozens of these reads). A malformed pointer throws json's
// parse_error, as json_pointer does.
const nlohmann::json* Find(const nlohmann::json& state, std::string_view pointer);

// The value at `pointer`, or `fallback` when it is absent or of another type.
template <typename T>
T ValueAt(const nlohmann::json& state, std::string_view pointer, T fallback) {
  const nlohmann::json* node = Find(state, pointer);
  if (!node) return fallback;
  try {
    return node->get<T>();
  } catch (const nlohmann::json::exception&) {
    return fallback;
  }
}

// The object or array at `pointer`, or an empty JSON value when absent.
const nlohmann::json& NodeAt(const nlohmann::json& state, std::string_view pointer);

// Escapes a key for use inside a JSON pointer ("/UserVars/X" -> "~1UserVars~1X").
std::string PointerKey(const std::string& key);

// Throws HostCtlException("<what> '<name>' not found").
[[noreturn]] void ThrowNotFound(const std::string& what, const std::string& name);

}  // namespace HostCtl::Sim
