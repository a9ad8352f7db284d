// Distributed-switch ports and the moves the network restore options make: a switch's vendor,
// a port's properties, a host-local port cloned from another, plugging a virtual NIC into a
// port, and the host's other virtual NICs, which a restore disables.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace HostCtl::Network {

// The vendor of the host's own distributed switch; ports of other vendors' switches cannot be
// rebuilt from here.
inline constexpr const char* kOwnDvsVendor = "Corbel";

// The properties of a distributed-switch port that the console reads or sets; a port has
// more, which a host-local port takes over from the port it is cloned from.
struct DVSwitchPort {
  std::string key;                   // "10"
  uint16_t vlanId = 0;               // 0 = none
  std::vector<std::string> uplinks;  // physical NICs carrying the port's traffic, in order
  bool blocked = false;              // a blocked port passes no traffic
  bool hostLocal = false;            // made on this host, not by the switch's manager
};

class DistributedSwitchInfo {
 public:
  virtual ~DistributedSwitchInfo() = default;
  DistributedSwitchInfo() = default;
  DistributedSwitchInfo(const DistributedSwitchInfo&) = delete;
  DistributedSwitchInfo& operator=(const DistributedSwitchInfo&) = delete;

  // Each throws HostCtl::Lib::HostCtlException when the switch or port does not exist.
  virtual std::string GetVendor(const std::string& dvsName) const = 0;
  virtual DVSwitchPort GetPort(const std::string& dvsName, const std::string& portKey) const = 0;
  // A new host-local port on the switch with the VLAN, uplinks and blocked state of
  // `properties` (its key is ignored) and every other property of port `cloneFrom`; returns
  // the new port's key. Uplinks must be this host's uplinks on the switch. Only the host's own
  // vendor's switches take host-local ports.
  virtual std::string AddHostLocalPort(const std::string& dvsName, const std::string& cloneFrom,
                                       const DVSwitchPort& properties) = 0;
  // Plugs the virtual NIC into a port of a distributed switch.
  virtual void SetInterfacePort(const std::string& nic, const std::string& dvsName,
                                const std::string& portKey) = 0;

  // The host's virtual NICs ("nuk0", "nuk1", ...), in name order.
  virtual std::vector<std::string> GetInterfaceNames() const = 0;
  // Takes the virtual NIC down and disables it (it is no longer usable).
  virtual void DisableInterface(const std::string& nic) = 0;
};

}  // namespace HostCtl::Network
