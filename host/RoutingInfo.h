// Default gateways (IPv4 and IPv6) of one TCP/IP stack.
#pragma once

#include "host/Ipv4Address.h"
#include "host/Ipv6Address.h"

namespace HostCtl::Network {

class RoutingInfo {
 public:
  virtual ~RoutingInfo() = default;
  RoutingInfo() = default;
  RoutingInfo(const RoutingInfo&) = delete;
  RoutingInfo& operator=(const RoutingInfo&) = delete;

  // 0.0.0.0 / "::" when there is no default route.
  virtual Ipv4Address GetNuKernelDefaultGateway() const = 0;
  virtual Ipv6Address GetIpv6NuKernelDefaultGateway() const = 0;
  // The flag is passed on as the screens give it (false).
  virtual void SetNuKernelDefaultGateway(const Ipv4Address& gateway, bool flag) = 0;
  virtual void SetIpv6NuKernelDefaultGateway(const Ipv6Address& gateway) = 0;
};

}  // namespace HostCtl::Network
