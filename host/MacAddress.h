// A 48-bit hardware address: "02:4b:4e:aa:bb:cc" text (":" or "-" separated) and bytes.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace HostCtl::Network {

class MacAddress {
 public:
  using Bytes = std::array<uint8_t, 6>;

  MacAddress() = default;  // 00:00:00:00:00:00
  // Throws HostCtl::Lib::HostCtlException when the text is not a MAC address.
  explicit MacAddress(const std::string& text);
  explicit MacAddress(const Bytes& bytes) : bytes_(bytes) {}

  // Six pairs of hex digits separated by ':' or '-' (one kind throughout).
  static bool IsValidAddress(const std::string& text);
  // Transactional: on failure returns false and leaves the value as it was.
  bool SetAddress(const std::string& text);

  // Lower-case, colon separated.
  std::string GetStringAddress() const;
  const Bytes& GetBinaryAddress() const { return bytes_; }
  bool IsZero() const;

  friend bool operator==(const MacAddress&, const MacAddress&) = default;

 private:
  Bytes bytes_{};
};

}  // namespace HostCtl::Network
