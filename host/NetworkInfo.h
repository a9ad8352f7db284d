// Network facts of the host: the management interface, the physical NICs, IPv6 enablement.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/NukNic.h"
#include "host/Pnic.h"

namespace HostCtl::Network {

class NetworkInfo {
 public:
  virtual ~NetworkInfo() = default;
  NetworkInfo() = default;
  NetworkInfo(const NetworkInfo&) = delete;
  NetworkInfo& operator=(const NetworkInfo&) = delete;

  // Looks up which virtual NIC carries the management network now.
  virtual void UpdateManagementInterface() = 0;
  // The name found by the last UpdateManagementInterface ("" when none).
  virtual std::string GetManagementInterfaceName() const = 0;
  // The management interface object, or null when there is none (looked up first when
  // UpdateManagementInterface was not called yet).
  virtual std::unique_ptr<NukNic> GetManagementInterface() = 0;

  // True when the kernel runs with IPv6 now.
  virtual bool IsNukIpv6Enabled() const = 0;
  // Sets IPv6 for the next boot (takes effect after a host restart).
  virtual void SetNukIpv6Enabled(bool enabled) = 0;

  // The host's physical NICs, in device order.
  virtual std::vector<Pnic> GetPnics() const = 0;
  // One physical NIC by name; throws HostCtl::Lib::HostCtlException when there is none.
  virtual Pnic GetPnic(const std::string& name) const = 0;

  // Puts the host's network back as it left the factory: one standard switch "vSwitch0"
  // whose uplink is the first physical NIC with a link, its port group "Management Network"
  // without VLAN, the management interface alone on it with DHCP, automatic IPv6 and DNS from
  // DHCP; every other switch and virtual NIC goes. The host name stays. The interface is not
  // restarted.
  virtual void RestoreFactoryNetwork() = 0;
  // True when this host can carry out RestoreFactoryNetwork. The console asks before a
  // factory restore begins, so no machine is stopped for a restore that cannot happen.
  virtual bool CanRestoreFactoryNetwork() const = 0;
};

}  // namespace HostCtl::Network
