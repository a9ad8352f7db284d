// IP configuration value: mode switches and the IPv6 address list.
#include "host/IpConfig.h"

#include <algorithm>

namespace HostCtl::Network {

void IpConfig::SetUseDhcp(bool useDhcp) {
  useDhcp_ = useDhcp;
  if (useDhcp) ipv4UseNone_ = false;
}

void IpConfig::SetUseDhcp(bool useDhcp, bool useNone) {
  useDhcp_ = useDhcp;
  ipv4UseNone_ = !useDhcp && useNone;
}

void IpConfig::SetIpv4UseNone(bool useNone) {
  ipv4UseNone_ = useNone;
  if (useNone) useDhcp_ = false;
}

void IpConfig::AddIpv6Network(const Ipv6Network& network) {
  for (auto& existing : ipv6Networks_) {
    if (existing.GetAddress().GetBinaryAddress() == network.GetAddress().GetBinaryAddress() &&
        existing.GetPrefixLength() == network.GetPrefixLength()) {
      existing = network;
      return;
    }
  }
  ipv6Networks_.push_back(network);
}

bool IpConfig::RemoveIpv6Network(const Ipv6Address& address) {
  auto before = ipv6Networks_.size();
  std::erase_if(ipv6Networks_, [&](const Ipv6Network& n) {
    return n.GetAddress().GetBinaryAddress() == address.GetBinaryAddress();
  });
  return ipv6Networks_.size() != before;
}

}  // namespace HostCtl::Network
