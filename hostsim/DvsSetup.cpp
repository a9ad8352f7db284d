// konu-hostsim dvs: the state edit that puts the management interface on a distributed switch.
#include "hostsim/DvsSetup.h"

#include <algorithm>

namespace Konu::Sim {
namespace {

using Json = nlohmann::json;

constexpr const char* kPortKey = "10";

Json Without(const Json& list, const Json& gone) {
  Json kept = Json::array();
  if (list.is_array())
    for (const Json& entry : list)
      if (std::find(gone.begin(), gone.end(), entry) == gone.end()) kept.push_back(entry);
  return kept;
}

}  // namespace

std::string PutManagementOnDvs(Json& state, const std::string& dvsName, const std::string& vendor) {
  Json& network = state["network"];
  const std::string nicName = network.value("managementInterface", "");
  Json& nics = network["nukNics"];
  if (nicName.empty() || !nics.is_object() || !nics.contains(nicName))
    throw DvsSetupError("the host has no management interface");
  Json& nic = nics[nicName];
  const std::string switchName = nic.value("switch", "");
  const std::string portGroup = nic.value("portGroup", "");
  Json& switches = network["vswitches"];
  if (!switches.is_object() || !switches.contains(switchName) ||
      !switches[switchName]["portGroups"].contains(portGroup))
    throw DvsSetupError(nicName + " is not on a port group of a standard switch");
  Json& dvSwitches = network["dvSwitches"];
  if (!dvSwitches.is_object()) dvSwitches = Json::object();
  if (dvsName.empty() || dvSwitches.contains(dvsName) || switches.contains(dvsName))
    throw DvsSetupError("a switch named \"" + dvsName + "\" exists already");

  Json& sw = switches[switchName];
  const Json uplinks = sw["uplinks"].is_array() ? sw["uplinks"] : Json::array();
  const Json group = sw["portGroups"][portGroup];
  const Json teaming = group.value("teaming", Json::object());
  Json portUplinks = uplinks;
  if (teaming.value("explicitOrder", false)) {
    portUplinks = teaming.value("activeUplinks", Json::array());
    for (const Json& nicUplink : teaming.value("standbyUplinks", Json::array()))
      portUplinks.push_back(nicUplink);
  }
  dvSwitches[dvsName] = {{"vendor", vendor},
                         {"uplinks", uplinks},
                         {"ports",
                          {{kPortKey,
                            {{"vlanId", group.value("vlanId", 0)},
                             {"uplinks", portUplinks},
                             {"blocked", false},
                             {"hostLocal", false},
                             {"mtu", 1500}}}}}};

  // The standard switch keeps its other port groups, without the uplinks that left.
  sw["uplinks"] = Json::array();
  sw["portGroups"].erase(portGroup);
  for (auto& [name, other] : sw["portGroups"].items()) {
    if (!other.contains("teaming") || !other["teaming"].is_object()) continue;
    for (const char* list : {"activeUplinks", "standbyUplinks"})
      other["teaming"][list] = Without(other["teaming"].value(list, Json::array()), uplinks);
  }
  nic["switch"] = dvsName;
  nic["dvsPort"] = kPortKey;
  nic.erase("portGroup");

  std::string names;
  for (const Json& uplink : uplinks) names += " " + uplink.get<std::string>();
  return nicName + " is on port " + kPortKey + " of distributed switch " + dvsName + " (" + vendor +
         "), uplinks" + (names.empty() ? " none" : names);
}

}  // namespace Konu::Sim
