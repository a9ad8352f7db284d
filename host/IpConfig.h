// The IP configuration of a virtual NIC: IPv4 mode and addresses, IPv6 modes, addresses and
// gateway, and whether DNS comes from DHCP. A plain value: copying it touches no host.
#pragma once

#include <vector>

#include "host/Ipv4Address.h"
#include "host/Ipv6Address.h"
#include "host/Ipv6Network.h"

namespace HostCtl::Network {

class IpConfig {
 public:
  // IPv4 mode: DHCP, none, or static (neither).
  bool GetUseDhcp() const { return useDhcp_; }
  // DHCP on or off; off leaves the "none" flag as it is.
  void SetUseDhcp(bool useDhcp);
  // DHCP on or off and, when off, whether IPv4 is "none" (true) or static (false).
  void SetUseDhcp(bool useDhcp, bool useNone);
  bool GetIpv4UseNone() const { return ipv4UseNone_; }
  // Marks IPv4 "none" (and DHCP off) or clears the flag.
  void SetIpv4UseNone(bool useNone = true);

  const Ipv4Address& GetIpv4Address() const { return ipv4Address_; }
  void SetIpv4Address(const Ipv4Address& address) { ipv4Address_ = address; }
  const Ipv4Address& GetIpv4Netmask() const { return ipv4Netmask_; }
  void SetIpv4Netmask(const Ipv4Address& netmask) { ipv4Netmask_ = netmask; }
  const Ipv4Address& GetIpv4Gateway() const { return ipv4Gateway_; }
  void SetIpv4Gateway(const Ipv4Address& gateway) { ipv4Gateway_ = gateway; }

  bool GetUseIpv6Dhcp() const { return useIpv6Dhcp_; }
  void SetUseIpv6Dhcp(bool on) { useIpv6Dhcp_ = on; }
  bool GetUseIpv6RouterAdvertised() const { return useIpv6RouterAdvertised_; }
  void SetUseIpv6RouterAdvertised(bool on) { useIpv6RouterAdvertised_ = on; }

  // The IPv6 addresses, in the interface's order.
  const std::vector<Ipv6Network>& GetIpv6Network() const { return ipv6Networks_; }
  // Appends, unless the same address and prefix is already listed (then the entry is updated).
  void AddIpv6Network(const Ipv6Network& network);
  // Removes entries with that address; answers whether one was removed.
  bool RemoveIpv6Network(const Ipv6Address& address);
  void ClearIpv6Networks() { ipv6Networks_.clear(); }

  const Ipv6Address& GetIpv6Gateway() const { return ipv6Gateway_; }
  void SetIpv6Gateway(const Ipv6Address& gateway) { ipv6Gateway_ = gateway; }

  bool GetDhcpDns() const { return dhcpDns_; }
  void SetDhcpDns(bool on) { dhcpDns_ = on; }

  friend bool operator==(const IpConfig&, const IpConfig&) = default;

 private:
  bool useDhcp_ = false;
  bool ipv4UseNone_ = false;
  Ipv4Address ipv4Address_;
  Ipv4Address ipv4Netmask_;
  Ipv4Address ipv4Gateway_;
  bool useIpv6Dhcp_ = false;
  bool useIpv6RouterAdvertised_ = false;
  std::vector<Ipv6Network> ipv6Networks_;
  Ipv6Address ipv6Gateway_;
  bool dhcpDns_ = false;
};

}  // namespace HostCtl::Network
