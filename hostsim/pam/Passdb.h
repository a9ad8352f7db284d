// The password file of a simulated host's PAM stack, written from the host state.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace Konu::Sim {

// <root>/etc/konu-sim/passdb: "user:password:konu" lines for pam_matrix.
std::string PassdbPath(const std::string& root);

// Rewrites the password file from /users (service accounts and passwords that the file cannot
// hold, with ':' or a line end, are left out). Atomic: temporary file and rename.
// Throws std::runtime_error naming the file.
void WritePassdb(const std::string& root, const nlohmann::json& state);

// Whether the password file can hold this password.
bool PassdbCanHold(const std::string& password);

}  // namespace Konu::Sim
