// The welcome screen's texts from plain facts, where the screen tests do not reach: memory
// units and rounding, the IPv6 marks, the management text's URL lines, hardware and CPU lines.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "screens/WelcomeFacts.h"
#include "ui/strings/StringFactory.h"

namespace Konu {
namespace {

using HostCtl::Network::Ipv6Address;
using HostCtl::Network::Ipv6AddressType;
using HostCtl::Network::Ipv6Network;

const StringFactory& Strings() { return *StringFactory::Get("en_US"); }

Ipv6Network V6(const std::string& address, Ipv6AddressType type = Ipv6AddressType::kStatic) {
  return Ipv6Network(Ipv6Address(address), 64, type);
}

TEST(WelcomeMemoryLine, PicksTheLargestUnitNotAboveTheTotal) {
  EXPECT_EQ(MemoryLine(1073741823ull), "1024 MiB Memory");  // one byte short of a GiB rounds up
  EXPECT_EQ(MemoryLine(1073741824ull), "1 GiB Memory");
  EXPECT_EQ(MemoryLine(1048576ull), "1 MiB Memory");
  EXPECT_EQ(MemoryLine(524288ull), "0.5 MiB Memory");  // below a MiB the unit stays MiB
  EXPECT_EQ(MemoryLine(1ull << 40), "1 TiB Memory");
  EXPECT_EQ(MemoryLine(1ull << 50), "1 PiB Memory");
  EXPECT_EQ(MemoryLine(1ull << 60), "1024 PiB Memory");  // P is the last letter
}

TEST(WelcomeMemoryLine, RoundsToOneDecimalWithoutATrailingZero) {
  const double gib = 1073741824.0;
  EXPECT_EQ(MemoryLine(static_cast<uint64_t>(15.9 * gib)), "15.9 GiB Memory");
  EXPECT_EQ(MemoryLine(static_cast<uint64_t>(16 * gib)), "16 GiB Memory");
  EXPECT_EQ(MemoryLine(static_cast<uint64_t>(15.96 * gib)), "16 GiB Memory");  // never "16.0"
  EXPECT_EQ(MemoryLine(static_cast<uint64_t>(15.949 * gib)), "15.9 GiB Memory");
  EXPECT_EQ(MemoryLine(static_cast<uint64_t>(15.95 * gib) + 1), "16 GiB Memory");  // half away from zero
  // The simulated host's default: 33554432 pages of 4096 bytes.
  EXPECT_EQ(MemoryLine(33554432ull * 4096), "128 GiB Memory");
  EXPECT_EQ(MemorySize(3ull << 29), "1.5 GiB");
}

TEST(WelcomeIpv6Lines, SortsAsTextAndMarksByType) {
  std::vector<std::string> lines = Ipv6UrlLines(
      {V6("fe80::1", Ipv6AddressType::kOther), V6("2001:db8::5"), V6("2001:db8::50", Ipv6AddressType::kDhcp),
       V6("2001:db8::a", Ipv6AddressType::kAutoconf)},
      Strings());
  EXPECT_EQ(lines,
            (std::vector<std::string>{"https://[2001:db8::50]/ (DHCP)", "https://[2001:db8::5]/ (STATIC)",
                                      "https://[2001:db8::a]/ (AUTOCONF)", "https://[fe80::1]/ "}));
}

// A static host "konu-host" at 10.0.0.5, changed as each case says.
TEST(WelcomeManagementText, HostNameAddressesAndMarks) {
  const struct {
    const char* hostname;
    bool ipv6Enabled, ipv4Disabled, useDhcp;
    const char* expected;
  } cases[] = {
      {"konu-host", true, false, false,
       "To manage this host, go to:\nhttps://konu-host/ \nhttps://10.0.0.5/ (STATIC)\nhttps://[2001:db8::5]/ "
       "(STATIC)\n"},
      // IPv6 off: the addresses are not shown at all.
      {"konu-host", false, false, false,
       "To manage this host, go to:\nhttps://konu-host/ \nhttps://10.0.0.5/ (STATIC)"},
      {"localhost", false, false, false, "To manage this host, go to:\nhttps://10.0.0.5/ (STATIC)"},
      {"", false, false, false, "To manage this host, go to:\nhttps://10.0.0.5/ (STATIC)"},
      // IPv4 off: a DHCP mark goes after the host-name line, or the heading without one.
      {"konu-host", false, true, false, "To manage this host, go to:\nhttps://konu-host/ "},
      {"konu-host", false, true, true, "To manage this host, go to:\nhttps://konu-host/ (DHCP)"},
      {"localhost", false, true, true, "To manage this host, go to:(DHCP)"},
  };
  for (const auto& c : cases) {
    ManagementFacts facts;
    facts.ipv4Address = "10.0.0.5";
    facts.hostname = c.hostname;
    facts.ipv6Enabled = c.ipv6Enabled;
    facts.ipv6Networks = {V6("2001:db8::5")};
    facts.ipv4Disabled = c.ipv4Disabled;
    facts.useDhcp = c.useDhcp;
    EXPECT_EQ(ManagementText(facts, Strings()), c.expected) << c.expected;
  }
}

TEST(WelcomeHardwareLines, VendorProductAndCpu) {
  EXPECT_EQ(HardwareLine("  Tessera Computing Inc. ", " TX740 Server  "),
            "Tessera Computing Inc. TX740 Server");
  EXPECT_EQ(CpuLine(2, "  Sample Core 8100 "), "2 x Sample Core 8100");
  EXPECT_EQ(CpuLine(0, "Sample"), "Sample");
}

}  // namespace
}  // namespace Konu
