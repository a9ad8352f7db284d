// The welcome screen's texts from plain facts: memory units and rounding, the IPv6 line
// rule, the management text's URL lines and marks, the warnings, hardware and CPU lines.
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

TEST(WelcomeIpv6Lines, FiveAreAllShownSixAreCutToTheFirstFourSorted) {
  std::vector<Ipv6Network> networks = {V6("2001:db8::6"), V6("2001:db8::4"), V6("2001:db8::5"),
                                       V6("2001:db8::1"), V6("2001:db8::3")};
  std::vector<std::string> five = Ipv6UrlLines(networks, Strings());
  ASSERT_EQ(five.size(), 5u);
  EXPECT_EQ(five.front(), "https://[2001:db8::1]/ (STATIC)");
  EXPECT_EQ(five.back(), "https://[2001:db8::6]/ (STATIC)");

  networks.push_back(V6("2001:db8::2"));  // sixth: cut to the first four, not the four lowest
  std::vector<std::string> six = Ipv6UrlLines(networks, Strings());
  EXPECT_EQ(six, (std::vector<std::string>{
                     "https://[2001:db8::1]/ (STATIC)", "https://[2001:db8::4]/ (STATIC)",
                     "https://[2001:db8::5]/ (STATIC)", "https://[2001:db8::6]/ (STATIC)", "..."}));
  EXPECT_EQ(Ipv6UrlLines({V6("2001:db8::1")}, Strings()).size(), 1u);
  EXPECT_TRUE(Ipv6UrlLines({}, Strings()).empty());
}

ManagementFacts StaticFacts() {
  ManagementFacts facts;
  facts.ipv4Address = "10.0.0.5";
  facts.hostname = "konu-host";
  return facts;
}

TEST(WelcomeManagementText, StaticHostWithIpv6) {
  ManagementFacts facts = StaticFacts();
  facts.ipv6Enabled = true;
  facts.ipv6Networks = {V6("2001:db8::5")};
  EXPECT_EQ(ManagementText(facts, Strings()),
            "To manage this host, go to:\nhttps://konu-host/ \nhttps://10.0.0.5/ (STATIC)\n"
            "https://[2001:db8::5]/ (STATIC)\n");
  facts.ipv6Enabled = false;  // the addresses are not shown at all
  EXPECT_EQ(ManagementText(facts, Strings()),
            "To manage this host, go to:\nhttps://konu-host/ \nhttps://10.0.0.5/ (STATIC)");
}

TEST(WelcomeManagementText, LocalhostOrNoHostNameGivesNoHostNameLine) {
  for (const char* name : {"localhost", ""}) {
    ManagementFacts facts = StaticFacts();
    facts.hostname = name;
    EXPECT_EQ(ManagementText(facts, Strings()), "To manage this host, go to:\nhttps://10.0.0.5/ (STATIC)")
        << name;
  }
}

TEST(WelcomeManagementText, DhcpMarks) {
  ManagementFacts facts = StaticFacts();
  facts.useDhcp = true;
  EXPECT_EQ(ManagementText(facts, Strings()),
            "To manage this host, go to:\nhttps://konu-host/ \nhttps://10.0.0.5/ (DHCP)");
  facts.ipv4Address = "0.0.0.0";
  EXPECT_EQ(ManagementText(facts, Strings()),
            "To manage this host, go to:\nhttps://konu-host/ \nhttps://0.0.0.0/ (Waiting for DHCP...)");
}

TEST(WelcomeManagementText, IPv4OffMarksOnlyADhcpInterface) {
  ManagementFacts facts = StaticFacts();
  facts.ipv4Disabled = true;
  EXPECT_EQ(ManagementText(facts, Strings()), "To manage this host, go to:\nhttps://konu-host/ ");
  facts.useDhcp = true;  // a DHCP mark goes after the host-name line, or the heading without one
  EXPECT_EQ(ManagementText(facts, Strings()), "To manage this host, go to:\nhttps://konu-host/ (DHCP)");
  facts.hostname = "localhost";
  EXPECT_EQ(ManagementText(facts, Strings()), "To manage this host, go to:(DHCP)");
}

TEST(WelcomeManagementText, NoAdapterReplacesEverything) {
  ManagementFacts facts = StaticFacts();
  facts.hasPhysicalNic = false;
  EXPECT_EQ(ManagementText(facts, Strings()), kNoAdapterText);
}

TEST(WelcomeWarning, DhcpFailureAndAuditMode) {
  ManagementFacts facts = StaticFacts();
  EXPECT_EQ(WarningText(facts, false, Strings()), "");
  facts.useDhcp = true;
  EXPECT_EQ(WarningText(facts, false, Strings()), "");  // DHCP with a lease: no warning
  facts.ipv4Address = "0.0.0.0";
  EXPECT_EQ(WarningText(facts, false, Strings()), Strings().GetString(134));
  EXPECT_EQ(WarningText(facts, true, Strings()), Strings().GetString(135));
  EXPECT_EQ(WarningText(StaticFacts(), true, Strings()), Strings().GetString(135));
  EXPECT_NE(std::string(Strings().GetString(135)).find("audit mode"), std::string::npos);
}

TEST(WelcomeHardwareLines, VendorProductAndCpu) {
  EXPECT_EQ(HardwareLine("  Tessera Computing Inc. ", " TX740 Server  "),
            "Tessera Computing Inc. TX740 Server");
  EXPECT_EQ(HardwareLine("Tessera", "Tessera TX740 Server"), "Tessera TX740 Server");
  EXPECT_EQ(HardwareLine("Tessera ", "  Tessera TX740"), "Tessera TX740");  // compared after trimming
  EXPECT_EQ(CpuLine(2, "  Xeon Gold 6130 "), "2 x Xeon Gold 6130");
  EXPECT_EQ(CpuLine(1, "Xeon Gold 6130"), "Xeon Gold 6130");
  EXPECT_EQ(CpuLine(0, "Xeon"), "Xeon");
}

}  // namespace
}  // namespace Konu
