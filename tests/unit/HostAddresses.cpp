// Address value types: what the network dialogs accept and refuse, and the text forms the
// screens show.
#include <gtest/gtest.h>

#include "host/HostCtlException.h"
#include "host/IpConfig.h"
#include "host/Ipv4Address.h"
#include "host/Ipv6Address.h"
#include "host/Ipv6Network.h"
#include "host/MacAddress.h"
#include "host/NicTeamingPolicy.h"
#include "host/SysinfoUtil.h"

using namespace HostCtl::Network;
using HostCtl::Lib::HostCtlException;

TEST(Ipv4Address, AcceptsDottedQuadsOnly) {
  for (const char* good : {"0.0.0.0", "10.0.0.5", "255.255.255.255", "192.168.1.1"})
    EXPECT_TRUE(Ipv4Address::IsValidAddress(good)) << good;
  for (const char* bad : {"", "10.0.0", "10.0.0.5.1", "256.1.1.1", "10.0.0.-1", "a.b.c.d", "10.0.0.5 ",
                          " 10.0.0.5", "10..0.5", "0x0a.0.0.1", "010.0.0.1", "10.0.0.5/24", "1e1.0.0.1"})
    EXPECT_FALSE(Ipv4Address::IsValidAddress(bad)) << bad;
  EXPECT_FALSE(Ipv4Address::IsValidAddress(std::string("10.0.0.5\0", 9)));
}

TEST(Ipv4Address, NetmaskMustBeContiguousAndNotEmpty) {
  for (const char* good : {"255.255.255.0", "255.255.255.255", "128.0.0.0", "255.255.252.0", "255.254.0.0"})
    EXPECT_TRUE(Ipv4Address::IsValidNetmask(good)) << good;
  for (const char* bad :
       {"0.0.0.0", "255.0.255.0", "255.255.255.1", "0.255.255.255", "255.255.253.0", "nope"})
    EXPECT_FALSE(Ipv4Address::IsValidNetmask(bad)) << bad;
  EXPECT_EQ(Ipv4Address("255.255.252.0").GetPrefixLength(), 22);
  EXPECT_EQ(Ipv4Address("255.0.255.0").GetPrefixLength(), -1);
  EXPECT_EQ(Ipv4Address::FromPrefixLength(24).GetStringAddress(), "255.255.255.0");
  EXPECT_EQ(Ipv4Address::FromPrefixLength(0).GetStringAddress(), "0.0.0.0");
  EXPECT_EQ(Ipv4Address::FromPrefixLength(32).GetStringAddress(), "255.255.255.255");
  EXPECT_THROW(Ipv4Address::FromPrefixLength(33), HostCtlException);
}

TEST(Ipv4Address, FailedParseChangesNothing) {
  Ipv4Address address("10.0.0.5");
  EXPECT_FALSE(address.SetAddress("10.0.0.256"));
  EXPECT_EQ(address.GetStringAddress(), "10.0.0.5");
  EXPECT_TRUE(address.SetAddress("192.168.0.1"));
  EXPECT_EQ(address.GetStringAddress(), "192.168.0.1");
  EXPECT_THROW(Ipv4Address("1.2.3"), HostCtlException);
}

TEST(Ipv4Address, BinaryFormIsNetworkOrderAndRoundTrips) {
  Ipv4Address address("10.0.0.5");
  EXPECT_EQ(address.GetHostOrderAddress(), 0x0a000005u);
  Ipv4Address copy;
  copy.SetBinaryAddress(address.GetBinaryAddress());
  EXPECT_EQ(copy, address);
  EXPECT_EQ(copy.GetStringAddress(), "10.0.0.5");
  EXPECT_TRUE(Ipv4Address().IsZero());
  EXPECT_NE(Ipv4Address("10.0.0.5"), Ipv4Address("10.0.0.6"));
}

TEST(Ipv6Address, AcceptsStandardFormsAndZones) {
  for (const char* good : {"::", "::1", "2001:db8::1", "2001:0db8:0000:0000:0000:0000:0000:0001",
                           "fe80::1%nuk0", "::ffff:10.0.0.5", "FE80::ABCD", "1:2:3:4:5:6:7:8"})
    EXPECT_TRUE(Ipv6Address::IsValidAddress(good)) << good;
  for (const char* bad : {"", ":", "2001:db8::1::2", "1:2:3:4:5:6:7:8:9", "12345::", "g::1", "fe80::1%",
                          "fe80::1%a b", "10.0.0.5", "2001:db8::1/64", " ::1"})
    EXPECT_FALSE(Ipv6Address::IsValidAddress(bad)) << bad;
}

TEST(Ipv6Address, CanonicalAndScopedText) {
  Ipv6Address address("2001:0DB8:0000:0000:0000:0000:0000:0001");
  EXPECT_EQ(address.GetStringAddress(), "2001:db8::1");
  EXPECT_EQ(address.GetScopedStringAddress(), "2001:db8::1");
  Ipv6Address scoped("fe80::0001%nuk0");
  EXPECT_EQ(scoped.GetStringAddress(), "fe80::1");
  EXPECT_EQ(scoped.GetScopedStringAddress(), "fe80::1%nuk0");
  EXPECT_TRUE(scoped.IsLinkLocal());
  EXPECT_EQ(scoped.GetFirstHextet(), 0xfe80);
  EXPECT_EQ(Ipv6Address(scoped.GetScopedStringAddress()), scoped);
  EXPECT_TRUE(Ipv6Address().IsUnspecified());
  EXPECT_EQ(Ipv6Address().GetStringAddress(), "::");
}

TEST(Ipv6Address, FailedParseChangesNothing) {
  Ipv6Address address("fe80::1%nuk0");
  EXPECT_FALSE(address.SetAddress("2001:db8::zz"));
  EXPECT_EQ(address.GetScopedStringAddress(), "fe80::1%nuk0");
  EXPECT_TRUE(address.SetAddress("2001:db8::2"));
  EXPECT_EQ(address.GetZone(), "");
}

TEST(Ipv6Network, NeedsAPrefixLengthUpTo128) {
  for (const char* good : {"2001:db8::5/64", "2001:db8::5/0", "2001:db8::5/128", "fe80::1%nuk0/64", "::/0"})
    EXPECT_TRUE(Ipv6Network::IsValidAddressAndNetmask(good)) << good;
  for (const char* bad :
       {"2001:db8::5", "2001:db8::5/", "2001:db8::5/129", "2001:db8::5/-1", "2001:db8::5/64/64",
        "2001:db8::5/6a", "2001:db8::5/0064", "/64", "10.0.0.5/24", "2001:db8::5/ 64"})
    EXPECT_FALSE(Ipv6Network::IsValidAddressAndNetmask(bad)) << bad;
}

TEST(Ipv6Network, ParseIsTransactionalAndKeepsTypeAndScope) {
  Ipv6Network network(Ipv6Address("2001:db8::5"), 64, Ipv6AddressType::kStatic, Ipv6Scope::kGlobal);
  EXPECT_FALSE(network.SetAddressAndNetmask("2001:db8::9/200"));
  EXPECT_EQ(network.GetStringNetwork(), "2001:db8::5/64");
  EXPECT_TRUE(network.SetAddressAndNetmask("2001:db8:1::9/48"));
  EXPECT_EQ(network.GetStringAddress(), "2001:db8:1::9");
  EXPECT_EQ(network.GetPrefixLength(), 48u);
  EXPECT_EQ(network.GetIpv6AddressType(), Ipv6AddressType::kStatic);
  EXPECT_EQ(static_cast<int>(network.GetIpv6Scope()), 3);
  EXPECT_THROW(network.SetPrefixLength(129), HostCtlException);
  EXPECT_THROW(Ipv6Network(Ipv6Address("::1"), 129), HostCtlException);
}

TEST(Ipv6Network, ScopeOfAddresses) {
  EXPECT_EQ(Ipv6Network::ScopeOf(Ipv6Address("fe80::1")), Ipv6Scope::kLink);
  EXPECT_EQ(Ipv6Network::ScopeOf(Ipv6Address("febf::1")), Ipv6Scope::kLink);
  EXPECT_EQ(Ipv6Network::ScopeOf(Ipv6Address("fec0::1")), Ipv6Scope::kSite);
  EXPECT_EQ(Ipv6Network::ScopeOf(Ipv6Address("::1")), Ipv6Scope::kNode);
  EXPECT_EQ(Ipv6Network::ScopeOf(Ipv6Address("2001:db8::1")), Ipv6Scope::kGlobal);
  EXPECT_EQ(Ipv6Network::ScopeOf(Ipv6Address("ff02::1")), Ipv6Scope::kLink);
  // fe81 is still link-local by prefix, though the static-address check compares fe80 exactly.
  EXPECT_NE(Ipv6Address("fe81::1").GetFirstHextet(), 0xfe80);
}

TEST(MacAddress, ParsesBothSeparatorsAndPrintsLowerCaseColons) {
  MacAddress mac("02-4B-4E-8A-40-10");
  EXPECT_EQ(mac.GetStringAddress(), "02:4b:4e:8a:40:10");
  EXPECT_EQ(MacAddress(mac.GetStringAddress()), mac);
  for (const char* bad : {"", "02:4b:4e:8a:40", "02:4b:4e:8a:40:10:11", "02:4b-4e:8a:40:10",
                          "0g:4b:4e:8a:40:10", "024b4e8a4010", "02:4b:4e:8a:40:1"})
    EXPECT_FALSE(MacAddress::IsValidAddress(bad)) << bad;
  EXPECT_FALSE(mac.SetAddress("02:4b:4e:8a:40:zz"));
  EXPECT_EQ(mac.GetStringAddress(), "02:4b:4e:8a:40:10");
  EXPECT_TRUE(MacAddress().IsZero());
}

TEST(IpConfig, ModeSwitches) {
  IpConfig config;
  config.SetUseDhcp(false, true);
  EXPECT_FALSE(config.GetUseDhcp());
  EXPECT_TRUE(config.GetIpv4UseNone());
  config.SetUseDhcp(true);
  EXPECT_TRUE(config.GetUseDhcp());
  EXPECT_FALSE(config.GetIpv4UseNone());
  config.SetIpv4UseNone();
  EXPECT_FALSE(config.GetUseDhcp());
  EXPECT_TRUE(config.GetIpv4UseNone());
  config.SetUseDhcp(false, false);
  EXPECT_FALSE(config.GetIpv4UseNone());
  config.SetUseDhcp(true, true);  // DHCP wins: "none" only applies with DHCP off
  EXPECT_FALSE(config.GetIpv4UseNone());
}

TEST(IpConfig, Ipv6ListKeepsOrderAndUpdatesDuplicates) {
  IpConfig config;
  config.AddIpv6Network(Ipv6Network(Ipv6Address("2001:db8::5"), 64));
  config.AddIpv6Network(Ipv6Network(Ipv6Address("2001:db8::6"), 64));
  config.AddIpv6Network(Ipv6Network(Ipv6Address("2001:db8::5"), 64, Ipv6AddressType::kDhcp));
  ASSERT_EQ(config.GetIpv6Network().size(), 2u);
  EXPECT_EQ(config.GetIpv6Network()[0].GetIpv6AddressType(), Ipv6AddressType::kDhcp);
  EXPECT_EQ(config.GetIpv6Network()[1].GetStringAddress(), "2001:db8::6");
  EXPECT_TRUE(config.RemoveIpv6Network(Ipv6Address("2001:db8::5")));
  EXPECT_FALSE(config.RemoveIpv6Network(Ipv6Address("2001:db8::5")));
  IpConfig copy = config;
  EXPECT_EQ(copy, config);
  copy.SetDhcpDns(true);
  EXPECT_NE(copy, config);
}

TEST(NicTeamingPolicy, OrderWithoutDuplicatesAndRemoval) {
  NicTeamingPolicy policy;
  EXPECT_FALSE(policy.HasUplinkOrder());
  EXPECT_FALSE(policy.HasMaxActiveUplinks());
  policy.SetUplinkOrder({"nic2", "nic0", "nic2"}, {"nic0", "nic1", "nic1"});
  EXPECT_EQ(policy.GetUplinkOrder(), (std::vector<std::string>{"nic2", "nic0"}));
  EXPECT_EQ(policy.GetStandbyUplinks(), (std::vector<std::string>{"nic1"}));
  EXPECT_TRUE(policy.RemoveUplink("nic0"));
  EXPECT_FALSE(policy.RemoveUplink("nic0"));
  EXPECT_EQ(policy.GetUplinkOrder(), (std::vector<std::string>{"nic2"}));
  policy.SetMaxActiveUplinks(2);
  EXPECT_EQ(policy.GetMaxActiveUplinks(), 2u);
  policy.ClearUplinkOrder();
  EXPECT_FALSE(policy.HasUplinkOrder());
  EXPECT_TRUE(policy.GetStandbyUplinks().empty());
}

TEST(SystemVersionRecord, FieldsAtTheirOffsetsAndCutToFit) {
  HostCtl::SystemVersionRecord version{"Orin NuKernel", "8.0.2", "8.0.2-kernel", std::string(40, 'b')};
  auto record = version.Encode();
  ASSERT_EQ(record.size(), 312u);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(record.data())), "Orin NuKernel");
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(record.data() + 32)), "8.0.2");
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(record.data() + 96)), "8.0.2-kernel");
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(record.data() + 128)), std::string(31, 'b'));
  auto decoded = HostCtl::SystemVersionRecord::Decode(record);
  EXPECT_EQ(decoded.productName, "Orin NuKernel");
  EXPECT_EQ(decoded.buildNumber, std::string(31, 'b'));
  record.resize(100);
  EXPECT_THROW(HostCtl::SystemVersionRecord::Decode(record), HostCtlException);
}
