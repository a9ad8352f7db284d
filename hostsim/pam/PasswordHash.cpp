// Password hashes of a simulated host, made and checked with libcrypt.
#include "hostsim/pam/PasswordHash.h"

#include <crypt.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace Konu::Sim {
namespace {

// libcrypt's work area is large; one per call keeps the functions reentrant.
struct CryptArea {
  crypt_data data{};
  ~CryptArea() { explicit_bzero(&data, sizeof data); }
};

}  // namespace

std::string HashPassword(const std::string& password) {
  char salt[CRYPT_GENSALT_OUTPUT_SIZE];
  // Null random bytes: libcrypt takes them from the kernel.
  if (crypt_gensalt_rn("$6$", 0, nullptr, 0, salt, sizeof salt) == nullptr)
    throw std::runtime_error(std::string("cannot make a password salt: ") + std::strerror(errno));
  CryptArea area;
  const char* hash = crypt_r(password.c_str(), salt, &area.data);
  if (hash == nullptr || hash[0] != '$')
    throw std::runtime_error(std::string("cannot hash the password: ") + std::strerror(errno));
  return hash;
}

bool PasswordMatches(const std::string& hash, const std::string& password) {
  if (hash.empty() || hash[0] != '$') return false;
  CryptArea area;
  const char* computed = crypt_r(password.c_str(), hash.c_str(), &area.data);
  if (computed == nullptr || std::strlen(computed) != hash.size()) return false;
  // Compare every byte, whatever the first difference.
  unsigned char differ = 0;
  for (size_t i = 0; i < hash.size(); ++i) differ |= static_cast<unsigned char>(computed[i] ^ hash[i]);
  return differ == 0;
}

}  // namespace Konu::Sim
