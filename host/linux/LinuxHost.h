// The real Linux backend: reads the machine through procfs, sysfs and /etc under a root
// ("/" on a real host, a fixture tree in tests).
#pragma once

#include <string>

#include "host/Host.h"

namespace HostCtl::Linux {

class LinuxHost : public Host {
 public:
  explicit LinuxHost(std::string root = "/");

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
  std::unique_ptr<SupportInfo> CreateSupportInfo() const override;  // LinuxSupportInfo.cpp
  const std::string& Root() const override { return root_; }

 private:
  std::string root_;
};

}  // namespace HostCtl::Linux
