// The distributed-switch port that carries the management interface, read for the two
// restores that repair it: the interface, the switch, the port and this host's uplinks on it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/DistributedSwitchInfo.h"
#include "host/Host.h"
#include "host/NukNic.h"

namespace Konu {

struct ManagementDvsPort {
  std::unique_ptr<HostCtl::Network::NukNic> nic;
  std::string dvsName;
  HostCtl::Network::DVSwitchPort port;
  std::vector<std::string> switchUplinks;  // this host's uplinks on the switch, in order

  // The port's uplinks that are this host's uplinks on the switch, in the port's order.
  std::vector<std::string> PortUplinks() const;
};

// Throws HostCtl::Lib::HostCtlException, with a message for the operator, when there is no
// management interface, it is not on a distributed-switch port, or the library fails.
ManagementDvsPort FindManagementDvsPort(const HostCtl::Host& host);

}  // namespace Konu
