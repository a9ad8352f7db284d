// IPv6 address-with-prefix parsing and its scope.
#include "host/Ipv6Network.h"

#include <cctype>

#include "host/HostCtlException.h"

namespace HostCtl::Network {
namespace {

bool Parse(const std::string& text, Ipv6Address* address, unsigned* prefix) {
  auto slash = text.rfind('/');
  if (slash == std::string::npos) return false;
  std::string length = text.substr(slash + 1);
  if (length.empty() || length.size() > 3) return false;
  unsigned value = 0;
  for (unsigned char c : length) {
    if (!std::isdigit(c)) return false;
    value = value * 10 + (c - '0');
  }
  if (value > 128) return false;
  Ipv6Address parsed;
  if (!parsed.SetAddress(text.substr(0, slash))) return false;
  *address = parsed;
  *prefix = value;
  return true;
}

}  // namespace

Ipv6Network::Ipv6Network(Ipv6Address address, unsigned prefixLength, Ipv6AddressType type, Ipv6Scope scope)
    : address_(std::move(address)), type_(type), scope_(scope) {
  SetPrefixLength(prefixLength);
}

bool Ipv6Network::IsValidAddressAndNetmask(const std::string& text) {
  Ipv6Address address;
  unsigned prefix;
  return Parse(text, &address, &prefix);
}

bool Ipv6Network::SetAddressAndNetmask(const std::string& text) {
  Ipv6Address address;
  unsigned prefix;
  if (!Parse(text, &address, &prefix)) return false;
  address_ = address;
  prefixLength_ = prefix;
  return true;
}

Ipv6Scope Ipv6Network::ScopeOf(const Ipv6Address& address) {
  const auto& b = address.GetBinaryAddress();
  if (address.IsLinkLocal()) return Ipv6Scope::kLink;
  if (b[0] == 0xfe && (b[1] & 0xc0) == 0xc0) return Ipv6Scope::kSite;
  bool loopback = b[15] == 1;
  for (size_t i = 0; i < 15 && loopback; ++i) loopback = b[i] == 0;
  if (loopback || address.IsUnspecified()) return Ipv6Scope::kNode;
  if (b[0] == 0xff) {
    switch (b[1] & 0x0f) {
      case 1:
        return Ipv6Scope::kNode;
      case 2:
        return Ipv6Scope::kLink;
      case 5:
        return Ipv6Scope::kSite;
      default:
        return Ipv6Scope::kGlobal;
    }
  }
  return Ipv6Scope::kGlobal;
}

void Ipv6Network::SetPrefixLength(unsigned prefixLength) {
  if (prefixLength > 128)
    throw Lib::HostCtlException("Invalid IPv6 prefix length " + std::to_string(prefixLength));
  prefixLength_ = prefixLength;
}

std::string Ipv6Network::GetStringNetwork() const {
  return address_.GetScopedStringAddress() + "/" + std::to_string(prefixLength_);
}

}  // namespace HostCtl::Network
