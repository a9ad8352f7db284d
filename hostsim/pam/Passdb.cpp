// The password file of a simulated host's PAM stack, written from the host state.
#include "hostsim/pam/Passdb.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace Konu::Sim {

std::string PassdbPath(const std::string& root) { return root + "/etc/konu-sim/passdb"; }

bool PassdbCanHold(const std::string& password) {
  return password.find_first_of(":\n\r") == std::string::npos;
}

void WritePassdb(const std::string& root, const nlohmann::json& state) {
  std::string text;
  if (state.contains("users") && state["users"].is_object()) {
    for (const auto& [name, user] : state["users"].items()) {
      std::string password = user.value("password", "");
      if (user.value("serviceAccount", false) || !PassdbCanHold(name) || !PassdbCanHold(password)) continue;
      text += name + ":" + password + ":konu\n";
    }
  }
  std::string path = PassdbPath(root);
  std::string temp = path + ".tmp." + std::to_string(getpid());
  int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (fd < 0) throw std::runtime_error(temp + ": cannot create: " + std::strerror(errno));
  bool ok = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()) && fsync(fd) == 0;
  close(fd);
  if (!ok || rename(temp.c_str(), path.c_str()) != 0) {
    std::string why = std::strerror(errno);
    unlink(temp.c_str());
    throw std::runtime_error(path + ": cannot write: " + why);
  }
}

}  // namespace Konu::Sim
