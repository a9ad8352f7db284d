// What the Configure Management Network screen holds between entry and exit: the applied and
// pending IP configurations, the chosen adapters, VLAN, DNS and suffixes, and its four flags.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "host/IpConfig.h"
#include "host/Ipv4Address.h"
#include "host/Ipv6Address.h"
#include "host/Ipv6Network.h"

namespace Konu {

// A DNS server address of either kind.
using DnsServerAddress = std::variant<HostCtl::Network::Ipv4Address, HostCtl::Network::Ipv6Address>;

// The address in its string form; "" for none.
std::string DnsServerText(const DnsServerAddress* server);
// True when the server is an IPv6 address.
bool IsIpv6DnsServer(const DnsServerAddress* server);
// True when both are absent, or both hold the same kind and address.
bool SameDnsServer(const DnsServerAddress* a, const DnsServerAddress* b);

struct NetworkModel {
  // Copy of the interface's configured configuration, with the default gateways written in at
  // entry; the IPv4 and IPv6 dialogs write addresses, netmask, gateways, "none" and the static
  // IPv6 list here, and the apply hands it to the interface.
  HostCtl::Network::IpConfig appliedConfig;
  // Second copy holding the operator's mode choices: IPv4 DHCP, DHCPv6, router advertisement,
  // DNS from DHCP.
  HostCtl::Network::IpConfig pendingConfig;

  // Physical NIC names in the order the operator marked them; the first gives the interface
  // its MAC address.
  std::vector<std::string> selectedAdapters;
  uint32_t maxActiveUplinks = 0;
  uint16_t vlanId = 0;  // 0 when unset

  std::string hostname;
  // The IPv6 addresses the summary pane lists.
  std::vector<HostCtl::Network::Ipv6Network> ipv6Addresses;
  // Null when there is none; the alternate slot holds the IPv6 DNS server when IPv6 is used.
  std::unique_ptr<DnsServerAddress> primaryDnsServer;
  std::unique_ptr<DnsServerAddress> alternateDnsServer;
  // As typed: names separated by blanks or commas; split only by the apply.
  std::string suffixes;

  bool changed = false;             // some dialog altered something
  bool ipv6GatewayChanged = false;  // the IPv6 dialog edited the IPv6 default gateway
  bool ipv6Enabled = false;         // pending IPv6 enablement
  bool ipv6EnabledAtEntry = false;  // the kernel's IPv6 enablement at entry, never changed
};

}  // namespace Konu
