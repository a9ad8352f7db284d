// Where the management interface is plugged in, and the uplink, teaming and VLAN changes made
// on its port group. The helpers log their own failures and answer false.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/NetworkInfo.h"
#include "host/NukNic.h"
#include "host/VirtualSwitchInfo.h"

namespace Konu {

// UpdateManagementInterface, then the interface (null when there is none). Throws what the
// library throws.
std::unique_ptr<HostCtl::Network::NukNic> FindManagementInterface(HostCtl::Network::NetworkInfo& info);

// True when the management interface sits on a distributed-switch port; false (logged) when
// there is no interface or the library fails.
bool IsOnDistributedSwitch(HostCtl::Network::NetworkInfo& info);

class ManagementUplinks {
 public:
  ManagementUplinks(const HostCtl::Network::NukNic& nic, HostCtl::Network::VirtualSwitchInfo& switches)
      : nic_(nic), switches_(switches) {}

  // The name of the switch that carries the interface (the distributed switch's for a DVS
  // port). Throws for an opaque network or an unknown connection.
  std::string SwitchName() const;

  bool GetVlan(uint16_t& vlanId) const;
  bool SetVlan(uint16_t vlanId);
  bool GetMaxActiveUplinks(uint32_t& maxActiveUplinks) const;
  // The uplinks of the management port group's switch, in the switch's order.
  bool GetUplinks(std::vector<std::string>& uplinks) const;
  // Takes the NIC off every other switch, makes it an uplink of the management switch and
  // appends it to the port group's teaming order. True when it was added.
  bool AddUplink(const std::string& nic);
  // Takes the NIC off the management switch and out of the port group's teaming policy.
  bool RemoveUplink(const std::string& nic);

 private:
  // The connection point; throws "Unsupported vSwitch type" unless it is a port group on a
  // standard switch.
  HostCtl::Network::ConnectionPoint PortGroupPoint() const;
  void TakeOffOtherSwitches(const std::string& ownSwitch, const std::string& nic);
  void AppendToTeaming(const std::string& portGroup, const std::string& nic);

  const HostCtl::Network::NukNic& nic_;
  HostCtl::Network::VirtualSwitchInfo& switches_;
};

}  // namespace Konu
