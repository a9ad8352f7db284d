// The hosts file set aside while the network test resolves a name, so that the answer must
// come from DNS: backed up, stripped of the host's own names, and put back when the guard goes.
#pragma once

#include <string>
#include <vector>

namespace Konu {

class HostsFileGuard {
 public:
  // Copies "/etc/hosts" to "/etc/hosts.backup", then takes `names` (compared without regard
  // to case) out of "/etc/hosts"; a line left without a name goes. A failed backup is logged
  // ("failed to backup /etc/hosts: %s") and leaves "/etc/hosts" as it is.
  explicit HostsFileGuard(const std::vector<std::string>& names);
  // Copies the backup back over "/etc/hosts" when one was made; a failure is logged
  // ("failed to restore /etc/hosts: %s"). When the console ends while a guard holds the file
  // (on the network test's worker thread), the lookup is stopped and the guard goes before the
  // process does; should the worker be left behind, the way out puts the file back instead.
  // A guard made once the console is ending sets nothing aside.
  ~HostsFileGuard();

  HostsFileGuard(const HostsFileGuard&) = delete;
  HostsFileGuard& operator=(const HostsFileGuard&) = delete;

  // The hosts file's text without `names` (exposed for its own test).
  static std::string WithoutNames(const std::string& text, const std::vector<std::string>& names);
};

}  // namespace Konu
