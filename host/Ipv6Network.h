// An IPv6 address with its prefix length, address type and scope, as an interface holds it.
#pragma once

#include <string>

#include "host/Ipv6Address.h"

namespace HostCtl::Network {

// How the interface came by the address. The numbers are the library's: the screens store
// static addresses as type 0 and the restart dialog lists only type 0.
enum class Ipv6AddressType : int {
  kStatic = 0,    // shown as "STATIC"
  kDhcp = 1,      // from DHCPv6, shown as "DHCP"
  kAutoconf = 2,  // from router advertisement, shown as "AUTOCONF"
  kOther = 3,     // anything else (link-local, temporary, ...): no mark
};

// Reach of the address; scope 1 is link-local and is never listed after a restart.
enum class Ipv6Scope : int {
  kNode = 0,
  kLink = 1,
  kSite = 2,
  kGlobal = 3,
};

class Ipv6Network {
 public:
  Ipv6Network() = default;
  Ipv6Network(Ipv6Address address, unsigned prefixLength, Ipv6AddressType type = Ipv6AddressType::kStatic,
              Ipv6Scope scope = Ipv6Scope::kGlobal);

  // "address/prefix" with a prefix length 0..128; the address may carry a zone.
  static bool IsValidAddressAndNetmask(const std::string& text);
  // Transactional parse of "address/prefix"; on failure returns false and changes nothing.
  // Type and scope are kept.
  bool SetAddressAndNetmask(const std::string& text);
  // The scope an address would have on the wire (link for fe80::/10, node for ::1, ...).
  static Ipv6Scope ScopeOf(const Ipv6Address& address);

  const Ipv6Address& GetAddress() const { return address_; }
  void SetAddress(const Ipv6Address& address) { address_ = address; }
  unsigned GetPrefixLength() const { return prefixLength_; }
  // Throws HostCtl::Lib::HostCtlException above 128.
  void SetPrefixLength(unsigned prefixLength);
  Ipv6AddressType GetIpv6AddressType() const { return type_; }
  void SetIpv6AddressType(Ipv6AddressType type) { type_ = type; }
  Ipv6Scope GetIpv6Scope() const { return scope_; }
  void SetIpv6Scope(Ipv6Scope scope) { scope_ = scope; }

  // The address alone, canonical ("2001:db8::5").
  std::string GetStringAddress() const { return address_.GetStringAddress(); }
  // "2001:db8::5/64" (scoped address when a zone is set).
  std::string GetStringNetwork() const;

  friend bool operator==(const Ipv6Network&, const Ipv6Network&) = default;

 private:
  Ipv6Address address_;
  unsigned prefixLength_ = 64;
  Ipv6AddressType type_ = Ipv6AddressType::kStatic;
  Ipv6Scope scope_ = Ipv6Scope::kGlobal;
};

}  // namespace HostCtl::Network
