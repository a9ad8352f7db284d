// Management interface lookup and the uplink, teaming-policy and VLAN helpers of the apply.
#include "network/ManagementUplinks.h"

#include <syslog.h>

#include <algorithm>

#include "host/HostCtlException.h"
#include "host/Log.h"

namespace Konu {
namespace {

using HostCtl::Lib::HostCtlException;
using HostCtl::Network::ConnecteeType;

bool Contains(const std::vector<std::string>& list, const std::string& name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

}  // namespace

std::unique_ptr<HostCtl::Network::NukNic> FindManagementInterface(HostCtl::Network::NetworkInfo& info) {
  info.UpdateManagementInterface();
  return info.GetManagementInterface();
}

bool IsOnDistributedSwitch(HostCtl::Network::NetworkInfo& info) {
  try {
    std::unique_ptr<HostCtl::Network::NukNic> nic = FindManagementInterface(info);
    if (!nic) {
      Log(LOG_ERR, "Could not locate the management interface");
      return false;
    }
    return nic->GetConnectionPoint().type == ConnecteeType::kDvsPort;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Could not determine if a DVS was in use: %s", e.what());
    return false;
  }
}

std::string ManagementUplinks::SwitchName() const {
  const HostCtl::Network::ConnectionPoint point = nic_.GetConnectionPoint();
  switch (point.type) {
    case ConnecteeType::kPortGroup:
    case ConnecteeType::kDvsPort:
      return point.switchName;
    case ConnecteeType::kOpaqueNetwork:
      throw HostCtlException("Opaque network connectee type not supported");
    default:
      throw HostCtlException("Unsupported connectee type");
  }
}

HostCtl::Network::ConnectionPoint ManagementUplinks::PortGroupPoint() const {
  HostCtl::Network::ConnectionPoint point = nic_.GetConnectionPoint();
  if (point.type != ConnecteeType::kPortGroup) throw HostCtlException("Unsupported vSwitch type");
  return point;
}

bool ManagementUplinks::GetVlan(uint16_t& vlanId) const {
  try {
    vlanId = switches_.GetPortGroup(PortGroupPoint().portGroup).vlanId;
    return true;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting VlanID failed: %s", e.what());
    return false;
  }
}

bool ManagementUplinks::SetVlan(uint16_t vlanId) {
  try {
    switches_.SetPortGroupVlanId(PortGroupPoint().portGroup, vlanId);
    return true;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Setting VlanID failed: %s", e.what());
    return false;
  }
}

bool ManagementUplinks::GetMaxActiveUplinks(uint32_t& maxActiveUplinks) const {
  try {
    maxActiveUplinks = switches_.GetPortGroup(PortGroupPoint().portGroup).teamingPolicy.GetMaxActiveUplinks();
    return true;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting max number of active uplinks failed: %s", e.what());
    return false;
  }
}

bool ManagementUplinks::GetUplinks(std::vector<std::string>& uplinks) const {
  try {
    uplinks = switches_.GetVirtualSwitch(PortGroupPoint().switchName).uplinks;
    return true;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting uplinks failed: %s", e.what());
    return false;
  }
}

void ManagementUplinks::TakeOffOtherSwitches(const std::string& ownSwitch, const std::string& nic) {
  // Best effort: whatever cannot be taken off shows up when the NIC is added.
  try {
    for (const auto& sw : switches_.GetVirtualSwitches())
      if (sw.name != ownSwitch && Contains(sw.uplinks, nic)) switches_.RemoveUplink(sw.name, nic);
  } catch (const HostCtlException&) {
  }
  try {
    for (const auto& dvs : switches_.GetDVSwitches())
      if (Contains(dvs.uplinks, nic)) switches_.RemoveDVSwitchUplink(dvs.name, nic);
  } catch (const HostCtlException&) {
  }
}

void ManagementUplinks::AppendToTeaming(const std::string& portGroup, const std::string& nic) {
  try {
    const HostCtl::Network::NicTeamingPolicy current = switches_.GetPortGroup(portGroup).teamingPolicy;
    HostCtl::Network::NicTeamingPolicy policy = current;
    std::vector<std::string> order;
    if (current.HasUplinkOrder()) order = current.GetUplinkOrder();
    if (current.HasMaxActiveUplinks()) policy.SetMaxActiveUplinks(current.GetMaxActiveUplinks() + 1);
    if (!Contains(order, nic)) {
      order.push_back(nic);
      policy.SetUplinkOrder(order, current.GetStandbyUplinks());
    }
    switches_.SetPortGroupTeamingPolicy(portGroup, policy);
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "VS: add uplink to teaming policy failed: %s", e.what());
  }
}

bool ManagementUplinks::AddUplink(const std::string& nic) {
  try {
    const HostCtl::Network::ConnectionPoint point = PortGroupPoint();
    TakeOffOtherSwitches(point.switchName, nic);
    switches_.AddUplink(point.switchName, nic);
    AppendToTeaming(point.portGroup, nic);
    return true;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Adding uplink %s failed: %s", nic.c_str(), e.what());
    return false;
  }
}

bool ManagementUplinks::RemoveUplink(const std::string& nic) {
  try {
    const HostCtl::Network::ConnectionPoint point = PortGroupPoint();
    switches_.RemoveUplink(point.switchName, nic);
    try {
      HostCtl::Network::NicTeamingPolicy policy = switches_.GetPortGroup(point.portGroup).teamingPolicy;
      if (policy.RemoveUplink(nic)) switches_.SetPortGroupTeamingPolicy(point.portGroup, policy);
    } catch (const HostCtlException& e) {
      Log(LOG_ERR, "VS: remove uplink from teaming policy failed: %s", e.what());
    }
    return true;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Removing uplink %s failed: %s", nic.c_str(), e.what());
    return false;
  }
}

}  // namespace Konu
