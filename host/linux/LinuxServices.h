// The real Linux backend's service classes. They read files under the backend's root (procfs,
// sysfs, /etc); operations that would change the machine throw "not supported on this host".
// Made by LinuxHost; nothing outside host/linux/ names them.
#pragma once

#include <memory>
#include <string>

#include "host/Host.h"
#include "host/linux/LinuxOptions.h"
#include "host/linux/ProcParsers.h"

namespace HostCtl::Linux {

// Files of the machine seen through a root ("/" or a fixture tree).
class LinuxFiles {
 public:
  explicit LinuxFiles(std::string root) : root_(std::move(root)) {}
  const std::string& Root() const { return root_; }
  std::string Path(const std::string& absolute) const { return root_ == "/" ? absolute : root_ + absolute; }
  // The file's text, or "" when it cannot be read.
  std::string Read(const std::string& absolute) const;
  // The first line without its line end.
  std::string ReadLine(const std::string& absolute) const;
  bool Exists(const std::string& absolute) const;
  // Names in a directory, sorted; empty when it cannot be read.
  std::vector<std::string> List(const std::string& absolute) const;
  // Last component of a symbolic link's target ("" when it is no link).
  std::string LinkName(const std::string& absolute) const;

  // Facts assembled from several files.
  std::vector<InterfaceIpv4> Ipv4Addresses() const;
  std::vector<InterfaceIpv6> Ipv6Addresses() const;
  std::vector<Ipv4Route> Ipv4Routes() const { return ParseProcNetRoute(Read("/proc/net/route")); }
  std::vector<Ipv6Route> Ipv6Routes() const { return ParseProcNetIpv6Route(Read("/proc/net/ipv6_route")); }
  // The host name as the kernel has it, else /etc/hostname.
  std::string FullHostname() const;

 private:
  std::string root_;
};

[[noreturn]] void ThrowNotSupported();

class LinuxNetworkInfo : public Network::NetworkInfo {
 public:
  explicit LinuxNetworkInfo(std::string root) : files_(std::move(root)) {}
  void UpdateManagementInterface() override;
  std::string GetManagementInterfaceName() const override { return managementInterface_; }
  std::unique_ptr<Network::NukNic> GetManagementInterface() override;
  bool IsNukIpv6Enabled() const override;
  void SetNukIpv6Enabled(bool enabled) override;
  std::vector<Network::Pnic> GetPnics() const override;
  Network::Pnic GetPnic(const std::string& name) const override;
  void RestoreFactoryNetwork() override { ThrowNotSupported(); }
  bool CanRestoreFactoryNetwork() const override { return false; }

 private:
  LinuxFiles files_;
  std::string managementInterface_;
  bool updated_ = false;
};

class LinuxNukNic : public Network::NukNic {
 public:
  LinuxNukNic(std::string root, std::string name);
  std::string GetName() const override { return name_; }
  bool IsStale() const override { return false; }  // every call reads the machine afresh
  void Refresh() override;
  bool IsUsable() const override;
  Network::IpConfig GetConfiguredIpConfig() const override;
  Network::IpConfig GetCurrentIpConfig() const override { return GetConfiguredIpConfig(); }
  void SetIpConfig(const Network::IpConfig&) override { ThrowNotSupported(); }
  Network::MacAddress GetMacAddress() const override;
  void SetMacAddress(const Network::MacAddress&) override { ThrowNotSupported(); }
  void SetMacAddressFromPnic(const std::string&) override { ThrowNotSupported(); }
  bool GetDhcpBound() const override;
  void SetDhcpBound(bool) override { ThrowNotSupported(); }
  void RenewIpv4Lease() override { ThrowNotSupported(); }
  void RenewIpv6Lease() override { ThrowNotSupported(); }
  void TakeDown() override { ThrowNotSupported(); }
  void BringUp() override { ThrowNotSupported(); }
  bool IsUp() const override;
  Network::ConnectionPoint GetConnectionPoint() const override;
  void SetPortGroup(const std::string&) override { ThrowNotSupported(); }

 private:
  // True when a DHCP client holds a lease for this interface (systemd-networkd or dhclient).
  bool UsesDhcp() const;
  LinuxFiles files_;
  std::string name_;
};

class LinuxVirtualSwitchInfo : public Network::VirtualSwitchInfo {
 public:
  explicit LinuxVirtualSwitchInfo(std::string root) : files_(std::move(root)) {}
  std::vector<Network::VirtualSwitch> GetVirtualSwitches() const override;
  std::vector<Network::DVSwitch> GetDVSwitches() const override { return {}; }
  Network::VirtualSwitch GetVirtualSwitch(const std::string& name) const override;
  Network::PortGroup GetPortGroup(const std::string& name) const override;
  void AddUplink(const std::string&, const std::string&) override { ThrowNotSupported(); }
  void RemoveUplink(const std::string&, const std::string&) override { ThrowNotSupported(); }
  void RemoveDVSwitchUplink(const std::string&, const std::string&) override { ThrowNotSupported(); }
  void SetPortGroupVlanId(const std::string&, uint16_t) override { ThrowNotSupported(); }
  void SetPortGroupTeamingPolicy(const std::string&, const Network::NicTeamingPolicy&) override {
    ThrowNotSupported();
  }
  void AddVirtualSwitch(const std::string&) override { ThrowNotSupported(); }
  void AddPortGroup(const std::string&, const std::string&, uint16_t) override { ThrowNotSupported(); }

 private:
  LinuxFiles files_;
};

class LinuxDnsConfig : public Network::DnsConfig {
 public:
  explicit LinuxDnsConfig(std::string root) : files_(std::move(root)) { Refresh(); }
  void Refresh() override;
  std::string GetHostname() const override;
  std::string GetDomain() const override;
  bool GetDhcp() const override { return false; }
  void SetHostname(const std::string&, bool) override { ThrowNotSupported(); }
  void SetFqdn(const std::string&, bool, const std::string&) override { ThrowNotSupported(); }
  std::vector<Network::Ipv4Address> GetNameServers() const override { return resolv_.nameServers; }
  std::vector<Network::Ipv6Address> GetIpv6NameServers() const override { return resolv_.ipv6NameServers; }
  void RemoveNameServers() override { ThrowNotSupported(); }
  void AddNameServer(const Network::Ipv4Address&) override { ThrowNotSupported(); }
  void AddNameServer(const Network::Ipv6Address&) override { ThrowNotSupported(); }
  std::vector<std::string> GetSearchDomains() const override;
  void SetSearchDomainsString(const std::string&) override { ThrowNotSupported(); }
  void AddSearchDomain(const std::string&) override { ThrowNotSupported(); }
  void SaveConfig() override { ThrowNotSupported(); }
  bool ResolveHostname(const std::string& name, const std::atomic<bool>& stop) override;

 private:
  LinuxFiles files_;
  std::string hostname_;
  ResolvConf resolv_;
};

class LinuxRoutingInfo : public Network::RoutingInfo {
 public:
  explicit LinuxRoutingInfo(std::string root) : files_(std::move(root)) {}
  Network::Ipv4Address GetNuKernelDefaultGateway() const override;
  Network::Ipv6Address GetIpv6NuKernelDefaultGateway() const override;
  void SetNuKernelDefaultGateway(const Network::Ipv4Address&, bool) override { ThrowNotSupported(); }
  void SetIpv6NuKernelDefaultGateway(const Network::Ipv6Address&) override { ThrowNotSupported(); }

 private:
  LinuxFiles files_;
};

class LinuxHardwareInfo : public HardwareInfo {
 public:
  explicit LinuxHardwareInfo(std::string root) : files_(std::move(root)) {}
  Hardware GetHardware() const override;

 private:
  LinuxFiles files_;
};

class LinuxSystemInfo : public SystemInfo {
 public:
  explicit LinuxSystemInfo(std::string root) : files_(std::move(root)) {}
  std::string GetWelcomeMessage() const override { return ""; }
  void SetSystemAlert(const std::string& text) override;
  std::string GetKeyboardLayout() const override;
  std::vector<std::string> GetKeyboardLayouts() const override;
  // loadkeys: for this boot only.
  void LoadKeyboardMappings(const std::string& layout) override;
  // localectl set-keymap (loads and keeps it), or loadkeys where localectl is missing. The
  // layout before KONU's first change is kept in /etc/konu/keyboard.orig for the reset.
  void SetKeyboardLayout(const std::string& layout) override;
  FirewallRuleset GetFirewallRulesetById(const std::string&) const override { ThrowNotSupported(); }
  void SetFirewallRulesetEnabled(const std::string&, bool) override { ThrowNotSupported(); }
  // Not asked of libvirt here: the console then warns as if machines ran.
  bool HasRunningVms() const override { ThrowNotSupported(); }
  // The machine's accounts as PAM sees them (the name service, not files under the root).
  bool HasAccount(const std::string& name) const override;

 private:
  LinuxFiles files_;
};

// The advanced options KONU keeps in its own file (LinuxOptions); no user options.
class LinuxAdvancedOptions : public Adv::AdvancedOptions {
 public:
  explicit LinuxAdvancedOptions(std::string root) : options_(std::move(root)) {}
  std::unique_ptr<Adv::AdvancedOption> FindOption(const std::string& path) const override;
  void SetIntegerValue(const std::string& path, int64_t value) override;
  void SetStringValue(const std::string& path, const std::string& value) override;
  bool UserOptionExists(const std::string&) const override { return false; }
  std::string GetUserOption(const std::string& name) const override;

 private:
  LinuxOptions options_;
};

class LinuxSysinfoUtil : public SysinfoUtil {
 public:
  explicit LinuxSysinfoUtil(std::string root) : files_(std::move(root)) {}
  std::vector<uint8_t> SysinfoGet(const std::string& node, size_t size) const override;

 private:
  LinuxFiles files_;
};

class LinuxShellExec : public ShellExec {
 public:
  int NukCtl_Exec(const std::string& commandLine, bool flag1, bool flag2, bool flag3) override;
};

// Events go to the journal with their id in the field KONU_EVENT_ID (the syslog when the
// machine has no journal); audit records to the system log's auth facility.
class LinuxEventLib : public EventLib {
 public:
  explicit LinuxEventLib(std::string root) : files_(std::move(root)) {}
  int ZebUserLib_Init() override {
    open_ = true;
    return 0;
  }
  int ZebUserLib_AddZeb(const std::string& message) override;
  void ZebUserLib_Close() override { open_ = false; }

 private:
  LinuxFiles files_;
  bool open_ = false;
};

}  // namespace HostCtl::Linux
