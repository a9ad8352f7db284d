// konu-hostsim dvs: puts a host's management interface on a fresh distributed switch.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace Konu::Sim {

// The state cannot be changed as asked (no management interface on a standard switch, the
// name taken).
struct DvsSetupError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Moves the management interface from its port group onto port "10" of a new distributed
// switch `dvsName` of `vendor`: every uplink of its standard switch becomes an uplink of the
// new switch, the port takes the port group's VLAN and teaming order, and the port group goes
// (the standard switch stays, without uplinks). Returns a line saying what was done.
std::string PutManagementOnDvs(nlohmann::json& state, const std::string& dvsName, const std::string& vendor);

}  // namespace Konu::Sim
