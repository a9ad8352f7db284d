// DNS server address helpers of the management network model.
#include "network/NetworkModel.h"

namespace Konu {

std::string DnsServerText(const DnsServerAddress* server) {
  if (!server) return "";
  return std::visit([](const auto& address) { return address.GetStringAddress(); }, *server);
}

bool IsIpv6DnsServer(const DnsServerAddress* server) {
  return server && std::holds_alternative<HostCtl::Network::Ipv6Address>(*server);
}

bool SameDnsServer(const DnsServerAddress* a, const DnsServerAddress* b) {
  if (!a || !b) return !a && !b;
  return a->index() == b->index() && DnsServerText(a) == DnsServerText(b);
}

}  // namespace Konu
