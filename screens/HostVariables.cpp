// Providers of the host variables: the management address and the memory size read from
// the host, the fingerprints taken with the host's tools once and kept.
#include "screens/HostVariables.h"

#include <syslog.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
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

// The host's support facts, read once at their first use; empty (logged) when the host
// cannot give them.
const HostCtl::SupportFacts& HostSupportFacts() {
  static const HostCtl::SupportFacts facts = [] {
    try {
      return Runtime::Get().Host().CreateSupportInfo()->GetSupportFacts();
    } catch (const HostCtl::Lib::HostCtlException& e) {
      Log(LOG_WARNING, "Cannot read the support facts: %s", e.what());
      return HostCtl::SupportFacts();
    }
  }();
  return facts;
}

// The product name and version of the kernel's version record; empty when it cannot be read.
const HostCtl::SystemVersionRecord& VersionRecord() {
  static const HostCtl::SystemVersionRecord record = [] {
    try {
      return HostCtl::SystemVersionRecord::Decode(Runtime::Get().Host().CreateSysinfoUtil()->SysinfoGet(
          HostCtl::SystemVersionRecord::kNode, HostCtl::SystemVersionRecord::kSize));
    } catch (const HostCtl::Lib::HostCtlException& e) {
      Log(LOG_WARNING, "Cannot read the version record: %s", e.what());
      return HostCtl::SystemVersionRecord();
    }
  }();
  return record;
}

// The support variables and where each one's value is.
struct SupportVariable {
  const char* name;
  std::string HostCtl::SupportFacts::*fact;
};
constexpr SupportVariable kSupportVariables[] = {
    {"supportstart", &HostCtl::SupportFacts::supportStart},
    {"supportperiod", &HostCtl::SupportFacts::supportPeriod},
    {"servicetag", &HostCtl::SupportFacts::serviceTag},
    {"assettag", &HostCtl::SupportFacts::assetTag},
    {"BIOSversion", &HostCtl::SupportFacts::biosVersion},
    {"BMCversion", &HostCtl::SupportFacts::bmcVersion},
    {"CPLDversion", &HostCtl::SupportFacts::cpldVersion},
    {"PLSAversion", &HostCtl::SupportFacts::plsaVersion},
};

}  // namespace

void RegisterHostVariables() {
  VariableTable& table = VariableTable::Standard();
  table.SetProvider("ip", ManagementAddress);
  table.SetProvider("memory", [] { return MemorySize(ReadHardware().memoryBytes); });
  table.SetProvider("ssl-thumbprint", Cached(SslThumbprint));
  table.SetProvider("ssh-dsa-fingerprint", Cached([] { return SshKeyFingerprint(kSshDsaHostKey); }));
  table.SetProvider("ssh-rsa-fingerprint", Cached([] { return SshKeyFingerprint(kSshRsaHostKey); }));
  table.SetProvider("orinproduct", [] { return VersionRecord().productName; });
  table.SetProvider("orinversion", [] { return VersionRecord().productVersion; });
  for (const SupportVariable& variable : kSupportVariables)
    table.SetProvider(variable.name, [fact = variable.fact] { return HostSupportFacts().*fact; });
}

}  // namespace Konu
