// Password hashes of a simulated host: the state keeps crypt(3) hashes, never passwords.
#pragma once

#include <string>

namespace Konu::Sim {

// A fresh sha512-crypt hash ("$6$salt$...") of `password` with a random salt. Throws
// std::runtime_error when libcrypt cannot make one.
std::string HashPassword(const std::string& password);

// Whether `password` hashes to `hash`. A value that is not a crypt hash (empty, or a
// password stored in clear by an older host) matches nothing.
bool PasswordMatches(const std::string& hash, const std::string& password);

}  // namespace Konu::Sim
