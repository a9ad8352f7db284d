// The host backend: makes the service objects the screens use. The console picks one backend
// at start-up (the simulated host or the real Linux machine); screens see only this class.
#pragma once

#include <memory>
#include <string>

#include "host/AdvancedOptions.h"
#include "host/AuditLog.h"
#include "host/DistributedSwitchInfo.h"
#include "host/DnsConfig.h"
#include "host/EventLib.h"
#include "host/HardwareInfo.h"
#include "host/NetworkInfo.h"
#include "host/RoutingInfo.h"
#include "host/ShellExec.h"
#include "host/SmartCardInfo.h"
#include "host/SupportInfo.h"
#include "host/SysinfoUtil.h"
#include "host/SystemInfo.h"
#include "host/VirtualSwitchInfo.h"

namespace HostCtl {

// The TCP/IP stack of the management network.
inline constexpr const char* kDefaultTcpipStack = "defaultTcpipStack";

class Host {
 public:
  virtual ~Host() = default;
  Host() = default;
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Every factory may be called from any thread; each object it makes belongs to one thread.
  virtual std::unique_ptr<Network::NetworkInfo> CreateNetworkInfo() const = 0;
  // Throws HostCtl::Lib::HostCtlException for a stack other than "defaultTcpipStack".
  virtual std::unique_ptr<Network::DnsConfig> CreateDnsConfig(const std::string& stack) const = 0;
  virtual std::unique_ptr<Network::RoutingInfo> CreateRoutingInfo(const std::string& stack) const = 0;
  virtual std::unique_ptr<Network::VirtualSwitchInfo> CreateVirtualSwitchInfo() const = 0;
  virtual std::unique_ptr<Network::DistributedSwitchInfo> CreateDistributedSwitchInfo() const = 0;
  virtual std::unique_ptr<HardwareInfo> CreateHardwareInfo() const = 0;
  virtual std::unique_ptr<SmartCardInfo> CreateSmartCardInfo() const = 0;
  virtual std::unique_ptr<SystemInfo> CreateSystemInfo() const = 0;
  virtual std::unique_ptr<Adv::AdvancedOptions> CreateAdvancedOptions() const = 0;
  virtual std::unique_ptr<SysinfoUtil> CreateSysinfoUtil() const = 0;
  virtual std::unique_ptr<ShellExec> CreateShellExec() const = 0;
  virtual std::unique_ptr<EventLib> CreateEventLib() const = 0;
  virtual std::unique_ptr<AuditLog> CreateAuditLog() const = 0;
  virtual std::unique_ptr<SupportInfo> CreateSupportInfo() const = 0;

  // The root this backend reads ("/" for the real host).
  virtual const std::string& Root() const = 0;
};

}  // namespace HostCtl
