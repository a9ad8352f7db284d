// The simulated host backend: services that read and write the state file
// etc/konu-sim/host.json under a simulated host's root.
#pragma once

#include <string>

#include "host/Host.h"

namespace HostCtl::Sim {

class SimHost : public Host {
 public:
  // root: the simulated host's directory (made by "konu-hostsim create"). Reads the state
  // once, so a missing or malformed state file is refused here, before any screen runs:
  // throws Konu::Sim::StateFileError naming the file and the problem.
  explicit SimHost(std::string root);

  std::unique_ptr<Network::NetworkInfo> CreateNetworkInfo() const override;
  std::unique_ptr<Network::DnsConfig> CreateDnsConfig(const std::string& stack) const override;
  std::unique_ptr<Network::RoutingInfo> CreateRoutingInfo(const std::string& stack) const override;
  std::unique_ptr<Network::VirtualSwitchInfo> CreateVirtualSwitchInfo() const override;
  std::unique_ptr<Network::DistributedSwitchInfo> CreateDistributedSwitchInfo() const override;
  std::unique_ptr<HardwareInfo> CreateHardwareInfo() const override;
  std::unique_ptr<SmartCardInfo> CreateSmartCardInfo() const override;
  std::unique_ptr<SystemInfo> CreateSystemInfo() const override;
  std::unique_ptr<Adv::AdvancedOptions> CreateAdvancedOptions() const override;
  std::unique_ptr<SysinfoUtil> CreateSysinfoUtil() const override;
  std::unique_ptr<ShellExec> CreateShellExec() const override;
  std::unique_ptr<EventLib> CreateEventLib() const override;
  std::unique_ptr<AuditLog> CreateAuditLog() const override;
  std::unique_ptr<SupportInfo> CreateSupportInfo() const override;
  const std::string& Root() const override { return root_; }

 private:
  std::string root_;
};

}  // namespace HostCtl::Sim
