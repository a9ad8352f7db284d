// The real Linux backend: makes the Linux services for one root.
#include "host/linux/LinuxHost.h"

#include "host/HostCtlException.h"
#include "host/linux/LinuxAuditLog.h"
#include "host/linux/LinuxDistributedSwitchInfo.h"
#include "host/linux/LinuxServices.h"
#include "host/linux/LinuxSmartCardInfo.h"

namespace HostCtl::Linux {
namespace {

void RequireDefaultStack(const std::string& stack) {
  if (stack != kDefaultTcpipStack) throw Lib::HostCtlException("TCP/IP stack '" + stack + "' not found");
}

std::string WithoutTrailingSlash(std::string root) {
  while (root.size() > 1 && root.back() == '/') root.pop_back();
  return root.empty() ? "/" : root;
}

}  // namespace

LinuxHost::LinuxHost(std::string root) : root_(WithoutTrailingSlash(std::move(root))) {}

std::unique_ptr<Network::NetworkInfo> LinuxHost::CreateNetworkInfo() const {
  return std::make_unique<LinuxNetworkInfo>(root_);
}

std::unique_ptr<Network::DnsConfig> LinuxHost::CreateDnsConfig(const std::string& stack) const {
  RequireDefaultStack(stack);
  return std::make_unique<LinuxDnsConfig>(root_);
}

std::unique_ptr<Network::RoutingInfo> LinuxHost::CreateRoutingInfo(const std::string& stack) const {
  RequireDefaultStack(stack);
  return std::make_unique<LinuxRoutingInfo>(root_);
}

std::unique_ptr<Network::VirtualSwitchInfo> LinuxHost::CreateVirtualSwitchInfo() const {
  return std::make_unique<LinuxVirtualSwitchInfo>(root_);
}

std::unique_ptr<Network::DistributedSwitchInfo> LinuxHost::CreateDistributedSwitchInfo() const {
  return std::make_unique<LinuxDistributedSwitchInfo>();
}

std::unique_ptr<HardwareInfo> LinuxHost::CreateHardwareInfo() const {
  return std::make_unique<LinuxHardwareInfo>(root_);
}

std::unique_ptr<SmartCardInfo> LinuxHost::CreateSmartCardInfo() const {
  return std::make_unique<LinuxSmartCardInfo>();
}

std::unique_ptr<SystemInfo> LinuxHost::CreateSystemInfo() const {
  return std::make_unique<LinuxSystemInfo>(root_);
}

std::unique_ptr<Adv::AdvancedOptions> LinuxHost::CreateAdvancedOptions() const {
  return std::make_unique<LinuxAdvancedOptions>(root_);
}

std::unique_ptr<SysinfoUtil> LinuxHost::CreateSysinfoUtil() const {
  return std::make_unique<LinuxSysinfoUtil>(root_);
}

std::unique_ptr<ShellExec> LinuxHost::CreateShellExec() const { return std::make_unique<LinuxShellExec>(); }

std::unique_ptr<EventLib> LinuxHost::CreateEventLib() const { return std::make_unique<LinuxEventLib>(root_); }

std::unique_ptr<AuditLog> LinuxHost::CreateAuditLog() const { return std::make_unique<LinuxAuditLog>(); }

}  // namespace HostCtl::Linux
