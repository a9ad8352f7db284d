// Simulated default gateways of a TCP/IP stack.
//
// State read and written (JSON pointers):
//   /network/routing/<stack>/{ipv4Gateway, ipv6Gateway}   texts ("" or absent = no gateway)
#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {

using nlohmann::json;

Network::Ipv4Address SimRoutingInfo::GetNuKernelDefaultGateway() const {
  Network::Ipv4Address gateway;
  gateway.SetAddress(ValueAt<std::string>(*state_.Read("RoutingInfo.GetNuKernelDefaultGateway"),
                                          Routing() + "/ipv4Gateway", ""));
  return gateway;
}

Network::Ipv6Address SimRoutingInfo::GetIpv6NuKernelDefaultGateway() const {
  Network::Ipv6Address gateway;
  gateway.SetAddress(ValueAt<std::string>(*state_.Read("RoutingInfo.GetIpv6NuKernelDefaultGateway"),
                                          Routing() + "/ipv6Gateway", ""));
  return gateway;
}

void SimRoutingInfo::SetNuKernelDefaultGateway(const Network::Ipv4Address& gateway, bool) {
  state_.Update("RoutingInfo.SetNuKernelDefaultGateway", [&](json& state) {
    state[json::json_pointer(Routing() + "/ipv4Gateway")] =
        gateway.IsZero() ? "" : gateway.GetStringAddress();
  });
}

void SimRoutingInfo::SetIpv6NuKernelDefaultGateway(const Network::Ipv6Address& gateway) {
  if (gateway.IsLinkLocal() && gateway.GetZone().empty())
    throw Lib::HostCtlException("Link-local gateway " + gateway.GetStringAddress() +
                                " needs an interface zone");
  state_.Update("RoutingInfo.SetIpv6NuKernelDefaultGateway", [&](json& state) {
    state[json::json_pointer(Routing() + "/ipv6Gateway")] =
        gateway.IsUnspecified() ? "" : gateway.GetScopedStringAddress();
  });
}

}  // namespace HostCtl::Sim
