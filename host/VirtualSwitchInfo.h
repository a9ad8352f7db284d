// Standard and distributed switches, their uplinks and port groups (VLAN, teaming policy).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/NicTeamingPolicy.h"

namespace HostCtl::Network {

struct VirtualSwitch {
  std::string name;                     // "vSwitch0"
  std::vector<std::string> uplinks;     // physical NIC names, in order
  std::vector<std::string> portGroups;  // port group names on this switch
};

struct DVSwitch {
  std::string name;
  std::vector<std::string> uplinks;  // this host's physical NICs on the distributed switch
};

struct PortGroup {
  std::string name;        // "Management Network"
  std::string switchName;  // the standard switch it belongs to
  uint16_t vlanId = 0;     // 0 = none, 4095 = all VLANs
  NicTeamingPolicy teamingPolicy;
};

class VirtualSwitchInfo {
 public:
  virtual ~VirtualSwitchInfo() = default;
  VirtualSwitchInfo() = default;
  VirtualSwitchInfo(const VirtualSwitchInfo&) = delete;
  VirtualSwitchInfo& operator=(const VirtualSwitchInfo&) = delete;

  virtual std::vector<VirtualSwitch> GetVirtualSwitches() const = 0;
  virtual std::vector<DVSwitch> GetDVSwitches() const = 0;
  // Throws HostCtl::Lib::HostCtlException when the switch or port group does not exist.
  virtual VirtualSwitch GetVirtualSwitch(const std::string& name) const = 0;
  virtual PortGroup GetPortGroup(const std::string& name) const = 0;

  // Uplinks of a standard switch. Adding a NIC that another switch uses throws; adding one
  // already on this switch, or removing one that is not, throws as well.
  virtual void AddUplink(const std::string& switchName, const std::string& nic) = 0;
  virtual void RemoveUplink(const std::string& switchName, const std::string& nic) = 0;
  // Takes a NIC off this host's side of a distributed switch.
  virtual void RemoveDVSwitchUplink(const std::string& dvsName, const std::string& nic) = 0;

  // VLAN id 0..4095; anything above throws.
  virtual void SetPortGroupVlanId(const std::string& portGroup, uint16_t vlanId) = 0;
  virtual void SetPortGroupTeamingPolicy(const std::string& portGroup, const NicTeamingPolicy& policy) = 0;

  // A new standard switch without uplinks, and a new port group on a standard switch.
  virtual void AddVirtualSwitch(const std::string& name) = 0;
  virtual void AddPortGroup(const std::string& switchName, const std::string& portGroup, uint16_t vlanId) = 0;
};

}  // namespace HostCtl::Network
