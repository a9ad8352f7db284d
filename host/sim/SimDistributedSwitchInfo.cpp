// Simulated distributed-switch ports. A switch without a vendor is the host's own ("Corbel");
// a host-local port is a copy of the port it is cloned from with the new VLAN, uplinks and
// blocked state, under the next free numeric key.
//
// State read and written (JSON pointers):
//   /network/dvSwitches/<dvs> {vendor, uplinks [], ports {<key>: {vlanId, uplinks [], blocked,
//                              hostLocal, ... any other property, copied into a clone}}}
//   /network/nukNics/<nic> {switch, dvsPort, portGroup, up, usable}
#include "host/sim/SimDistributedSwitchInfo.h"

#include <algorithm>

#include "host/HostCtlException.h"

namespace HostCtl::Sim {
namespace {

using nlohmann::json;

const json& SwitchIn(const json& state, const std::string& dvsName) {
  const json& dvs = NodeAt(state, "/network/dvSwitches/" + PointerKey(dvsName));
  if (!dvs.is_object()) ThrowNotFound("Distributed switch", dvsName);
  return dvs;
}

json& SwitchIn(json& state, const std::string& dvsName) {
  return const_cast<json&>(SwitchIn(static_cast<const json&>(state), dvsName));
}

const json& PortIn(const json& dvs, const std::string& dvsName, const std::string& key) {
  const json& port = NodeAt(dvs, "/ports/" + PointerKey(key));
  if (!port.is_object()) ThrowNotFound("Port of " + dvsName, key);
  return port;
}

std::string VendorOf(const json& dvs) { return ValueAt<std::string>(dvs, "/vendor", Network::kOwnDvsVendor); }

json& NicIn(json& state, const std::string& nic) {
  json& nics = state["network"]["nukNics"];
  if (!nics.is_object() || !nics.contains(nic) || !nics[nic].is_object()) ThrowNotFound("Virtual NIC", nic);
  return nics[nic];
}

// One more than the highest numeric key (keys that are no numbers are passed over).
std::string NextPortKey(const json& ports) {
  unsigned long highest = 0;
  if (ports.is_object())
    for (auto it = ports.begin(); it != ports.end(); ++it) {
      const std::string& key = it.key();
      if (!key.empty() && key.size() < 10 && std::all_of(key.begin(), key.end(), ::isdigit))
        highest = std::max(highest, std::stoul(key));
    }
  return std::to_string(highest + 1);
}

}  // namespace

std::string SimDistributedSwitchInfo::GetVendor(const std::string& dvsName) const {
  return VendorOf(SwitchIn(*state_.Read("DistributedSwitchInfo.GetVendor"), dvsName));
}

Network::DVSwitchPort SimDistributedSwitchInfo::GetPort(const std::string& dvsName,
                                                        const std::string& portKey) const {
  const auto snapshot = state_.Read("DistributedSwitchInfo.GetPort");
  const json& state = *snapshot;
  const json& port = PortIn(SwitchIn(state, dvsName), dvsName, portKey);
  Network::DVSwitchPort out;
  out.key = portKey;
  out.vlanId = ValueAt<uint16_t>(port, "/vlanId", 0);
  out.uplinks = ValueAt<std::vector<std::string>>(port, "/uplinks", {});
  out.blocked = ValueAt<bool>(port, "/blocked", false);
  out.hostLocal = ValueAt<bool>(port, "/hostLocal", false);
  return out;
}

std::string SimDistributedSwitchInfo::AddHostLocalPort(const std::string& dvsName,
                                                       const std::string& cloneFrom,
                                                       const Network::DVSwitchPort& properties) {
  if (properties.vlanId > 4094)
    throw Lib::HostCtlException("Invalid VLAN id " + std::to_string(properties.vlanId));
  std::string key;
  state_.Update("DistributedSwitchInfo.AddHostLocalPort", [&](json& state) {
    json& dvs = SwitchIn(state, dvsName);
    if (VendorOf(dvs) != Network::kOwnDvsVendor)
      throw Lib::HostCtlException("Switch " + dvsName + " of vendor " + VendorOf(dvs) +
                                  " does not take host-local ports");
    json port = PortIn(dvs, dvsName, cloneFrom);
    const json& hostUplinks = NodeAt(dvs, "/uplinks");
    for (const std::string& nic : properties.uplinks)
      if (!hostUplinks.is_array() ||
          std::find(hostUplinks.begin(), hostUplinks.end(), json(nic)) == hostUplinks.end())
        throw Lib::HostCtlException("Physical NIC '" + nic + "' is not an uplink of " + dvsName);
    port["vlanId"] = properties.vlanId;
    port["uplinks"] = properties.uplinks;
    port["blocked"] = properties.blocked;
    port["hostLocal"] = true;
    key = NextPortKey(NodeAt(dvs, "/ports"));
    dvs["ports"][key] = port;
  });
  return key;
}

void SimDistributedSwitchInfo::SetInterfacePort(const std::string& nic, const std::string& dvsName,
                                                const std::string& portKey) {
  state_.Update("DistributedSwitchInfo.SetInterfacePort", [&](json& state) {
    PortIn(SwitchIn(state, dvsName), dvsName, portKey);
    json& entry = NicIn(state, nic);
    entry["switch"] = dvsName;
    entry["dvsPort"] = portKey;
    entry.erase("portGroup");
    entry.erase("opaqueNetwork");
  });
}

std::vector<std::string> SimDistributedSwitchInfo::GetInterfaceNames() const {
  const auto snapshot = state_.Read("DistributedSwitchInfo.GetInterfaceNames");
  const json& state = *snapshot;
  std::vector<std::string> names;
  const json& nics = NodeAt(state, "/network/nukNics");
  if (nics.is_object())
    for (auto it = nics.begin(); it != nics.end(); ++it) names.push_back(it.key());
  return names;
}

void SimDistributedSwitchInfo::DisableInterface(const std::string& nic) {
  state_.Update("DistributedSwitchInfo.DisableInterface", [&](json& state) {
    json& entry = NicIn(state, nic);
    entry["up"] = false;
    entry["usable"] = false;
  });
}

}  // namespace HostCtl::Sim
