// IPv4 address parsing and netmask checks.
#include "host/Ipv4Address.h"

#include <arpa/inet.h>

#include "host/HostCtlException.h"

namespace HostCtl::Network {
namespace {

bool Parse(const std::string& text, uint32_t* out) {
  // inet_pton takes strict dotted decimal only (no octal, no short forms, no blanks).
  if (text.find('\0') != std::string::npos) return false;
  in_addr addr{};
  if (inet_pton(AF_INET, text.c_str(), &addr) != 1) return false;
  *out = addr.s_addr;
  return true;
}

bool Contiguous(uint32_t hostOrder) {
  if (hostOrder == 0) return false;
  uint32_t inverted = ~hostOrder;
  return (inverted & (inverted + 1)) == 0;  // zeros only at the low end
}

}  // namespace

Ipv4Address::Ipv4Address(const std::string& text) {
  if (!SetAddress(text)) throw Lib::HostCtlException("Invalid IPv4 address: '" + text + "'");
}

bool Ipv4Address::IsValidAddress(const std::string& text) {
  uint32_t value;
  return Parse(text, &value);
}

bool Ipv4Address::IsValidNetmask(const std::string& text) {
  uint32_t value;
  return Parse(text, &value) && Contiguous(ntohl(value));
}

Ipv4Address Ipv4Address::FromPrefixLength(unsigned prefixLength) {
  if (prefixLength > 32)
    throw Lib::HostCtlException("Invalid IPv4 prefix length " + std::to_string(prefixLength));
  uint32_t hostOrder = prefixLength == 0 ? 0 : ~uint32_t{0} << (32 - prefixLength);
  Ipv4Address mask;
  mask.SetBinaryAddress(htonl(hostOrder));
  return mask;
}

bool Ipv4Address::SetAddress(const std::string& text) {
  uint32_t value;
  if (!Parse(text, &value)) return false;
  address_ = value;
  return true;
}

uint32_t Ipv4Address::GetHostOrderAddress() const { return ntohl(address_); }

std::string Ipv4Address::GetStringAddress() const {
  in_addr addr{};
  addr.s_addr = address_;
  char buffer[INET_ADDRSTRLEN] = {};
  inet_ntop(AF_INET, &addr, buffer, sizeof buffer);
  return buffer;
}

bool Ipv4Address::IsNetmask() const { return Contiguous(ntohl(address_)); }

int Ipv4Address::GetPrefixLength() const {
  if (!IsNetmask()) return -1;
  return __builtin_popcount(ntohl(address_));
}

}  // namespace HostCtl::Network
