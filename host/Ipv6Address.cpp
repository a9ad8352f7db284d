// IPv6 address parsing and text forms, with an optional zone.
#include "host/Ipv6Address.h"

#include <arpa/inet.h>

#include <cctype>

#include "host/HostCtlException.h"

namespace HostCtl::Network {
namespace {

bool ValidZone(const std::string& zone) {
  if (zone.empty() || zone.size() > 64) return false;
  for (unsigned char c : zone)
    if (!std::isalnum(c) && c != '.' && c != '_' && c != '-') return false;
  return true;
}

bool Parse(const std::string& text, Ipv6Address::Bytes* bytes, std::string* zone) {
  if (text.find('\0') != std::string::npos) return false;
  std::string address = text;
  std::string scope;
  if (auto percent = text.find('%'); percent != std::string::npos) {
    address = text.substr(0, percent);
    scope = text.substr(percent + 1);
    if (!ValidZone(scope)) return false;
  }
  in6_addr addr{};
  if (inet_pton(AF_INET6, address.c_str(), &addr) != 1) return false;
  for (size_t i = 0; i < 16; ++i) (*bytes)[i] = addr.s6_addr[i];
  *zone = scope;
  return true;
}

}  // namespace

Ipv6Address::Ipv6Address(const std::string& text) {
  if (!SetAddress(text)) throw Lib::HostCtlException("Invalid IPv6 address: '" + text + "'");
}

bool Ipv6Address::IsValidAddress(const std::string& text) {
  Bytes bytes;
  std::string zone;
  return Parse(text, &bytes, &zone);
}

bool Ipv6Address::SetAddress(const std::string& text) {
  Bytes bytes;
  std::string zone;
  if (!Parse(text, &bytes, &zone)) return false;
  bytes_ = bytes;
  zone_ = std::move(zone);
  return true;
}

std::string Ipv6Address::GetStringAddress() const {
  in6_addr addr{};
  for (size_t i = 0; i < 16; ++i) addr.s6_addr[i] = bytes_[i];
  char buffer[INET6_ADDRSTRLEN] = {};
  inet_ntop(AF_INET6, &addr, buffer, sizeof buffer);
  return buffer;
}

std::string Ipv6Address::GetScopedStringAddress() const {
  std::string text = GetStringAddress();
  if (!zone_.empty()) text += "%" + zone_;
  return text;
}

bool Ipv6Address::IsLinkLocal() const { return bytes_[0] == 0xfe && (bytes_[1] & 0xc0) == 0x80; }

bool Ipv6Address::IsUnspecified() const {
  for (uint8_t b : bytes_)
    if (b) return false;
  return true;
}

}  // namespace HostCtl::Network
