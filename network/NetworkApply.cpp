// NetworkWindow: the apply. One pass over the fourteen steps in their fixed order; each step
// that fails is reported and the next one runs. Nothing is rolled back.
#include <syslog.h>

#include <algorithm>
#include <cctype>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/ManagementUplinks.h"
#include "network/NetworkWindow.h"
#include "ops/PowerConfirmDialog.h"

namespace Konu {
namespace {

using HostCtl::Network::Ipv4Address;
using HostCtl::Network::Ipv6Address;

bool Contains(const std::vector<std::string>& list, const std::string& name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

// The pieces between commas and white space, empty ones skipped.
std::vector<std::string> SplitSuffixes(const std::string& text) {
  std::vector<std::string> pieces;
  std::string piece;
  for (char c : text + " ") {
    if (c == ',' || std::isspace(static_cast<unsigned char>(c))) {
      if (!piece.empty()) pieces.push_back(piece);
      piece.clear();
    } else {
      piece += c;
    }
  }
  return pieces;
}

void AddNameServer(HostCtl::Network::DnsConfig& dns, const DnsServerAddress* server) {
  if (!server) return;
  if (const auto* v4 = std::get_if<Ipv4Address>(server)) {
    if (!v4->IsZero()) dns.AddNameServer(*v4);
  } else if (const auto* v6 = std::get_if<Ipv6Address>(server)) {
    if (v6->GetStringAddress() != "::") dns.AddNameServer(*v6);
  }
}

}  // namespace

void NetworkWindow::Apply() {
  HostCtl::Network::NukNic& nic = *nic_;
  HostCtl::Network::IpConfig& applied = model_.appliedConfig;
  HostCtl::Network::IpConfig& pending = model_.pendingConfig;
  const std::string name = nic.GetName();
  const std::vector<std::string>& selected = model_.selectedAdapters;

  // 1. Where the interface is plugged in.
  std::unique_ptr<HostCtl::Network::NetworkInfo> info;
  bool onDvs = false;
  try {
    info = Runtime::Get().Host().CreateNetworkInfo();
    onDvs = IsOnDistributedSwitch(*info);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Could not determine if a DVS was in use: %s", e.what());
  }

  // 2.-4. Adapters, MAC address and VLAN, on a standard switch only.
  bool uplinksChanged = false;
  bool vlanChanged = false;
  if (!onDvs) {
    ManagementUplinks uplinks(nic, VirtualSwitchInfo());
    std::string adapters = "Setting adapters to";
    for (const std::string& adapter : selected) adapters += " " + adapter;
    Log(LOG_INFO, "%s", adapters.c_str());
    std::vector<std::string> current;
    if (uplinks.GetUplinks(current)) {
      for (const std::string& uplink : current)
        if (!Contains(selected, uplink)) uplinksChanged |= uplinks.RemoveUplink(uplink);
      for (const std::string& adapter : selected)
        if (!Contains(current, adapter)) uplinksChanged |= uplinks.AddUplink(adapter);
    }
    if (!selected.empty() && (current.empty() || current.front() != selected.front()))
      Step("Setting mac address of nunic failed: ", [&] { nic.SetMacAddressFromPnic(selected.front()); });
    uint16_t vlanId = 0;
    if (uplinks.GetVlan(vlanId) && vlanId != model_.vlanId) vlanChanged = uplinks.SetVlan(model_.vlanId);
  }

  // 5. IPv4 mode and addresses, decided against what the interface holds now.
  bool ipv4Changed = false;
  bool renewIpv4Lease = false;
  Step("Setting ip configuration failed: ", [&] {
    const HostCtl::Network::IpConfig configured = nic.GetConfiguredIpConfig();
    const HostCtl::Network::IpConfig current = nic.GetCurrentIpConfig();
    if (pending.GetUseDhcp()) {
      if (!configured.GetUseDhcp()) {
        Log(LOG_INFO, "Switching to DHCP on %s", name.c_str());
        renewIpv4Lease = false;
      } else {
        renewIpv4Lease = uplinksChanged;
      }
      applied.SetUseDhcp(true);
    } else if (applied.GetIpv4UseNone()) {
      if (!current.GetIpv4Address().IsZero() || !current.GetIpv4Netmask().IsZero() ||
          configured.GetUseDhcp()) {
        Log(LOG_INFO, "Setting ipv4 configuration to none on %s", name.c_str());
        applied.SetUseDhcp(false, true);
        ipv4Changed = true;
      }
    } else if (configured.GetUseDhcp() ||
               applied.GetIpv4Address().GetBinaryAddress() != current.GetIpv4Address().GetBinaryAddress() ||
               applied.GetIpv4Netmask().GetBinaryAddress() != current.GetIpv4Netmask().GetBinaryAddress()) {
      Log(LOG_INFO, "Setting ipv4 configuration to %s %s on %s",
          applied.GetIpv4Address().GetStringAddress().c_str(),
          applied.GetIpv4Netmask().GetStringAddress().c_str(), name.c_str());
      applied.SetUseDhcp(false, false);
      ipv4Changed = true;
    }
  });

  // 6. IPv6 enablement (effective after a reboot) and modes.
  bool renewIpv6Lease = false;
  Step("Setting ipv6 configuration failed: ", [&] {
    if (!info) info = Runtime::Get().Host().CreateNetworkInfo();
    info->SetNukIpv6Enabled(model_.ipv6Enabled);
    if (model_.ipv6Enabled) {
      Log(LOG_INFO, "Setting ipv6 configuration");
      applied.SetUseIpv6Dhcp(pending.GetUseIpv6Dhcp());
      applied.SetUseIpv6RouterAdvertised(pending.GetUseIpv6RouterAdvertised());
    }
    renewIpv6Lease = uplinksChanged && model_.ipv6Enabled && pending.GetUseIpv6Dhcp() &&
                     nic.GetConfiguredIpConfig().GetUseIpv6Dhcp();
  });

  // 7. DNS from DHCP only where some DHCP is in use.
  applied.SetDhcpDns(pending.GetDhcpDns() &&
                     (applied.GetUseDhcp() || (model_.ipv6Enabled && applied.GetUseIpv6Dhcp())));
  pending.SetDhcpDns(applied.GetDhcpDns());

  // 8. The configuration itself.
  Step("Setting ip/ipv6 configuration failed: ", [&] {
    const bool wasBound = nic.GetDhcpBound();
    if (ipv4Changed) {
      Refresh();
      Update();
      Paint();  // the new address shows while the interface takes it
    }
    nic.SetIpConfig(applied);
    if (wasBound && applied.GetUseDhcp()) nic.SetDhcpBound(true);
  });

  // 9. IPv4 default gateway.
  if (!applied.GetUseDhcp()) {
    Step("Setting default gateway failed: ", [&] {
      const Ipv4Address& gateway = applied.GetIpv4Gateway();
      if (RoutingInfo().GetNuKernelDefaultGateway().GetBinaryAddress() != gateway.GetBinaryAddress() ||
          ipv4Changed) {
        Log(LOG_INFO, "Setting default gateway to %s", gateway.GetStringAddress().c_str());
        RoutingInfo().SetNuKernelDefaultGateway(gateway, false);
      }
    });
  }

  // 10. IPv6 default gateway, when the IPv6 dialog edited it.
  if (model_.ipv6Enabled && model_.ipv6GatewayChanged) {
    Step("Setting default ipv6 gateway failed: ", [&] {
      const Ipv6Address& gateway = applied.GetIpv6Gateway();
      Log(LOG_INFO, "Setting default ipv6 gateway to %s", gateway.GetScopedStringAddress().c_str());
      RoutingInfo().SetIpv6NuKernelDefaultGateway(gateway);
    });
  }

  // 11. Lease renewal after new uplinks.
  if (renewIpv4Lease || renewIpv6Lease) {
    Step("Renewing DHCP lease failed: ", [&] {
      Log(LOG_INFO, "Renew DHCP lease on %s", name.c_str());
      if (renewIpv4Lease) nic.RenewIpv4Lease();
      if (renewIpv6Lease) nic.RenewIpv6Lease();
    });
  }

  // 12. A new VLAN takes effect when the interface restarts.
  if (vlanChanged) {
    Step("Restarting management interface failed: ", [&] {
      Log(LOG_INFO, "Changed vlan, restarting management interface");
      nic.TakeDown();
      nic.Refresh();
      nic.BringUp();
    });
  }

  // 13. Host name, name servers and search domains.
  Step("Setting DNS failed: ", [&] {
    HostCtl::Network::DnsConfig& dns = DnsConfig();
    if (!pending.GetDhcpDns()) {
      Log(LOG_INFO, "Setting hostname to %s", model_.hostname.c_str());
      if (model_.hostname.find('.') != std::string::npos)
        dns.SetFqdn(model_.hostname, false, "");
      else
        dns.SetHostname(model_.hostname, false);
      Log(LOG_INFO, "Setting nameservers to %s %s", DnsServerText(model_.primaryDnsServer.get()).c_str(),
          DnsServerText(model_.alternateDnsServer.get()).c_str());
      dns.RemoveNameServers();
      AddNameServer(dns, model_.primaryDnsServer.get());
      AddNameServer(dns, model_.alternateDnsServer.get());
    }
    Log(LOG_INFO, "Setting suffixes to %s", model_.suffixes.c_str());
    dns.SetSearchDomainsString(dns.GetDomain());
    for (const std::string& suffix : SplitSuffixes(model_.suffixes)) dns.AddSearchDomain(suffix);
    dns.SaveConfig();
  });

  // 14. IPv6 enablement changes only with a host restart: VMs are powered off (not
  // terminated) and the host reboots; the dialog does not come back.
  if (model_.ipv6Enabled != model_.ipv6EnabledAtEntry) {
    RebootConfirmDialog reboot(this, true);
    reboot.RunModal();
  }
}

}  // namespace Konu
