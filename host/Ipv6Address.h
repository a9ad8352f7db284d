// An IPv6 address with an optional zone ("fe80::1%nuk0"): standard text forms and binary form.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace HostCtl::Network {

class Ipv6Address {
 public:
  using Bytes = std::array<uint8_t, 16>;

  Ipv6Address() = default;  // "::"
  // Parses text (scoped form allowed); throws HostCtl::Lib::HostCtlException when invalid.
  explicit Ipv6Address(const std::string& text);
  explicit Ipv6Address(const Bytes& bytes, std::string zone = {}) : bytes_(bytes), zone_(std::move(zone)) {}

  // Standard IPv6 text (inet_pton), optionally followed by "%" and a zone of letters,
  // digits, '.', '_' or '-'.
  static bool IsValidAddress(const std::string& text);

  // Transactional: on failure returns false and leaves the value as it was.
  bool SetAddress(const std::string& text);

  // Canonical text without the zone ("2001:db8::1").
  std::string GetStringAddress() const;
  // Canonical text with "%zone" when a zone is set.
  std::string GetScopedStringAddress() const;
  const Bytes& GetBinaryAddress() const { return bytes_; }
  const std::string& GetZone() const { return zone_; }
  void SetZone(std::string zone) { zone_ = std::move(zone); }

  // The first 16 bits, as the screens compare them (0xfe80 for link-local).
  uint16_t GetFirstHextet() const { return static_cast<uint16_t>(bytes_[0] << 8 | bytes_[1]); }
  bool IsLinkLocal() const;    // fe80::/10
  bool IsUnspecified() const;  // "::"

  friend bool operator==(const Ipv6Address&, const Ipv6Address&) = default;

 private:
  Bytes bytes_{};
  std::string zone_;
};

}  // namespace HostCtl::Network
