// MAC address parsing and text form.
#include "host/MacAddress.h"

#include <cctype>
#include <cstdio>

#include "host/HostCtlException.h"

namespace HostCtl::Network {
namespace {

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool Parse(const std::string& text, MacAddress::Bytes* bytes) {
  if (text.size() != 17) return false;
  char separator = text[2];
  if (separator != ':' && separator != '-') return false;
  MacAddress::Bytes parsed{};
  for (size_t i = 0; i < 6; ++i) {
    size_t at = i * 3;
    int hi = HexValue(text[at]), lo = HexValue(text[at + 1]);
    if (hi < 0 || lo < 0) return false;
    if (i < 5 && text[at + 2] != separator) return false;
    parsed[i] = static_cast<uint8_t>(hi << 4 | lo);
  }
  *bytes = parsed;
  return true;
}

}  // namespace

MacAddress::MacAddress(const std::string& text) {
  if (!SetAddress(text)) throw Lib::HostCtlException("Invalid MAC address: '" + text + "'");
}

bool MacAddress::IsValidAddress(const std::string& text) {
  Bytes bytes;
  return Parse(text, &bytes);
}

// Parse writes only after the whole text was read, so a failure leaves the value alone.
bool MacAddress::SetAddress(const std::string& text) { return Parse(text, &bytes_); }

std::string MacAddress::GetStringAddress() const {
  char buffer[18];
  std::snprintf(buffer, sizeof buffer, "%02x:%02x:%02x:%02x:%02x:%02x", bytes_[0], bytes_[1], bytes_[2],
                bytes_[3], bytes_[4], bytes_[5]);
  return buffer;
}

bool MacAddress::IsZero() const {
  for (uint8_t b : bytes_)
    if (b) return false;
  return true;
}

}  // namespace HostCtl::Network
