// The real Linux backend read from fixture trees: routes, addresses, interfaces, bridges,
// resolver, hardware, keymaps and version facts. Nothing here reads or changes the machine
// itself except the harmless shell commands of the exec test.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "host/HostCtlException.h"
#include "host/linux/LinuxHost.h"
#include "host/linux/ProcParsers.h"
#include "tests/harness/Files.h"

namespace fs = std::filesystem;
using namespace HostCtl;
using HostCtl::Lib::HostCtlException;

namespace {

// Route fields are the kernel's native-endian hex of the network-order word; the fixtures
// below are written for a little-endian machine.
bool LittleEndian() {
  uint16_t one = 1;
  return *reinterpret_cast<uint8_t*>(&one) == 1;
}

const char* kRoute =
    "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n"
    "eth0\t00000000\t0100000A\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
    "eth0\t0000000A\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n"
    "wlan0\t00000000\t0102A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n"
    "br0\t0000A8C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\t0\t0\t0\n"
    "br0\t0080A8C0\t00000000\t0001\t0\t0\t0\t0080FFFF\t0\t0\t0\n";

const char* kFibTrie =
    "Main:\n"
    "  +-- 0.0.0.0/0 3 0 5\n"
    "     |-- 0.0.0.0\n"
    "        /0 universe UNICAST\n"
    "     +-- 10.0.0.0/24 2 0 2\n"
    "        |-- 10.0.0.0\n"
    "           /24 link UNICAST\n"
    "        |-- 10.0.0.5\n"
    "           /32 host LOCAL\n"
    "        |-- 10.0.0.255\n"
    "           /32 link BROADCAST\n"
    "     +-- 127.0.0.0/8 2 0 2\n"
    "        |-- 127.0.0.1\n"
    "           /32 host LOCAL\n"
    "     |-- 192.168.128.9\n"
    "        /32 host LOCAL\n"
    "Local:\n"
    "  +-- 0.0.0.0/0 3 0 5\n"
    "        |-- 10.0.0.5\n"
    "           /32 host LOCAL\n";

const char* kIfInet6 =
    "20010db8001000000000000000000005 02 40 00 80     eth0\n"
    "fe80000000000000004b4e0000001005 02 40 20 80     eth0\n"
    "20010db8001000000000000000000077 02 40 00 00     eth0\n"
    "00000000000000000000000000000001 01 80 10 80       lo\n"
    "zz0000000000000000000000000000001 01 80 10 80      bad\n";

const char* kIpv6Route =
    "20010db8001000000000000000000000 40 00000000000000000000000000000000 00 "
    "00000000000000000000000000000000 00000100 00000001 00000000 00000001     eth0\n"
    "00000000000000000000000000000000 00 00000000000000000000000000000000 00 "
    "fe800000000000000000000000000001 00000400 00000001 00000000 00000003     eth0\n";

const char* kCpuInfo =
    "processor\t: 0\nmodel name\t: Sample(R) Server(R) 8-Core CPU @ 2.10GHz\nphysical id\t: 0\ncpu cores\t: "
    "2\n\n"
    "processor\t: 1\nmodel name\t: Sample(R) Server(R) 8-Core CPU @ 2.10GHz\nphysical id\t: 0\ncpu cores\t: "
    "2\n\n"
    "processor\t: 2\nmodel name\t: Sample(R) Server(R) 8-Core CPU @ 2.10GHz\nphysical id\t: 1\ncpu cores\t: "
    "2\n\n"
    "processor\t: 3\nmodel name\t: Sample(R) Server(R) 8-Core CPU @ 2.10GHz\nphysical id\t: 1\ncpu cores\t: "
    "2\n";

class LinuxFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    Write("/proc/net/route", kRoute);
    Write("/proc/net/fib_trie", kFibTrie);
    Write("/proc/net/if_inet6", kIfInet6);
    Write("/proc/net/ipv6_route", kIpv6Route);
    Write("/proc/sys/net/ipv6/conf/all/disable_ipv6", "0\n");
    Write("/proc/sys/kernel/hostname", "konu-linux\n");
    Write("/proc/sys/kernel/domainname", "(none)\n");
    Write("/etc/resolv.conf",
          "# managed\ndomain old.test\nnameserver 10.0.0.2\nnameserver 2001:db8::53\n"
          "search lab.test example.test\n");
    Nic("eth0", "02:4b:4e:00:10:05", "1", "1000", "0000:02:00.0", "virtio_net", "0x1003", "2");
    Nic("eth1", "02:4b:4e:00:10:06", "0", "-1", "0000:02:00.1", "virtio_net", "0x1003", "3");
    Write("/sys/class/net/br0/address", "02:4b:4e:00:10:07\n");
    Write("/sys/class/net/br0/flags", "0x1003\n");
    fs::create_directories(root_ + "/sys/class/net/br0/bridge");
    Write("/sys/class/net/br0/brif/eth1", "");
    fs::create_symlink("../br0", root_ + "/sys/class/net/eth1/master");
    Write("/sys/class/net/lo/address", "00:00:00:00:00:00\n");
    Write("/sys/class/dmi/id/sys_vendor", "  Tessera Computing Inc.  \n");
    Write("/sys/class/dmi/id/product_name", "TX740\n");
    Write("/proc/cpuinfo", kCpuInfo);
    Write("/proc/meminfo", "MemTotal:       16314564 kB\nMemFree:         1000 kB\n");
    Write("/etc/os-release",
          "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nNAME=\"Debian GNU/Linux\"\n"
          "VERSION_ID=\"12\"\n");
    Write("/proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
    Write("/proc/sys/kernel/version", "#1 SMP PREEMPT_DYNAMIC Debian 6.1.76-1 (2024-02-01)\n");
    Write("/usr/share/keymaps/i386/qwerty/us.kmap.gz", "");
    Write("/usr/share/keymaps/i386/qwertz/de.kmap.gz", "");
    Write("/usr/share/kbd/keymaps/i386/azerty/fr.map.gz", "");
    Write("/usr/share/kbd/keymaps/i386/qwerty/us.map.gz", "");
    Write("/etc/default/keyboard", "XKBMODEL=\"pc105\"\nXKBLAYOUT=\"de\"\n");
    host_ = std::make_unique<Linux::LinuxHost>(root_);
  }
  void Write(const std::string& path, const std::string& text) {
    KonuTest::WriteFileText(root_ + path, text);
  }
  void Nic(const std::string& name, const std::string& mac, const std::string& carrier,
           const std::string& speed, const std::string& pci, const std::string& driver,
           const std::string& flags, const std::string& index) {
    std::string dir = "/sys/class/net/" + name;
    Write(dir + "/address", mac + "\n");
    Write(dir + "/carrier", carrier + "\n");
    Write(dir + "/speed", speed + "\n");
    Write(dir + "/duplex", "full\n");
    Write(dir + "/flags", flags + "\n");
    Write(dir + "/ifindex", index + "\n");
    fs::create_directories(root_ + "/sys/devices/pci0000:00/" + pci);
    fs::create_directories(root_ + "/sys/bus/pci/drivers/" + driver);
    fs::create_symlink(root_ + "/sys/devices/pci0000:00/" + pci, root_ + dir + "/device");
    fs::create_symlink(root_ + "/sys/bus/pci/drivers/" + driver,
                       root_ + "/sys/devices/pci0000:00/" + pci + "/driver");
  }

  KonuTest::TempDir dir_;
  std::string root_ = dir_.Path();
  std::unique_ptr<Linux::LinuxHost> host_;
};

TEST(LinuxParsers, ProcNetRoute) {
  if (!LittleEndian()) GTEST_SKIP() << "fixture written for a little-endian machine";
  auto routes = Linux::ParseProcNetRoute(kRoute);
  ASSERT_EQ(routes.size(), 5u);  // the header is skipped
  EXPECT_EQ(routes[0].interface, "eth0");
  EXPECT_EQ(routes[0].gateway.GetStringAddress(), "10.0.0.1");
  EXPECT_TRUE(routes[0].hasGateway);
  EXPECT_EQ(routes[0].metric, 100u);
  EXPECT_EQ(routes[1].destination.GetStringAddress(), "10.0.0.0");
  EXPECT_EQ(routes[1].netmask.GetStringAddress(), "255.255.255.0");
  EXPECT_FALSE(routes[1].hasGateway);
  EXPECT_TRUE(Linux::ParseProcNetRoute("eth0 nothex 0 0 0 0 0 0\n").empty());
}

TEST(LinuxParsers, LocalAddressesGoToTheMostSpecificConnectedRoute) {
  if (!LittleEndian()) GTEST_SKIP() << "fixture written for a little-endian machine";
  auto local = Linux::ParseFibTrieLocalAddresses(kFibTrie);
  ASSERT_EQ(local.size(), 3u);  // 10.0.0.5 listed twice, kept once
  EXPECT_EQ(local[0].GetStringAddress(), "10.0.0.5");
  auto assigned = Linux::AssignIpv4Addresses(local, Linux::ParseProcNetRoute(kRoute));
  ASSERT_EQ(assigned.size(), 2u);  // 127.0.0.1 has no connected route in the main table
  EXPECT_EQ(assigned[0].interface, "eth0");
  EXPECT_EQ(assigned[0].netmask.GetStringAddress(), "255.255.255.0");
  EXPECT_EQ(assigned[1].interface, "br0");
  EXPECT_EQ(assigned[1].address.GetStringAddress(), "192.168.128.9");
  EXPECT_EQ(assigned[1].netmask.GetStringAddress(), "255.255.128.0");
}

TEST(LinuxParsers, IfInet6TypesAndScopes) {
  auto addresses = Linux::ParseIfInet6(kIfInet6);
  ASSERT_EQ(addresses.size(), 4u);  // the malformed line is skipped
  EXPECT_EQ(addresses[0].network.GetStringNetwork(), "2001:db8:10::5/64");
  EXPECT_EQ(addresses[0].network.GetIpv6AddressType(), Network::Ipv6AddressType::kStatic);
  EXPECT_EQ(addresses[1].network.GetIpv6Scope(), Network::Ipv6Scope::kLink);
  EXPECT_EQ(addresses[1].network.GetAddress().GetScopedStringAddress(), "fe80::4b:4e00:0:1005%eth0");
  EXPECT_EQ(addresses[2].network.GetIpv6AddressType(), Network::Ipv6AddressType::kAutoconf);
  EXPECT_EQ(addresses[3].network.GetIpv6Scope(), Network::Ipv6Scope::kNode);
}

TEST(LinuxParsers, ResolvConfLastDomainOrSearchWins) {
  auto conf = Linux::ParseResolvConf(
      "nameserver 10.0.0.2\nnameserver 2001:db8::53\nnameserver bogus\n"
      "search a.test b.test\ndomain c.test\n; comment\n");
  ASSERT_EQ(conf.nameServers.size(), 1u);
  ASSERT_EQ(conf.ipv6NameServers.size(), 1u);
  EXPECT_EQ(conf.domain, "c.test");
  EXPECT_TRUE(conf.search.empty());
  conf = Linux::ParseResolvConf("domain c.test\nsearch a.test b.test\n");
  EXPECT_EQ(conf.search, (std::vector<std::string>{"a.test", "b.test"}));
  EXPECT_EQ(conf.domain, "");
}

TEST(LinuxParsers, CpuAndMemory) {
  auto cpu = Linux::ParseCpuInfo(kCpuInfo);
  EXPECT_EQ(cpu.packages, 2u);
  EXPECT_EQ(cpu.cores, 4u);
  EXPECT_EQ(cpu.threads, 4u);
  EXPECT_EQ(cpu.model, "Sample(R) Server(R) 8-Core CPU @ 2.10GHz");
  // A machine that reports no package ids (many ARM boards) is one package.
  auto arm = Linux::ParseCpuInfo("processor\t: 0\nBogoMIPS\t: 48.00\n\nprocessor\t: 1\nBogoMIPS\t: 48.00\n");
  EXPECT_EQ(arm.packages, 1u);
  EXPECT_EQ(arm.cores, 2u);
  EXPECT_EQ(Linux::ParseMemTotalBytes("MemTotal:       16314564 kB\n"), 16314564ull * 1024);
  EXPECT_EQ(Linux::ParseMemTotalBytes("MemFree: 5 kB\n"), 0u);
}

TEST(LinuxParsers, KeyValuesWithQuotes) {
  auto values = Linux::ParseKeyValues("# c\nNAME=\"Debian GNU/Linux\"\nID=debian\nX='y z'\nbroken\n");
  EXPECT_EQ(values["NAME"], "Debian GNU/Linux");
  EXPECT_EQ(values["ID"], "debian");
  EXPECT_EQ(values["X"], "y z");
  EXPECT_EQ(values.count("broken"), 0u);
}

TEST_F(LinuxFixture, ManagementInterfaceAndItsAddresses) {
  if (!LittleEndian()) GTEST_SKIP() << "fixture written for a little-endian machine";
  auto info = host_->CreateNetworkInfo();
  info->UpdateManagementInterface();
  EXPECT_EQ(info->GetManagementInterfaceName(), "eth0");  // lowest-metric default route
  auto nic = info->GetManagementInterface();
  ASSERT_NE(nic, nullptr);
  EXPECT_TRUE(nic->IsUp());
  EXPECT_TRUE(nic->IsUsable());
  EXPECT_EQ(nic->GetMacAddress().GetStringAddress(), "02:4b:4e:00:10:05");
  auto config = nic->GetCurrentIpConfig();
  EXPECT_FALSE(config.GetUseDhcp());
  EXPECT_EQ(config.GetIpv4Address().GetStringAddress(), "10.0.0.5");
  EXPECT_EQ(config.GetIpv4Netmask().GetStringAddress(), "255.255.255.0");
  EXPECT_EQ(config.GetIpv4Gateway().GetStringAddress(), "10.0.0.1");
  EXPECT_EQ(config.GetIpv6Gateway().GetScopedStringAddress(), "fe80::1%eth0");
  EXPECT_EQ(config.GetIpv6Network().size(), 3u);
  EXPECT_EQ(nic->GetConnectionPoint().type, Network::ConnecteeType::kUnknown);
  EXPECT_TRUE(info->IsNukIpv6Enabled());
  EXPECT_FALSE(info->CanRestoreFactoryNetwork());  // so the console stops nothing for it
  try {
    nic->TakeDown();
    ADD_FAILURE() << "taking an interface down must not be attempted";
  } catch (const HostCtlException& e) {
    EXPECT_STREQ(e.what(), "not supported on this host");
  }
}

TEST_F(LinuxFixture, DhcpLeaseMarksTheInterfaceDhcp) {
  Write("/run/systemd/netif/leases/2", "ADDRESS=10.0.0.5\n");
  auto info = host_->CreateNetworkInfo();
  auto nic = info->GetManagementInterface();
  ASSERT_NE(nic, nullptr);
  EXPECT_TRUE(nic->GetConfiguredIpConfig().GetUseDhcp());
  EXPECT_TRUE(nic->GetDhcpBound());
}

TEST_F(LinuxFixture, NoRoutesAndNoAddressesMeansNoManagementInterface) {
  Write("/proc/net/route",
        "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n");
  Write("/proc/net/ipv6_route", "");
  Write("/proc/net/fib_trie", "");
  auto info = host_->CreateNetworkInfo();
  info->UpdateManagementInterface();
  EXPECT_EQ(info->GetManagementInterfaceName(), "");
  EXPECT_EQ(info->GetManagementInterface(), nullptr);
  Write("/proc/sys/net/ipv6/conf/all/disable_ipv6", "1\n");
  EXPECT_FALSE(info->IsNukIpv6Enabled());
}

TEST_F(LinuxFixture, PhysicalNicsAndBridges) {
  auto pnics = host_->CreateNetworkInfo()->GetPnics();
  ASSERT_EQ(pnics.size(), 2u);  // br0 and lo have no device
  EXPECT_EQ(pnics[0].name, "eth0");
  EXPECT_TRUE(pnics[0].linkUp);
  EXPECT_EQ(pnics[0].speedMbps, 1000u);
  EXPECT_EQ(pnics[0].driver, "virtio_net");
  EXPECT_EQ(pnics[0].GetHardwareLabel(), "0000:02:00.0");
  EXPECT_FALSE(pnics[1].linkUp);
  EXPECT_EQ(pnics[1].speedMbps, 0u);
  EXPECT_THROW(host_->CreateNetworkInfo()->GetPnic("br0"), HostCtlException);
  EXPECT_THROW(host_->CreateNetworkInfo()->GetPnic("../eth0"), HostCtlException);

  auto switches = host_->CreateVirtualSwitchInfo()->GetVirtualSwitches();
  ASSERT_EQ(switches.size(), 1u);
  EXPECT_EQ(switches[0].name, "br0");
  EXPECT_EQ(switches[0].uplinks, std::vector<std::string>{"eth1"});
  EXPECT_EQ(host_->CreateVirtualSwitchInfo()->GetPortGroup("br0").switchName, "br0");
  EXPECT_THROW(host_->CreateVirtualSwitchInfo()->SetPortGroupVlanId("br0", 5), HostCtlException);
}

TEST_F(LinuxFixture, ManagementOnABridge) {
  if (!LittleEndian()) GTEST_SKIP() << "fixture written for a little-endian machine";
  Write("/proc/net/route",
        "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n"
        "br0\t00000000\t0180A8C0\t0003\t0\t0\t0\t00000000\t0\t0\t0\n"
        "br0\t0080A8C0\t00000000\t0001\t0\t0\t0\t0080FFFF\t0\t0\t0\n");
  auto nic = host_->CreateNetworkInfo()->GetManagementInterface();
  ASSERT_NE(nic, nullptr);
  EXPECT_EQ(nic->GetName(), "br0");
  EXPECT_EQ(nic->GetCurrentIpConfig().GetIpv4Address().GetStringAddress(), "192.168.128.9");
  auto point = nic->GetConnectionPoint();
  EXPECT_EQ(point.type, Network::ConnecteeType::kPortGroup);
  EXPECT_EQ(point.switchName, "br0");
}

TEST_F(LinuxFixture, DnsAndRouting) {
  if (!LittleEndian()) GTEST_SKIP() << "fixture written for a little-endian machine";
  auto dns = host_->CreateDnsConfig(kDefaultTcpipStack);
  EXPECT_EQ(dns->GetHostname(), "konu-linux");
  EXPECT_EQ(dns->GetDomain(), "lab.test");  // no kernel domain: the first search domain
  EXPECT_EQ(dns->GetSearchDomains(), (std::vector<std::string>{"lab.test", "example.test"}));
  ASSERT_EQ(dns->GetNameServers().size(), 1u);
  EXPECT_EQ(dns->GetIpv6NameServers()[0].GetStringAddress(), "2001:db8::53");
  Write("/proc/sys/kernel/hostname", "node7.corp.test\n");
  dns->Refresh();
  EXPECT_EQ(dns->GetHostname(), "node7");
  EXPECT_EQ(dns->GetDomain(), "corp.test");
  EXPECT_THROW(dns->SetHostname("other", false), HostCtlException);
  EXPECT_THROW(host_->CreateDnsConfig("vmotion"), HostCtlException);

  auto routing = host_->CreateRoutingInfo(kDefaultTcpipStack);
  EXPECT_EQ(routing->GetNuKernelDefaultGateway().GetStringAddress(), "10.0.0.1");
  EXPECT_EQ(routing->GetIpv6NuKernelDefaultGateway().GetScopedStringAddress(), "fe80::1%eth0");
}

TEST_F(LinuxFixture, HardwareSupportFactsKeymapsAndVersion) {
  auto hw = host_->CreateHardwareInfo()->GetHardware();
  EXPECT_EQ(hw.vendor, "  Tessera Computing Inc.  ");  // trimmed by the screen, as reported here
  EXPECT_EQ(hw.product, "TX740");
  EXPECT_EQ(hw.cpuPackages, 2u);
  EXPECT_EQ(hw.memoryBytes, 16314564ull * 1024);
  // Support facts: trailing blanks dropped, a firmware placeholder is no value, an
  // unreadable file (no BIOS version here) is empty.
  Write("/sys/class/dmi/id/product_serial", "TX7-40321  \n");
  Write("/sys/class/dmi/id/chassis_asset_tag", "To Be Filled By O.E.M.\n");
  auto support = host_->CreateSupportInfo()->GetSupportFacts();
  EXPECT_EQ(support.serviceTag, "TX7-40321");
  EXPECT_EQ(support.assetTag, "");
  EXPECT_EQ(support.biosVersion, "");
  Write("/sys/class/dmi/id/bios_version", "2.14.1\n");
  EXPECT_EQ(host_->CreateSupportInfo()->GetSupportFacts().biosVersion, "2.14.1");

  auto system = host_->CreateSystemInfo();
  EXPECT_EQ(system->GetKeyboardLayouts(), (std::vector<std::string>{"de", "fr", "us"}));
  EXPECT_EQ(system->GetKeyboardLayout(), "de");
  Write("/etc/vconsole.conf", "KEYMAP=fr\n");
  EXPECT_EQ(system->GetKeyboardLayout(), "fr");
  EXPECT_EQ(system->GetWelcomeMessage(), "");

  auto sysinfo = host_->CreateSysinfoUtil();
  auto version = SystemVersionRecord::Decode(sysinfo->SysinfoGet(SystemVersionRecord::kNode, 312));
  EXPECT_EQ(version.productName, "Debian GNU/Linux");
  EXPECT_EQ(version.productVersion, "12");
  EXPECT_EQ(version.kernelVersion, "6.1.0-18-amd64");
  EXPECT_EQ(version.buildNumber, "1");
  EXPECT_EQ(sysinfo->SysinfoGet(BootOptionRecord::kNode, 4), (std::vector<uint8_t>{0, 0, 0, 0}));
  EXPECT_THROW(sysinfo->SysinfoGet("system.other", 4), HostCtlException);

  EXPECT_EQ(host_->CreateAdvancedOptions()->FindOption("/UserVars/NoSuchOption"), nullptr);
  EXPECT_FALSE(host_->CreateAdvancedOptions()->UserOptionExists("PXEBootEnabled"));
}

TEST(LinuxShellExec, ReturnsTheStatus) {
  Linux::LinuxHost host;
  auto exec = host.CreateShellExec();
  EXPECT_EQ(exec->NukCtl_Exec("exit 0", false, true, false), 0);
  EXPECT_EQ(exec->NukCtl_Exec("exit 42", false, true, false), 42);
  EXPECT_EQ(exec->NukCtl_Exec("kill -TERM $$", false, true, false), 128 + 15);
}

}  // namespace
