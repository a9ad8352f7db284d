// The welcome screen's texts built from plain host facts: the management text with its URL
// lines and marks, the warning, and the hardware, CPU and memory lines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Ipv6Network.h"

namespace Konu {

class StringFactory;

// What the management text is made of, read from the host at each draw. Without a
// management interface the interface fields stay false or empty.
struct ManagementFacts {
  bool useDhcp = false;                                     // the configured IPv4 mode is DHCP
  bool ipv4Disabled = false;                                // the configured IPv4 mode is "none"
  std::string ipv4Address = "0.0.0.0";                      // the current address, dotted (0.0.0.0: none yet)
  std::vector<HostCtl::Network::Ipv6Network> ipv6Networks;  // current, in the interface's order
  bool ipv6Enabled = false;
  std::string hostname;        // from the DNS configuration
  bool hasPhysicalNic = true;  // false: the no-adapter text replaces everything
};

// Shown in place of the management text on a host without any physical adapter.
inline constexpr const char kNoAdapterText[] =
    "No compatible network adapter found. Please consult the product's Hardware Compatibility Guide "
    "(HCG) for a list of supported adapters.";
// The system alert raised (once per process) on such a host.
inline constexpr const char kNoAdapterAlert[] = "No compatible network adapter found.";

// One "https://[address]/ (MARK)" line per IPv6 address, sorted as text. Up to four are
// shown, and exactly five are all shown; of more, the first four in the interface's order
// are sorted and "..." follows them.
std::vector<std::string> Ipv6UrlLines(const std::vector<HostCtl::Network::Ipv6Network>& networks,
                                      const StringFactory& strings);

// The whole management text ("To manage this host, go to:" and the URL lines), or the
// no-adapter text, as mark-up (the host name shown as it is).
std::string ManagementText(const ManagementFacts& facts, const StringFactory& strings);

// The warning area: the DHCP failure warning for a DHCP interface at 0.0.0.0, replaced by the
// audit-mode warning when the host runs in audit mode; "" otherwise.
std::string WarningText(const ManagementFacts& facts, bool auditMode, const StringFactory& strings);

// "vendor product", or the product alone when it begins with the vendor; both trimmed.
std::string HardwareLine(const std::string& vendor, const std::string& product);

// The trimmed CPU model, "N x model" with two or more packages.
std::string CpuLine(uint32_t packages, const std::string& model);

// The memory size in the largest binary unit from MiB up to PiB not above it, rounded to
// one decimal: "15.9 GiB", "1024 MiB".
std::string MemorySize(uint64_t bytes);

// MemorySize + " Memory".
std::string MemoryLine(uint64_t bytes);

}  // namespace Konu
