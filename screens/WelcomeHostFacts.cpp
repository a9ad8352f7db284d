// The welcome screen's host reads: management interface, IPv6, host name, adapters, audit
// mode and hardware.
#include "screens/WelcomeHostFacts.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"

namespace Konu {
namespace {

using HostCtl::Lib::HostCtlException;

void LogReadFailure(const char* what, const HostCtlException& e) {
  Log(LOG_ERR, "Could not read %s: %s", what, e.what());
}

// The interface's part of the facts; all false or empty without one.
void ReadInterface(HostCtl::Network::NetworkInfo& info, ManagementFacts& facts) {
  info.UpdateManagementInterface();
  std::unique_ptr<HostCtl::Network::NukNic> nic = info.GetManagementInterface();
  if (!nic) return;
  if (nic->IsStale()) nic->Refresh();
  const HostCtl::Network::IpConfig configured = nic->GetConfiguredIpConfig();
  const HostCtl::Network::IpConfig current = nic->GetCurrentIpConfig();
  facts.useDhcp = configured.GetUseDhcp();
  facts.ipv4Disabled = configured.GetIpv4UseNone();
  facts.ipv4Address = current.GetIpv4Address().GetStringAddress();
  facts.ipv6Networks = current.GetIpv6Network();
}

}  // namespace

ManagementFacts ReadManagementFacts(HostCtl::Network::DnsConfig& dns) {
  ManagementFacts facts;
  const HostCtl::Host& host = Runtime::Get().Host();
  std::unique_ptr<HostCtl::Network::NetworkInfo> info;
  try {
    info = host.CreateNetworkInfo();
  } catch (const HostCtlException& e) {
    LogReadFailure("the network information", e);
    return facts;
  }
  try {
    ReadInterface(*info, facts);
  } catch (const HostCtlException& e) {
    facts = ManagementFacts();
    LogReadFailure("the management interface", e);
  }
  try {
    facts.ipv6Enabled = info->IsNukIpv6Enabled();
  } catch (const HostCtlException& e) {
    LogReadFailure("whether IPv6 is enabled", e);
  }
  try {
    dns.Refresh();
    facts.hostname = dns.GetHostname();
  } catch (const HostCtlException& e) {
    LogReadFailure("the host name", e);
  }
  try {
    facts.hasPhysicalNic = !info->GetPnics().empty();
  } catch (const HostCtlException& e) {
    LogReadFailure("the physical network adapters", e);  // counted as present: no false alert
  }
  return facts;
}

bool ReadAuditMode() {
  try {
    std::vector<uint8_t> option = Runtime::Get().Host().CreateSysinfoUtil()->SysinfoGet(
        HostCtl::BootOptionRecord::kNode, HostCtl::BootOptionRecord::kSize);
    return !option.empty() && option[0] == 1;
  } catch (const HostCtlException&) {
    return false;  // no boot option, no audit warning
  }
}

HostCtl::Hardware ReadHardware() {
  try {
    return Runtime::Get().Host().CreateHardwareInfo()->GetHardware();
  } catch (const HostCtlException& e) {
    LogReadFailure("the hardware information", e);
    return HostCtl::Hardware();
  }
}

std::string ManagementAddress() {
  try {
    std::unique_ptr<HostCtl::Network::NetworkInfo> info = Runtime::Get().Host().CreateNetworkInfo();
    ManagementFacts facts;
    ReadInterface(*info, facts);
    if (!facts.ipv4Disabled) return facts.ipv4Address;
    for (const HostCtl::Network::Ipv6Network& network : facts.ipv6Networks) {
      if (!network.GetAddress().IsLinkLocal()) return network.GetStringAddress();
    }
  } catch (const HostCtlException& e) {
    LogReadFailure("the management address", e);
  }
  return "";
}

}  // namespace Konu
