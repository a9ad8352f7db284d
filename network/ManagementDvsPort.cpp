// FindManagementDvsPort: interface, connection point, port and the switch's uplinks.
#include "network/ManagementDvsPort.h"

#include <algorithm>

#include "host/HostCtlException.h"
#include "network/ManagementUplinks.h"

namespace Konu {

using HostCtl::Lib::HostCtlException;

std::vector<std::string> ManagementDvsPort::PortUplinks() const {
  std::vector<std::string> onSwitch;
  for (const std::string& uplink : port.uplinks)
    if (std::find(switchUplinks.begin(), switchUplinks.end(), uplink) != switchUplinks.end())
      onSwitch.push_back(uplink);
  return onSwitch;
}

ManagementDvsPort FindManagementDvsPort(const HostCtl::Host& host) {
  ManagementDvsPort found;
  found.nic = FindManagementInterface(*host.CreateNetworkInfo());
  if (!found.nic) throw HostCtlException("Management network interface cannot be found.");
  const HostCtl::Network::ConnectionPoint point = found.nic->GetConnectionPoint();
  if (point.type != HostCtl::Network::ConnecteeType::kDvsPort)
    throw HostCtlException("The management interface " + found.nic->GetName() +
                           " is not on a distributed switch port");
  found.dvsName = point.switchName;
  found.port = host.CreateDistributedSwitchInfo()->GetPort(point.switchName, point.dvsPortKey);
  for (const auto& dvs : host.CreateVirtualSwitchInfo()->GetDVSwitches())
    if (dvs.name == point.switchName) found.switchUplinks = dvs.uplinks;
  return found;
}

}  // namespace Konu
