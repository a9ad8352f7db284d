// Providers of the host variables: the management address and the memory size read from
// the host, the fingerprints taken with the host's tools once and kept.
#include "screens/HostVariables.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "ops/HostFingerprints.h"
#include "screens/WelcomeFacts.h"
#include "screens/WelcomeHostFacts.h"
#include "ui/MarkupTables.h"

namespace Konu {
namespace {

// A provider that asks `source` once, at its first use, and then answers from memory. A
// layout pass calls providers on every draw, so tool runs must not repeat.
VariableProvider Cached(std::function<std::string()> source) {
  auto value = std::make_shared<std::optional<std::string>>();
  return [value, source = std::move(source)]() -> std::string {
    if (!*value) *value = source();
    return **value;
  };
}

}  // namespace

void RegisterHostVariables() {
  VariableTable& table = VariableTable::Standard();
  table.SetProvider("ip", ManagementAddress);
  table.SetProvider("memory", [] { return MemorySize(ReadHardware().memoryBytes); });
  table.SetProvider("ssl-thumbprint", Cached(SslThumbprint));
  table.SetProvider("ssh-dsa-fingerprint", Cached([] { return SshKeyFingerprint(kSshDsaHostKey); }));
  table.SetProvider("ssh-rsa-fingerprint", Cached([] { return SshKeyFingerprint(kSshRsaHostKey); }));
}

}  // namespace Konu
