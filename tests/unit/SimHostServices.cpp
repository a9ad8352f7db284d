// The simulated host's services on a fresh host state in a temporary root, where the console
// tests do not reach: refusals, simulated DHCP and router advertisement, device order,
// injected operation faults, the event and audit logs and the shell exec. (The fresh host's
// interface, addresses and hardware as the console shows them: e2e.WelcomeScreen.* and
// e2e.NetworkScreen.PanesDrawFullyAndUnchangedDialogsApplyNothing.)
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/HostCtlException.h"
#include "host/sim/DefaultState.h"
#include "host/sim/SimHost.h"
#include "host/sim/SimServices.h"
#include "host/sim/StateFile.h"
#include "tests/harness/Files.h"

namespace fs = std::filesystem;
using namespace HostCtl;
using HostCtl::Lib::HostCtlException;
using nlohmann::json;

namespace {

class SimHostTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Konu::Sim::StateFile(root_).Write(Konu::Sim::DefaultHostState());
    host_ = std::make_unique<Sim::SimHost>(root_);
  }

  json State() const { return Konu::Sim::StateFile(root_).Read(); }
  void Set(const std::string& pointer, const json& value) {
    Konu::Sim::StateFile(root_).Update([&](json& s) { s[json::json_pointer(pointer)] = value; });
  }
  void Fault(const std::string& operation, const std::string& message) {
    Konu::Sim::StateFile(root_).Update([&](json& s) { s["faults"]["operations"][operation] = message; });
  }
  std::string ReadFile(const std::string& relative) const { return KonuTest::ReadFileText(root_ + relative); }
  std::unique_ptr<Network::NukNic> Management() {
    auto info = host_->CreateNetworkInfo();
    info->UpdateManagementInterface();
    auto nic = info->GetManagementInterface();
    EXPECT_NE(nic, nullptr);
    return nic;
  }

  KonuTest::TempDir dir_;
  std::string root_ = dir_.Path();
  std::unique_ptr<Sim::SimHost> host_;
};

// The message an operation throws, or "" when it does not throw.
template <typename F>
std::string Thrown(F&& call) {
  try {
    call();
  } catch (const HostCtlException& e) {
    return e.what();
  }
  return "";
}

TEST_F(SimHostTest, NoManagementInterfaceGivesNull) {
  Set("/network/managementInterface", "nuk9");
  auto info = host_->CreateNetworkInfo();
  info->UpdateManagementInterface();
  EXPECT_EQ(info->GetManagementInterfaceName(), "");
  EXPECT_EQ(info->GetManagementInterface(), nullptr);
}

// (A static IPv4 change written and read back: e2e.NetworkAddresses.TypicalStaticChangeFromTheMenu...)
TEST_F(SimHostTest, AStaticIpv6AddressIsReadBackAndABadNetmaskRefused) {
  auto nic = Management();
  auto config = nic->GetConfiguredIpConfig();
  config.AddIpv6Network(Network::Ipv6Network(Network::Ipv6Address("2001:db8:99::1"), 48));
  nic->SetIpConfig(config);
  auto current = nic->GetCurrentIpConfig();
  ASSERT_EQ(current.GetIpv6Network().size(), 4u);
  EXPECT_EQ(current.GetIpv6Network()[3].GetStringNetwork(), "2001:db8:99::1/48");

  config.SetIpv4Netmask(Network::Ipv4Address("255.0.255.0"));
  EXPECT_NE(Thrown([&] { nic->SetIpConfig(config); }).find("Invalid netmask"), std::string::npos);
  EXPECT_EQ(nic->GetConfiguredIpConfig().GetIpv4Netmask().GetStringAddress(), "255.255.255.0");
}

// Without a server DHCP gives 0.0.0.0 until the lease is renewed; a restart renews it too.
// (With a server the lease is there at once: e2e.NetworkAddresses.SwitchingToDhcpTakesTheLease.)
TEST_F(SimHostTest, DhcpLeaseComesWithARenewalOrARestart) {
  Set("/network/dhcpServer/available", false);
  auto nic = Management();
  auto config = nic->GetConfiguredIpConfig();
  config.SetUseDhcp(true);
  nic->SetIpConfig(config);
  EXPECT_TRUE(nic->GetCurrentIpConfig().GetUseDhcp());
  EXPECT_EQ(nic->GetCurrentIpConfig().GetIpv4Address().GetStringAddress(), "0.0.0.0");
  Set("/network/dhcpServer/available", true);
  EXPECT_EQ(nic->GetCurrentIpConfig().GetIpv4Address().GetStringAddress(), "0.0.0.0");
  nic->RenewIpv4Lease();
  auto current = nic->GetCurrentIpConfig();
  EXPECT_EQ(current.GetIpv4Address().GetStringAddress(), "10.0.0.77");
  EXPECT_EQ(current.GetIpv4Netmask().GetStringAddress(), "255.255.255.0");
  // The configured static address is kept for a later switch back.
  EXPECT_EQ(nic->GetConfiguredIpConfig().GetIpv4Address().GetStringAddress(), "10.0.0.5");

  Set("/network/dhcpServer/lease/address", "10.0.0.88");
  nic->TakeDown();
  EXPECT_FALSE(nic->IsUp());
  nic->Refresh();
  nic->BringUp();
  EXPECT_TRUE(nic->IsUp());
  EXPECT_EQ(nic->GetCurrentIpConfig().GetIpv4Address().GetStringAddress(), "10.0.0.88");
}

TEST_F(SimHostTest, RenewingAStaticInterfaceFails) {
  auto nic = Management();
  EXPECT_NE(Thrown([&] { nic->RenewIpv4Lease(); }).find("not configured for DHCP"), std::string::npos);
}

TEST_F(SimHostTest, NoneClearsTheCurrentIpv4Address) {
  auto nic = Management();
  auto config = nic->GetConfiguredIpConfig();
  config.SetUseDhcp(false, true);
  nic->SetIpConfig(config);
  EXPECT_TRUE(nic->GetCurrentIpConfig().GetIpv4Address().IsZero());
  EXPECT_TRUE(nic->GetConfiguredIpConfig().GetIpv4UseNone());
}

TEST_F(SimHostTest, Ipv6DhcpAndRouterAdvertisementAddAddresses) {
  auto nic = Management();
  auto config = nic->GetConfiguredIpConfig();
  config.SetUseIpv6Dhcp(true);
  config.SetUseIpv6RouterAdvertised(true);
  nic->SetIpConfig(config);
  auto networks = nic->GetCurrentIpConfig().GetIpv6Network();
  ASSERT_EQ(networks.size(), 5u);
  EXPECT_EQ(networks[3].GetStringNetwork(), "2001:db8:10::77/128");
  EXPECT_EQ(networks[3].GetIpv6AddressType(), Network::Ipv6AddressType::kDhcp);
  // EUI-64 of 02:4b:4e:6a:10:05 on the gateway's /64.
  EXPECT_EQ(networks[4].GetStringAddress(), "2001:db8:10:0:4b:4eff:fe6a:1005");
  EXPECT_EQ(networks[4].GetIpv6AddressType(), Network::Ipv6AddressType::kAutoconf);
  // Leased and autoconfigured addresses are not written back as configured ones.
  EXPECT_EQ(nic->GetConfiguredIpConfig().GetIpv6Network().size(), 3u);
  nic->SetIpConfig(nic->GetCurrentIpConfig());
  EXPECT_EQ(State()["network"]["nukNics"]["nuk0"]["ipv6"]["addresses"].size(), 3u);
}

TEST_F(SimHostTest, KernelWithoutIpv6HasNoIpv6Addresses) {
  Set("/network/ipv6Enabled", false);
  auto info = host_->CreateNetworkInfo();
  EXPECT_FALSE(info->IsNukIpv6Enabled());
  EXPECT_TRUE(Management()->GetCurrentIpConfig().GetIpv6Network().empty());
  info->SetNukIpv6Enabled(true);
  EXPECT_FALSE(info->IsNukIpv6Enabled());  // only after a reboot
  EXPECT_EQ(State()["network"]["ipv6EnabledAfterReboot"], true);
}

// (A NIC's MAC taken over: e2e.NetworkScreen.AdaptersKeepTheOrderOfMarkingAndMoveANicOffItsOtherSwitch.)
TEST_F(SimHostTest, MacAddressOfAnUnknownNicIsRefused) {
  EXPECT_NE(Thrown([&] { Management()->SetMacAddressFromPnic("nic9"); }).find("nic9"), std::string::npos);
}

TEST_F(SimHostTest, PhysicalNicsInDeviceOrder) {
  Set("/network/pnics/nic10", json{{"label", "Slot 9 Port 1"},
                                   {"mac", "02:4b:4e:8a:40:20"},
                                   {"linkUp", true},
                                   {"speedMbps", 25000},
                                   {"duplex", "Full"},
                                   {"driver", "virtio_net"}});
  auto pnics = host_->CreateNetworkInfo()->GetPnics();
  ASSERT_EQ(pnics.size(), 5u);
  EXPECT_EQ(pnics[0].name, "nic0");
  EXPECT_EQ(pnics[4].name, "nic10");
  EXPECT_EQ(pnics[3].name, "nic3");
  EXPECT_FALSE(pnics[3].linkUp);
  EXPECT_EQ(pnics[3].speedMbps, 0u);
  EXPECT_EQ(pnics[0].GetHardwareLabel(), "Onboard LAN 1");
  EXPECT_EQ(pnics[0].macAddress.GetStringAddress(), "02:4b:4e:8a:40:10");
  EXPECT_THROW(host_->CreateNetworkInfo()->GetPnic("nic7"), HostCtlException);
}

TEST_F(SimHostTest, UplinksAndTeamingPolicy) {
  auto switches = host_->CreateVirtualSwitchInfo();
  auto pg = switches->GetPortGroup("Management Network");
  EXPECT_EQ(pg.switchName, "vSwitch0");
  EXPECT_TRUE(pg.teamingPolicy.HasUplinkOrder());
  EXPECT_EQ(pg.teamingPolicy.GetUplinkOrder(), std::vector<std::string>{"nic0"});
  EXPECT_EQ(pg.teamingPolicy.GetMaxActiveUplinks(), 1u);

  EXPECT_NE(Thrown([&] { switches->AddUplink("vSwitch0", "nic1"); }).find("already an uplink"),
            std::string::npos);
  switches->AddUplink("vSwitch0", "nic2");
  auto policy = pg.teamingPolicy;
  policy.SetUplinkOrder({"nic0", "nic2"}, {"nic1"});
  policy.SetMaxActiveUplinks(2);
  switches->SetPortGroupTeamingPolicy("Management Network", policy);
  EXPECT_EQ(switches->GetPortGroup("Management Network").teamingPolicy, policy);

  switches->RemoveUplink("vSwitch0", "nic0");
  auto after = switches->GetPortGroup("Management Network").teamingPolicy;
  EXPECT_EQ(after.GetUplinkOrder(), std::vector<std::string>{"nic2"});
  EXPECT_EQ(switches->GetVirtualSwitch("vSwitch0").uplinks, (std::vector<std::string>{"nic1", "nic2"}));
  policy.SetUplinkOrder({"nic0"});
  EXPECT_NE(Thrown([&] {
              switches->SetPortGroupTeamingPolicy("Management Network", policy);
            }).find("not an uplink"),
            std::string::npos);
}

TEST_F(SimHostTest, VlanIdsAndNewSwitches) {
  auto switches = host_->CreateVirtualSwitchInfo();
  switches->SetPortGroupVlanId("Management Network", 4095);
  EXPECT_EQ(switches->GetPortGroup("Management Network").vlanId, 4095);
  EXPECT_THROW(switches->SetPortGroupVlanId("Management Network", 4096), HostCtlException);
  EXPECT_THROW(switches->SetPortGroupVlanId("No Such Group", 5), HostCtlException);
  switches->AddVirtualSwitch("vSwitch1");
  switches->AddPortGroup("vSwitch1", "Restored Network", 12);
  EXPECT_THROW(switches->AddPortGroup("vSwitch1", "VM Network", 0), HostCtlException);
  auto nic = Management();
  nic->SetPortGroup("Restored Network");
  EXPECT_EQ(nic->GetConnectionPoint().switchName, "vSwitch1");
  EXPECT_EQ(switches->GetVirtualSwitches().size(), 2u);
}

TEST_F(SimHostTest, DistributedSwitchPorts) {
  Set("/network/dvSwitches/dvs-corp", json{{"uplinks", {"nic2", "nic3"}}, {"ports", json::object()}});
  Set("/network/nukNics/nuk0/switch", "dvs-corp");
  Set("/network/nukNics/nuk0/dvsPort", "17");
  auto point = Management()->GetConnectionPoint();
  EXPECT_EQ(point.type, Network::ConnecteeType::kDvsPort);
  EXPECT_EQ(point.dvsPortKey, "17");
  auto switches = host_->CreateVirtualSwitchInfo();
  EXPECT_THROW(switches->AddUplink("vSwitch0", "nic2"), HostCtlException);
  switches->RemoveDVSwitchUplink("dvs-corp", "nic2");
  switches->AddUplink("vSwitch0", "nic2");
  EXPECT_EQ(switches->GetDVSwitches()[0].uplinks, std::vector<std::string>{"nic3"});
}

TEST_F(SimHostTest, DnsConfiguration) {
  auto dns = host_->CreateDnsConfig(kDefaultTcpipStack);
  dns->Refresh();
  EXPECT_EQ(dns->GetHostname(), "konu-host");
  EXPECT_EQ(dns->GetDomain(), "example.test");
  EXPECT_FALSE(dns->GetDhcp());
  dns->SetFqdn("node7.lab.example.test", false, "");
  EXPECT_EQ(dns->GetHostname(), "node7");
  EXPECT_EQ(dns->GetDomain(), "lab.example.test");
  dns->SetHostname("node8", false);
  EXPECT_EQ(dns->GetDomain(), "lab.example.test");
  EXPECT_THROW(dns->SetHostname("bad_name", false), HostCtlException);
  EXPECT_THROW(dns->SetHostname("a.b", false), HostCtlException);

  dns->RemoveNameServers();
  dns->AddNameServer(Network::Ipv4Address("10.1.1.1"));
  dns->AddNameServer(Network::Ipv6Address("2001:db8::53"));
  EXPECT_EQ(dns->GetNameServers().size(), 1u);
  ASSERT_EQ(dns->GetIpv6NameServers().size(), 1u);
  EXPECT_EQ(dns->GetIpv6NameServers()[0].GetStringAddress(), "2001:db8::53");
  EXPECT_THROW(dns->AddNameServer(Network::Ipv4Address()), HostCtlException);

  dns->SetSearchDomainsString(dns->GetDomain());
  for (const char* suffix : {"a.test", "b.test", "a.test"}) dns->AddSearchDomain(suffix);
  EXPECT_EQ(dns->GetSearchDomains(), (std::vector<std::string>{"lab.example.test", "a.test", "b.test"}));
  dns->SetSearchDomainsString("x.test, y.test,,z.test");
  EXPECT_EQ(dns->GetSearchDomains(), (std::vector<std::string>{"x.test", "y.test", "z.test"}));
  dns->SaveConfig();
  EXPECT_THROW(host_->CreateDnsConfig("otherStack"), HostCtlException);
}

TEST_F(SimHostTest, DefaultGateways) {
  auto routing = host_->CreateRoutingInfo(kDefaultTcpipStack);
  EXPECT_EQ(routing->GetNuKernelDefaultGateway().GetStringAddress(), "10.0.0.1");
  EXPECT_EQ(routing->GetIpv6NuKernelDefaultGateway().GetStringAddress(), "2001:db8:10::1");
  routing->SetNuKernelDefaultGateway(Network::Ipv4Address("10.0.0.254"), false);
  routing->SetIpv6NuKernelDefaultGateway(Network::Ipv6Address("fe80::1%nuk0"));
  EXPECT_EQ(routing->GetNuKernelDefaultGateway().GetStringAddress(), "10.0.0.254");
  EXPECT_EQ(routing->GetIpv6NuKernelDefaultGateway().GetScopedStringAddress(), "fe80::1%nuk0");
  EXPECT_THROW(routing->SetIpv6NuKernelDefaultGateway(Network::Ipv6Address("fe80::1")), HostCtlException);
  routing->SetNuKernelDefaultGateway(Network::Ipv4Address(), false);
  EXPECT_TRUE(routing->GetNuKernelDefaultGateway().IsZero());
}

TEST_F(SimHostTest, HardwareSmartCardsAndVersionRecord) {
  auto hw = host_->CreateHardwareInfo()->GetHardware();
  EXPECT_EQ(hw.vendor, "Tessera Computing Inc.");
  EXPECT_EQ(hw.cpuPackages, 2u);
  EXPECT_EQ(hw.memoryBytes, 33554432ull * 4096);
  Set("/hardware/memoryPages", 1073741823);
  Set("/hardware/pageSize", 1);
  EXPECT_EQ(host_->CreateHardwareInfo()->GetHardware().memoryBytes, 1073741823u);

  auto cards = host_->CreateSmartCardInfo();
  ASSERT_EQ(cards->GetSlots().size(), 1u);
  EXPECT_FALSE(cards->GetSlots()[0].token.has_value());
  Set("/smartCards/slots/0/token", json{{"userId", "root"}});
  ASSERT_TRUE(cards->GetSlots()[0].token.has_value());
  EXPECT_EQ(cards->GetSlots()[0].token->userId, "root");

  auto sysinfo = host_->CreateSysinfoUtil();
  auto version = SystemVersionRecord::Decode(sysinfo->SysinfoGet(SystemVersionRecord::kNode, 312));
  EXPECT_EQ(version.productName, "Orin NuKernel");
  EXPECT_EQ(version.buildNumber, "21203435");
  EXPECT_EQ(sysinfo->SysinfoGet(BootOptionRecord::kNode, 4)[0], 0);
  Set("/bootOption", 1);
  EXPECT_EQ(sysinfo->SysinfoGet(BootOptionRecord::kNode, 4), (std::vector<uint8_t>{1, 0, 0, 0}));
  EXPECT_THROW(sysinfo->SysinfoGet("system.nothing", 4), HostCtlException);
}

TEST_F(SimHostTest, SystemInfoKeyboardAndFirewall) {
  auto system = host_->CreateSystemInfo();
  EXPECT_EQ(system->GetWelcomeMessage(), "");
  EXPECT_EQ(system->GetKeyboardLayout(), "US Default");
  EXPECT_EQ(system->GetKeyboardLayouts().front(), "Belgian");
  system->LoadKeyboardMappings("German");
  system->SetKeyboardLayout("German");
  EXPECT_EQ(system->GetKeyboardLayout(), "German");
  EXPECT_EQ(State()["keyboard"]["loaded"], "German");
  EXPECT_THROW(system->SetKeyboardLayout("Klingon"), HostCtlException);
  EXPECT_EQ(system->GetKeyboardLayout(), "German");

  EXPECT_FALSE(system->GetFirewallRulesetById("sshServer").enabled);
  system->SetFirewallRulesetEnabled("sshServer", true);
  EXPECT_TRUE(system->GetFirewallRulesetById("sshServer").enabled);
  EXPECT_THROW(system->GetFirewallRulesetById("nfsClient"), HostCtlException);

  system->SetSystemAlert("Mgmtd core dump completed");
  EXPECT_EQ(State()["host"]["systemAlert"], "Mgmtd core dump completed");
}

TEST_F(SimHostTest, AdvancedOptions) {
  auto options = host_->CreateAdvancedOptions();
  auto found = options->FindOption("/UserVars/KonuTimeOut");
  auto* integer = dynamic_cast<Adv::AdvancedIntegerOption*>(found.get());
  ASSERT_NE(integer, nullptr);
  EXPECT_EQ(integer->GetValue(), 600);
  EXPECT_EQ(integer->GetDefault(), 600);
  options->SetIntegerValue("/UserVars/KonuTimeOut", 1800);
  EXPECT_EQ(
      dynamic_cast<Adv::AdvancedIntegerOption&>(*options->FindOption("/UserVars/KonuTimeOut")).GetValue(),
      1800);
  EXPECT_THROW(options->SetIntegerValue("/UserVars/KonuTimeOut", 86401), HostCtlException);

  auto text = options->FindOption("/UserVars/HostClientWelcomeMessage");
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(dynamic_cast<Adv::AdvancedIntegerOption*>(text.get()), nullptr);
  EXPECT_NE(Thrown([&] {
              options->SetIntegerValue("/UserVars/HostClientWelcomeMessage", 1);
            }).find("not an integer option"),
            std::string::npos);
  EXPECT_EQ(options->FindOption("/UserVars/Missing"), nullptr);
  EXPECT_THROW(options->SetIntegerValue("/UserVars/Missing", 1), HostCtlException);

  EXPECT_FALSE(options->UserOptionExists("PXEBootEnabled"));
  Set("/userOptions/PXEBootEnabled", true);
  EXPECT_TRUE(options->UserOptionExists("PXEBootEnabled"));
  EXPECT_EQ(options->GetUserOption("PXEBootEnabled"), "true");
}

TEST_F(SimHostTest, InjectedFaultsThrowTheirMessage) {
  Fault("NukNic.SetIpConfig", "Sysinfo error: Busy");
  Fault("RoutingInfo.SetNuKernelDefaultGateway", "Unable to set default gateway");
  Fault("NetworkInfo.GetPnics", "Unable to list physical NICs");
  auto nic = Management();
  auto config = nic->GetConfiguredIpConfig();
  config.SetIpv4Address(Network::Ipv4Address("10.0.0.6"));
  EXPECT_EQ(Thrown([&] { nic->SetIpConfig(config); }), "Sysinfo error: Busy");
  EXPECT_EQ(nic->GetConfiguredIpConfig().GetIpv4Address().GetStringAddress(), "10.0.0.5");
  auto routing = host_->CreateRoutingInfo(kDefaultTcpipStack);
  EXPECT_EQ(Thrown([&] { routing->SetNuKernelDefaultGateway(Network::Ipv4Address("10.0.0.9"), false); }),
            "Unable to set default gateway");
  EXPECT_EQ(routing->GetNuKernelDefaultGateway().GetStringAddress(), "10.0.0.1");  // reads still work
  EXPECT_EQ(Thrown([&] { host_->CreateNetworkInfo()->GetPnics(); }), "Unable to list physical NICs");
  Set("/faults/operations/NukNic.SetIpConfig", nullptr);
  nic->SetIpConfig(config);
  EXPECT_EQ(nic->GetConfiguredIpConfig().GetIpv4Address().GetStringAddress(), "10.0.0.6");
}

TEST_F(SimHostTest, MalformedStateFileBecomesAHostError) {
  std::ofstream(root_ + "/etc/konu-sim/host.json") << "{ \"network\": ";
  std::string message = Thrown([&] { host_->CreateHardwareInfo()->GetHardware(); });
  EXPECT_NE(message.find("host.json"), std::string::npos) << message;
}

TEST_F(SimHostTest, EventsAreLoggedOneLineEachAndFaultsStopEventsAndAudit) {
  auto events = host_->CreateEventLib();
  EXPECT_EQ(events->ZebUserLib_AddZeb("before init"), 2);
  ASSERT_EQ(events->ZebUserLib_Init(), 0);
  EXPECT_EQ(events->ZebUserLib_AddZeb("@&!*@*@(zeb.user.konu.reboot.host)Rebooting host"), 0);
  events->ZebUserLib_Close();
  std::string zebd = ReadFile("/var/log/zebd.log");
  EXPECT_NE(zebd.find("KONU["), std::string::npos);
  EXPECT_NE(zebd.find("@&!*@*@(zeb.user.konu.reboot.host)Rebooting host\n"), std::string::npos);
  EXPECT_EQ(zebd.find("before init"), std::string::npos);

  Fault("EventLib.ZebUserLib_Init", "event service down");
  EXPECT_EQ(host_->CreateEventLib()->ZebUserLib_Init(), 1);

  // The audit records as the console writes them: e2e.ConsoleLogin.* and e2e.WelcomeSession.*.
  auto audit = host_->CreateAuditLog();
  Fault("AuditLog.CblAudit_VLog", "audit store full");
  EXPECT_EQ(Thrown([&] { audit->CblAudit_VLog("login.connect", "root", "", 1, {}); }), "audit store full");
}

TEST_F(SimHostTest, ShellExecRunsTheRootsToolsOnly) {
  fs::create_directories(root_ + "/bin");
  fs::create_directories(root_ + "/sbin");
  fs::create_directories(root_ + "/var/log");
  fs::create_symlink("/bin/sh", root_ + "/bin/sh");
  std::ofstream(root_ + "/sbin/services.sh") << "echo \"$1\" > \"$KONU_HOST_ROOT/var/log/services.out\"\npwd "
                                                ">> \"$KONU_HOST_ROOT/var/log/services.out\"\n"
                                                "exit 3\n";
  auto exec = host_->CreateShellExec();
  EXPECT_EQ(exec->NukCtl_Exec("/bin/sh /sbin/services.sh stop", false, true, false), 3);
  EXPECT_EQ(ReadFile("/var/log/services.out"), "stop\n" + fs::canonical(root_).string() + "\n");
  // The machine's own commands are not on the search path.
  EXPECT_EQ(exec->NukCtl_Exec("ls > /dev/null 2>&1", false, true, false), 127);
  EXPECT_EQ(exec->NukCtl_Exec("exit 5", false, true, false), 5);
  EXPECT_EQ(exec->NukCtl_Exec("kill -9 $$", false, true, false), 128 + 9);
  Fault("ShellExec.NukCtl_Exec", "exec refused");
  EXPECT_EQ(Thrown([&] { exec->NukCtl_Exec("exit 0", false, true, false); }), "exec refused");
}

TEST(SimShellCommandLine, ProgramsScriptsAndRedirectionsMoveUnderTheRoot) {
  EXPECT_EQ(Sim::RootedCommandLine("/r", "/bin/sh /sbin/services.sh stop"),
            "/r/bin/sh /r/sbin/services.sh stop");
  EXPECT_EQ(Sim::RootedCommandLine("/r", "/bin/sh -e /sbin/services.sh start"),
            "/r/bin/sh -e /r/sbin/services.sh start");
  // Arguments stay host paths: the tools read them under their own root.
  EXPECT_EQ(Sim::RootedCommandLine("/r", "/sbin/nukbacktrace -w -n mgmtd -o mgmtd-restart% -d /var/log/"),
            "/r/sbin/nukbacktrace -w -n mgmtd -o mgmtd-restart% -d /var/log/");
  EXPECT_EQ(Sim::RootedCommandLine("/r", "/sbin/firmwareConfig.py --reset-only > /dev/null 2>&1"),
            "/r/sbin/firmwareConfig.py --reset-only > /dev/null 2>&1");
  EXPECT_EQ(Sim::RootedCommandLine("/r", "tool >/dev/console 2> /var/log/x.err; /bin/true && poweroff"),
            "tool >/r/dev/console 2> /r/var/log/x.err; /r/bin/true && poweroff");
  EXPECT_EQ(Sim::RootedCommandLine("/r", "poweroff"), "poweroff");
}

}  // namespace
