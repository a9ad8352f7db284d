// The simulated host's service classes, each a thin layer over the state file. Made by
// SimHost; nothing outside host/sim/ names them.
#pragma once

#include <memory>
#include <string>

#include "host/Host.h"
#include "host/sim/SimState.h"

namespace HostCtl::Sim {

class SimNetworkInfo : public Network::NetworkInfo {
 public:
  explicit SimNetworkInfo(std::string root) : state_(std::move(root)) {}
  void UpdateManagementInterface() override;
  std::string GetManagementInterfaceName() const override { return managementInterface_; }
  std::unique_ptr<Network::NukNic> GetManagementInterface() override;
  bool IsNukIpv6Enabled() const override;
  void SetNukIpv6Enabled(bool enabled) override;
  std::vector<Network::Pnic> GetPnics() const override;
  Network::Pnic GetPnic(const std::string& name) const override;
  void RestoreFactoryNetwork() override;
  bool CanRestoreFactoryNetwork() const override;

 private:
  SimState state_;
  std::string managementInterface_;
  bool updated_ = false;  // GetManagementInterface looks the interface up first when not yet done
};

class SimVirtualSwitchInfo : public Network::VirtualSwitchInfo {
 public:
  explicit SimVirtualSwitchInfo(std::string root) : state_(std::move(root)) {}
  std::vector<Network::VirtualSwitch> GetVirtualSwitches() const override;
  std::vector<Network::DVSwitch> GetDVSwitches() const override;
  Network::VirtualSwitch GetVirtualSwitch(const std::string& name) const override;
  Network::PortGroup GetPortGroup(const std::string& name) const override;
  void AddUplink(const std::string& switchName, const std::string& nic) override;
  void RemoveUplink(const std::string& switchName, const std::string& nic) override;
  void RemoveDVSwitchUplink(const std::string& dvsName, const std::string& nic) override;
  void SetPortGroupVlanId(const std::string& portGroup, uint16_t vlanId) override;
  void SetPortGroupTeamingPolicy(const std::string& portGroup,
                                 const Network::NicTeamingPolicy& policy) override;
  void AddVirtualSwitch(const std::string& name) override;
  void AddPortGroup(const std::string& switchName, const std::string& portGroup, uint16_t vlanId) override;

 private:
  SimState state_;
};

class SimDnsConfig : public Network::DnsConfig {
 public:
  SimDnsConfig(std::string root, std::string stack) : state_(std::move(root)), stack_(std::move(stack)) {}
  void Refresh() override;
  std::string GetHostname() const override;
  std::string GetDomain() const override;
  bool GetDhcp() const override;
  void SetHostname(const std::string& hostname, bool flag) override;
  void SetFqdn(const std::string& fqdn, bool flag, const std::string& extra) override;
  std::vector<Network::Ipv4Address> GetNameServers() const override;
  std::vector<Network::Ipv6Address> GetIpv6NameServers() const override;
  void RemoveNameServers() override;
  void AddNameServer(const Network::Ipv4Address& server) override;
  void AddNameServer(const Network::Ipv6Address& server) override;
  std::vector<std::string> GetSearchDomains() const override;
  void SetSearchDomainsString(const std::string& domains) override;
  void AddSearchDomain(const std::string& domain) override;
  void SaveConfig() override;
  bool ResolveHostname(const std::string& name, const std::atomic<bool>& stop) override;

 private:
  std::string Dns() const { return "/network/dns/" + PointerKey(stack_); }
  void AddServerText(const std::string& operation, const std::string& text);
  SimState state_;
  std::string stack_;
};

class SimRoutingInfo : public Network::RoutingInfo {
 public:
  SimRoutingInfo(std::string root, std::string stack) : state_(std::move(root)), stack_(std::move(stack)) {}
  Network::Ipv4Address GetNuKernelDefaultGateway() const override;
  Network::Ipv6Address GetIpv6NuKernelDefaultGateway() const override;
  void SetNuKernelDefaultGateway(const Network::Ipv4Address& gateway, bool flag) override;
  void SetIpv6NuKernelDefaultGateway(const Network::Ipv6Address& gateway) override;

 private:
  std::string Routing() const { return "/network/routing/" + PointerKey(stack_); }
  SimState state_;
  std::string stack_;
};

class SimHardwareInfo : public HardwareInfo {
 public:
  explicit SimHardwareInfo(std::string root) : state_(std::move(root)) {}
  Hardware GetHardware() const override;

 private:
  SimState state_;
};

class SimSupportInfo : public SupportInfo {
 public:
  explicit SimSupportInfo(std::string root) : state_(std::move(root)) {}
  SupportFacts GetSupportFacts() const override;

 private:
  SimState state_;
};

class SimSmartCardInfo : public SmartCardInfo {
 public:
  explicit SimSmartCardInfo(std::string root) : state_(std::move(root)) {}
  std::vector<SmartCardSlot> GetSlots() const override;

 private:
  SimState state_;
};

class SimSystemInfo : public SystemInfo {
 public:
  explicit SimSystemInfo(std::string root) : state_(std::move(root)) {}
  std::string GetWelcomeMessage() const override;
  void SetSystemAlert(const std::string& text) override;
  std::string GetKeyboardLayout() const override;
  std::vector<std::string> GetKeyboardLayouts() const override;
  void LoadKeyboardMappings(const std::string& layout) override;
  void SetKeyboardLayout(const std::string& layout) override;
  FirewallRuleset GetFirewallRulesetById(const std::string& id) const override;
  void SetFirewallRulesetEnabled(const std::string& id, bool enabled) override;
  bool HasRunningVms() const override;
  bool HasAccount(const std::string& name) const override;

 private:
  SimState state_;
};

class SimAdvancedOptions : public Adv::AdvancedOptions {
 public:
  explicit SimAdvancedOptions(std::string root) : state_(std::move(root)) {}
  std::unique_ptr<Adv::AdvancedOption> FindOption(const std::string& path) const override;
  void SetIntegerValue(const std::string& path, int64_t value) override;
  void SetStringValue(const std::string& path, const std::string& value) override;
  bool UserOptionExists(const std::string& name) const override;
  std::string GetUserOption(const std::string& name) const override;

 private:
  SimState state_;
};

class SimSysinfoUtil : public SysinfoUtil {
 public:
  explicit SimSysinfoUtil(std::string root) : state_(std::move(root)) {}
  std::vector<uint8_t> SysinfoGet(const std::string& node, size_t size) const override;

 private:
  SimState state_;
};

class SimShellExec : public ShellExec {
 public:
  explicit SimShellExec(std::string root) : state_(std::move(root)) {}
  int NukCtl_Exec(const std::string& commandLine, bool flag1, bool flag2, bool flag3) override;

 private:
  SimState state_;
};

class SimEventLib : public EventLib {
 public:
  explicit SimEventLib(std::string root) : state_(std::move(root)) {}
  int ZebUserLib_Init() override;
  int ZebUserLib_AddZeb(const std::string& message) override;
  void ZebUserLib_Close() override { open_ = false; }

 private:
  SimState state_;
  bool open_ = false;
};

class SimAuditLog : public AuditLog {
 public:
  explicit SimAuditLog(std::string root) : state_(std::move(root)) {}
  void CblAudit_VLog(const std::string& record, const std::string& user, const std::string& origin,
                     int success,
                     const std::vector<std::pair<std::string, std::string>>& attributes) override;

 private:
  SimState state_;
};

// Exposed for the tests: the command line with its programs and files moved under the root.
std::string RootedCommandLine(const std::string& root, const std::string& commandLine);

}  // namespace HostCtl::Sim
