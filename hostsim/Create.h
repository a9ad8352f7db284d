// Making a fresh simulated host in a directory.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace Konu::Sim {

struct CreateOptions {
  std::string root;        // the new host's directory: absent or empty
  std::string hostsimExe;  // the multi-call binary the tool wrappers exec
  std::string pamModule;   // pam_konusim.so to copy into the root ("" = beside hostsimExe)
};

// The state of a fresh host: the defaults, with root's factory password hashed afresh.
nlohmann::json FactoryHostState();

// Builds the host; throws std::runtime_error with a message naming what failed.
void CreateHost(const CreateOptions& options);

// The root path given by the operator made absolute (the directory need not exist).
std::string AbsoluteRoot(const std::string& root);

}  // namespace Konu::Sim
