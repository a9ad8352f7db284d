// Simulated standard and distributed switches, port groups, VLANs and teaming policies.
//
// State read and written (JSON pointers):
//   /network/vswitches/<switch> {uplinks [], portGroups {<pg>: {vlanId, teaming {maxActiveUplinks,
//                                explicitOrder, activeUplinks [], standbyUplinks []}}}}
//   /network/dvSwitches/<dvs> {uplinks [], ports {}}
//   /network/pnics/<nic>                     (existence of the NIC)
#include <algorithm>

#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {
namespace {

using nlohmann::json;

std::vector<std::string> Names(const json& list) {
  std::vector<std::string> names;
  if (list.is_array())
    for (const auto& entry : list)
      if (entry.is_string()) names.push_back(entry.get<std::string>());
  return names;
}

bool Has(const json& list, const std::string& name) {
  return list.is_array() && std::find(list.begin(), list.end(), json(name)) != list.end();
}

Network::NicTeamingPolicy PolicyFrom(const json& teaming) {
  Network::NicTeamingPolicy policy;
  if (ValueAt<bool>(teaming, "/explicitOrder", false))
    policy.SetUplinkOrder(Names(NodeAt(teaming, "/activeUplinks")),
                          Names(NodeAt(teaming, "/standbyUplinks")));
  if (teaming.is_object() && teaming.contains("maxActiveUplinks") && teaming["maxActiveUplinks"].is_number())
    policy.SetMaxActiveUplinks(teaming["maxActiveUplinks"].get<uint32_t>());
  return policy;
}

json PolicyToJson(const Network::NicTeamingPolicy& policy) {
  json teaming = {{"explicitOrder", policy.HasUplinkOrder()},
                  {"activeUplinks", policy.GetUplinkOrder()},
                  {"standbyUplinks", policy.GetStandbyUplinks()}};
  if (policy.HasMaxActiveUplinks()) teaming["maxActiveUplinks"] = policy.GetMaxActiveUplinks();
  return teaming;
}

json& Switches(json& state) {
  json& switches = state["network"]["vswitches"];
  if (!switches.is_object()) switches = json::object();
  return switches;
}

json& SwitchIn(json& state, const std::string& name) {
  json& switches = Switches(state);
  if (!switches.contains(name)) ThrowNotFound("Virtual switch", name);
  return switches[name];
}

// The port group's JSON (of a state to read or to change) and its switch's name; throws
// when there is no such port group.
template <typename Json>
Json& PortGroupIn(Json& state, const std::string& name, std::string* switchName = nullptr) {
  const json::json_pointer switches("/network/vswitches");
  if (!state.contains(switches) || !state.at(switches).is_object()) ThrowNotFound("Port group", name);
  for (auto& [key, sw] : state.at(switches).items()) {
    if (!sw.is_object() || !sw.contains("portGroups") || !sw.at("portGroups").is_object()) continue;
    Json& groups = sw.at("portGroups");
    if (groups.contains(name)) {
      if (switchName) *switchName = key;
      return groups.at(name);
    }
  }
  ThrowNotFound("Port group", name);
}

}  // namespace

std::vector<Network::VirtualSwitch> SimVirtualSwitchInfo::GetVirtualSwitches() const {
  const auto snapshot = state_.Read("VirtualSwitchInfo.GetVirtualSwitches");
  const json& state = *snapshot;
  std::vector<Network::VirtualSwitch> out;
  const json& switches = NodeAt(state, "/network/vswitches");
  if (!switches.is_object()) return out;
  for (auto& [name, sw] : switches.items()) {
    Network::VirtualSwitch v{name, Names(NodeAt(sw, "/uplinks")), {}};
    if (sw.contains("portGroups") && sw["portGroups"].is_object())
      for (auto& [pg, unused] : sw["portGroups"].items()) v.portGroups.push_back(pg);
    out.push_back(std::move(v));
  }
  return out;
}

std::vector<Network::DVSwitch> SimVirtualSwitchInfo::GetDVSwitches() const {
  const auto snapshot = state_.Read("VirtualSwitchInfo.GetDVSwitches");
  const json& state = *snapshot;
  std::vector<Network::DVSwitch> out;
  const json& all = NodeAt(state, "/network/dvSwitches");
  if (all.is_object())
    for (auto it = all.begin(); it != all.end(); ++it)
      out.push_back({it.key(), Names(NodeAt(it.value(), "/uplinks"))});
  return out;
}

Network::VirtualSwitch SimVirtualSwitchInfo::GetVirtualSwitch(const std::string& name) const {
  for (auto& sw : GetVirtualSwitches())
    if (sw.name == name) return sw;
  ThrowNotFound("Virtual switch", name);
}

Network::PortGroup SimVirtualSwitchInfo::GetPortGroup(const std::string& name) const {
  const auto snapshot = state_.Read("VirtualSwitchInfo.GetPortGroup");
  const json& state = *snapshot;
  std::string switchName;
  const json& pg = PortGroupIn(state, name, &switchName);
  return {name, switchName, ValueAt<uint16_t>(pg, "/vlanId", 0), PolicyFrom(NodeAt(pg, "/teaming"))};
}

void SimVirtualSwitchInfo::AddUplink(const std::string& switchName, const std::string& nic) {
  state_.Update("VirtualSwitchInfo.AddUplink", [&](json& state) {
    json& sw = SwitchIn(state, switchName);
    if (!NodeAt(state, "/network/pnics").contains(nic)) ThrowNotFound("Physical NIC", nic);
    for (auto& [name, other] : Switches(state).items())
      if (Has(NodeAt(other, "/uplinks"), nic))
        throw Lib::HostCtlException("Physical NIC '" + nic + "' is already an uplink of " + name);
    const json& dvs = NodeAt(state, "/network/dvSwitches");
    if (dvs.is_object())
      for (auto& [name, other] : dvs.items())
        if (Has(NodeAt(other, "/uplinks"), nic))
          throw Lib::HostCtlException("Physical NIC '" + nic + "' is already an uplink of " + name);
    if (!sw["uplinks"].is_array()) sw["uplinks"] = json::array();
    sw["uplinks"].push_back(nic);
  });
}

void SimVirtualSwitchInfo::RemoveUplink(const std::string& switchName, const std::string& nic) {
  state_.Update("VirtualSwitchInfo.RemoveUplink", [&](json& state) {
    json& sw = SwitchIn(state, switchName);
    if (!Has(NodeAt(sw, "/uplinks"), nic))
      throw Lib::HostCtlException("Physical NIC '" + nic + "' is not an uplink of " + switchName);
    sw["uplinks"].erase(std::find(sw["uplinks"].begin(), sw["uplinks"].end(), json(nic)));
    // A teaming policy can only name the switch's own uplinks.
    if (sw.contains("portGroups") && sw["portGroups"].is_object()) {
      for (auto& [pg, group] : sw["portGroups"].items()) {
        Network::NicTeamingPolicy policy = PolicyFrom(NodeAt(group, "/teaming"));
        if (policy.RemoveUplink(nic)) group["teaming"] = PolicyToJson(policy);
      }
    }
  });
}

void SimVirtualSwitchInfo::RemoveDVSwitchUplink(const std::string& dvsName, const std::string& nic) {
  state_.Update("VirtualSwitchInfo.RemoveDVSwitchUplink", [&](json& state) {
    json& all = state["network"]["dvSwitches"];
    if (!all.is_object() || !all.contains(dvsName)) ThrowNotFound("Distributed switch", dvsName);
    json& uplinks = all[dvsName]["uplinks"];
    if (!Has(uplinks, nic))
      throw Lib::HostCtlException("Physical NIC '" + nic + "' is not an uplink of " + dvsName);
    uplinks.erase(std::find(uplinks.begin(), uplinks.end(), json(nic)));
  });
}

void SimVirtualSwitchInfo::SetPortGroupVlanId(const std::string& portGroup, uint16_t vlanId) {
  if (vlanId > 4095) throw Lib::HostCtlException("Invalid VLAN id " + std::to_string(vlanId));
  state_.Update("VirtualSwitchInfo.SetPortGroupVlanId",
                [&](json& state) { PortGroupIn(state, portGroup)["vlanId"] = vlanId; });
}

void SimVirtualSwitchInfo::SetPortGroupTeamingPolicy(const std::string& portGroup,
                                                     const Network::NicTeamingPolicy& policy) {
  state_.Update("VirtualSwitchInfo.SetPortGroupTeamingPolicy", [&](json& state) {
    std::string switchName;
    json& pg = PortGroupIn(state, portGroup, &switchName);
    const json& uplinks = NodeAt(SwitchIn(state, switchName), "/uplinks");
    for (const auto* list : {&policy.GetUplinkOrder(), &policy.GetStandbyUplinks()})
      for (const auto& nic : *list)
        if (!Has(uplinks, nic))
          throw Lib::HostCtlException("Teaming policy names '" + nic + "', which is not an uplink of " +
                                      switchName);
    pg["teaming"] = PolicyToJson(policy);
  });
}

void SimVirtualSwitchInfo::AddVirtualSwitch(const std::string& name) {
  if (name.empty()) throw Lib::HostCtlException("A virtual switch needs a name");
  state_.Update("VirtualSwitchInfo.AddVirtualSwitch", [&](json& state) {
    json& switches = Switches(state);
    if (switches.contains(name)) throw Lib::HostCtlException("Virtual switch '" + name + "' already exists");
    switches[name] = {{"uplinks", json::array()}, {"portGroups", json::object()}};
  });
}

void SimVirtualSwitchInfo::AddPortGroup(const std::string& switchName, const std::string& portGroup,
                                        uint16_t vlanId) {
  if (portGroup.empty()) throw Lib::HostCtlException("A port group needs a name");
  if (vlanId > 4095) throw Lib::HostCtlException("Invalid VLAN id " + std::to_string(vlanId));
  state_.Update("VirtualSwitchInfo.AddPortGroup", [&](json& state) {
    json& sw = SwitchIn(state, switchName);
    for (auto& [name, other] : Switches(state).items())
      if (NodeAt(other, "/portGroups").is_object() && NodeAt(other, "/portGroups").contains(portGroup))
        throw Lib::HostCtlException("Port group '" + portGroup + "' already exists on " + name);
    sw["portGroups"][portGroup] = {{"vlanId", vlanId}, {"teaming", PolicyToJson({})}};
  });
}

}  // namespace HostCtl::Sim
