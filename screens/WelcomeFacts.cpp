// Texts of the welcome screen from plain facts: URL lines, warnings, hardware and memory.
#include "screens/WelcomeFacts.h"

#include <algorithm>

#include "ui/Markup.h"
#include "ui/strings/StringFactory.h"

namespace Konu {
namespace {

using HostCtl::Network::Ipv6AddressType;
using HostCtl::Network::Ipv6Network;

constexpr uint32_t kManageHeadingId = 133;
constexpr uint32_t kDhcpFailedWarningId = 134;
constexpr uint32_t kAuditModeWarningId = 135;
constexpr uint32_t kDhcpId = 254;
constexpr uint32_t kStaticId = 255;
constexpr uint32_t kAutoconfId = 256;
constexpr uint32_t kWaitingForDhcpId = 257;

constexpr const char kUnsetIpv4[] = "0.0.0.0";

std::string Parenthesized(const StringFactory& strings, uint32_t id) {
  return std::string("(") + strings.GetString(id) + ")";
}

std::string Ipv6Mark(const Ipv6Network& network, const StringFactory& strings) {
  switch (network.GetIpv6AddressType()) {
    case Ipv6AddressType::kStatic:
      return Parenthesized(strings, kStaticId);
    case Ipv6AddressType::kDhcp:
      return Parenthesized(strings, kDhcpId);
    case Ipv6AddressType::kAutoconf:
      return Parenthesized(strings, kAutoconfId);
    default:
      return "";  // link-local, temporary and the like carry no mark
  }
}

std::string Trimmed(const std::string& text) {
  const char* blanks = " \t\n\r\f\v";
  size_t first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return "";
  size_t last = text.find_last_not_of(blanks);
  return text.substr(first, last - first + 1);
}

}  // namespace

std::vector<std::string> Ipv6UrlLines(const std::vector<Ipv6Network>& networks,
                                      const StringFactory& strings) {
  constexpr size_t kShown = 4;
  constexpr size_t kAllShownCount = 5;  // five fit as well: only more are cut to four
  const bool cut = networks.size() > kShown && networks.size() != kAllShownCount;
  const size_t count = cut ? kShown : networks.size();
  std::vector<std::string> lines;
  lines.reserve(count + 1);
  for (size_t i = 0; i < count; ++i) {
    lines.push_back("https://[" + networks[i].GetStringAddress() + "]/ " + Ipv6Mark(networks[i], strings));
  }
  std::sort(lines.begin(), lines.end());
  if (cut) lines.push_back("...");
  return lines;
}

std::string ManagementText(const ManagementFacts& facts, const StringFactory& strings) {
  if (!facts.hasPhysicalNic) return kNoAdapterText;
  std::string text = strings.GetString(kManageHeadingId);
  if (!facts.hostname.empty() && facts.hostname != "localhost") {
    text += "\nhttps://" + LiteralMarkup(facts.hostname) + "/ ";
  }
  if (!facts.ipv4Disabled) {
    text += "\nhttps://" + facts.ipv4Address + "/ ";
  }
  // The mark goes on the last line written: a DHCP interface always gets one (after the
  // host-name line or the heading when IPv4 is off), a static one only after its address.
  if (facts.useDhcp) {
    text += Parenthesized(strings, facts.ipv4Address == kUnsetIpv4 ? kWaitingForDhcpId : kDhcpId);
  } else if (!facts.ipv4Disabled) {
    text += Parenthesized(strings, kStaticId);
  }
  if (facts.ipv6Enabled) {
    text += "\n";
    for (const std::string& line : Ipv6UrlLines(facts.ipv6Networks, strings)) text += line + "\n";
  }
  return text;
}

std::string WarningText(const ManagementFacts& facts, bool auditMode, const StringFactory& strings) {
  if (auditMode) return strings.GetString(kAuditModeWarningId);
  if (facts.useDhcp && facts.ipv4Address == kUnsetIpv4) return strings.GetString(kDhcpFailedWarningId);
  return "";
}

std::string HardwareLine(const std::string& vendor, const std::string& product) {
  const std::string v = Trimmed(vendor);
  const std::string p = Trimmed(product);
  if (p.compare(0, v.size(), v) == 0) return p;
  return v + " " + p;
}

std::string CpuLine(uint32_t packages, const std::string& model) {
  const std::string m = Trimmed(model);
  if (packages >= 2) return std::to_string(packages) + " x " + m;
  return m;
}

std::string MemorySize(uint64_t bytes) {
  constexpr const char kLetters[] = "MGTP";
  uint64_t unit = uint64_t{1} << 20;
  int step = 0;
  // P is the last letter: a host of 1024 PiB or more still shows PiB.
  while (step < 3 && bytes / 1024 >= unit) {
    unit *= 1024;
    ++step;
  }
  // Tenths of the unit, rounded half up, in integers: no stream (the welcome screen would
  // set up the C++ locale for this one number) and no maths library.
  const uint64_t tenths = bytes / unit * 10 + ((bytes % unit) * 10 + unit / 2) / unit;
  std::string size = std::to_string(tenths / 10);
  if (tenths % 10 != 0) size += "." + std::to_string(tenths % 10);
  return size + " " + kLetters[step] + "iB";
}

std::string MemoryLine(uint64_t bytes) { return MemorySize(bytes) + " Memory"; }

}  // namespace Konu
