// The address entries of the management network screen: dialog, comparison, model update.
#include "network/AddressDialogs.h"

#include "network/DNSConfigurationDialog.h"
#include "network/IPConfigurationDialog.h"
#include "network/IPv6ConfigurationDialog.h"
#include "network/SuffixesDialog.h"

namespace Konu {

int EditIpv4(Frame* owner, NetworkModel& model) {
  HostCtl::Network::IpConfig applied = model.appliedConfig;
  HostCtl::Network::IpConfig pending = model.pendingConfig;
  IPConfigurationDialog dialog(owner, applied, pending);
  if (dialog.RunModal() == 0) return 0;
  if (applied != model.appliedConfig || pending != model.pendingConfig) {
    model.appliedConfig = applied;
    model.pendingConfig = pending;
    model.changed = true;
  }
  return 1;
}

int EditIpv6(Frame* owner, NetworkModel& model) {
  HostCtl::Network::IpConfig applied = model.appliedConfig;
  HostCtl::Network::IpConfig pending = model.pendingConfig;
  IPv6ConfigurationDialog dialog(owner, applied, pending, model.ipv6Enabled);
  if (dialog.RunModal() == 0) return 0;
  if (dialog.Enabled() != model.ipv6Enabled ||
      pending.GetUseIpv6Dhcp() != model.pendingConfig.GetUseIpv6Dhcp() ||
      pending.GetUseIpv6RouterAdvertised() != model.pendingConfig.GetUseIpv6RouterAdvertised())
    model.changed = true;
  model.ipv6Enabled = dialog.Enabled();
  model.appliedConfig = applied;
  model.pendingConfig = pending;
  if (dialog.GatewayChanged()) model.ipv6GatewayChanged = true;
  return 1;
}

int EditDns(Frame* owner, NetworkModel& model) {
  DNSConfigurationDialog dialog(owner, model.pendingConfig.GetDhcpDns(), model.primaryDnsServer.get(),
                                model.alternateDnsServer.get(), model.hostname);
  if (dialog.RunModal() == 0) return 0;
  if (dialog.DhcpDns() != model.pendingConfig.GetDhcpDns() ||
      !SameDnsServer(dialog.Primary(), model.primaryDnsServer.get()) ||
      !SameDnsServer(dialog.Alternate(), model.alternateDnsServer.get()) ||
      dialog.Hostname() != model.hostname) {
    model.pendingConfig.SetDhcpDns(dialog.DhcpDns());
    model.primaryDnsServer = dialog.TakePrimary();
    model.alternateDnsServer = dialog.TakeAlternate();
    model.hostname = dialog.Hostname();
    model.changed = true;
  }
  return 1;
}

int EditSuffixes(Frame* owner, NetworkModel& model) {
  SuffixesDialog dialog(owner, model.suffixes);
  if (dialog.RunModal() == 0) return 0;
  if (dialog.Suffixes() != model.suffixes) {
    model.suffixes = dialog.Suffixes();
    model.changed = true;
  }
  return 1;
}

}  // namespace Konu
