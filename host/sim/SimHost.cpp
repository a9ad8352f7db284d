// The simulated host backend: makes the simulated services for one root.
#include "host/sim/SimHost.h"

#include "host/HostCtlException.h"
#include "host/sim/SimDistributedSwitchInfo.h"
#include "host/sim/SimServices.h"
#include "host/sim/StateFile.h"

namespace HostCtl::Sim {
namespace {

// State read: /network/dns/<stack> or /network/routing/<stack> must exist for a stack.
void RequireStack(const std::string& root, const std::string& stack) {
  SimState state(root);
  const auto snapshot = state.Read("Host.Stack");
  const nlohmann::json& doc = *snapshot;
  if (!NodeAt(doc, "/network/dns/" + PointerKey(stack)).is_object() &&
      !NodeAt(doc, "/network/routing/" + PointerKey(stack)).is_object())
    ThrowNotFound("TCP/IP stack", stack);
}

std::string WithoutTrailingSlash(std::string root) {
  while (root.size() > 1 && root.back() == '/') root.pop_back();
  return root;
}

}  // namespace

SimHost::SimHost(std::string root) : root_(WithoutTrailingSlash(std::move(root))) {
  Konu::Sim::StateFile(root_).Snapshot();
}

std::unique_ptr<Network::NetworkInfo> SimHost::CreateNetworkInfo() const {
  return std::make_unique<SimNetworkInfo>(root_);
}

std::unique_ptr<Network::DnsConfig> SimHost::CreateDnsConfig(const std::string& stack) const {
  RequireStack(root_, stack);
  return std::make_unique<SimDnsConfig>(root_, stack);
}

std::unique_ptr<Network::RoutingInfo> SimHost::CreateRoutingInfo(const std::string& stack) const {
  RequireStack(root_, stack);
  return std::make_unique<SimRoutingInfo>(root_, stack);
}

std::unique_ptr<Network::VirtualSwitchInfo> SimHost::CreateVirtualSwitchInfo() const {
  return std::make_unique<SimVirtualSwitchInfo>(root_);
}

std::unique_ptr<Network::DistributedSwitchInfo> SimHost::CreateDistributedSwitchInfo() const {
  return std::make_unique<SimDistributedSwitchInfo>(root_);
}

std::unique_ptr<HardwareInfo> SimHost::CreateHardwareInfo() const {
  return std::make_unique<SimHardwareInfo>(root_);
}

std::unique_ptr<SmartCardInfo> SimHost::CreateSmartCardInfo() const {
  return std::make_unique<SimSmartCardInfo>(root_);
}

std::unique_ptr<SystemInfo> SimHost::CreateSystemInfo() const {
  return std::make_unique<SimSystemInfo>(root_);
}

std::unique_ptr<Adv::AdvancedOptions> SimHost::CreateAdvancedOptions() const {
  return std::make_unique<SimAdvancedOptions>(root_);
}

std::unique_ptr<SysinfoUtil> SimHost::CreateSysinfoUtil() const {
  return std::make_unique<SimSysinfoUtil>(root_);
}

std::unique_ptr<ShellExec> SimHost::CreateShellExec() const { return std::make_unique<SimShellExec>(root_); }

std::unique_ptr<EventLib> SimHost::CreateEventLib() const { return std::make_unique<SimEventLib>(root_); }

std::unique_ptr<AuditLog> SimHost::CreateAuditLog() const { return std::make_unique<SimAuditLog>(root_); }

std::unique_ptr<SupportInfo> SimHost::CreateSupportInfo() const {
  return std::make_unique<SimSupportInfo>(root_);
}

}  // namespace HostCtl::Sim
