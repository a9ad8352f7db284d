// An IPv4 address or netmask value: dotted-quad parsing, netmask checks, binary and text forms.
#pragma once

#include <cstdint>
#include <string>

namespace HostCtl::Network {

class Ipv4Address {
 public:
  Ipv4Address() = default;  // 0.0.0.0
  // Parses dotted-quad text; throws HostCtl::Lib::HostCtlException for anything else.
  explicit Ipv4Address(const std::string& text);

  // Strict dotted quad: four decimal parts 0..255, no leading zeros, nothing else.
  static bool IsValidAddress(const std::string& text);
  // A valid address whose bits are ones then zeros, with at least one one bit.
  static bool IsValidNetmask(const std::string& text);
  // Builds a netmask of the given prefix length (0..32); throws beyond 32.
  static Ipv4Address FromPrefixLength(unsigned prefixLength);

  // Transactional: on failure returns false and leaves the value as it was.
  bool SetAddress(const std::string& text);
  void SetBinaryAddress(uint32_t networkOrder) { address_ = networkOrder; }

  // The address in network byte order, as in struct in_addr's s_addr.
  uint32_t GetBinaryAddress() const { return address_; }
  // The address in host byte order (for arithmetic).
  uint32_t GetHostOrderAddress() const;
  std::string GetStringAddress() const;

  bool IsZero() const { return address_ == 0; }
  bool IsNetmask() const;
  // Number of leading one bits when this is a netmask, else -1.
  int GetPrefixLength() const;

  friend bool operator==(const Ipv4Address&, const Ipv4Address&) = default;

 private:
  uint32_t address_ = 0;
};

}  // namespace HostCtl::Network
