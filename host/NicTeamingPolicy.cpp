// NIC teaming policy value: uplink order and maximum of active uplinks.
#include "host/NicTeamingPolicy.h"

#include <algorithm>

namespace HostCtl::Network {
namespace {

bool Contains(const std::vector<std::string>& list, const std::string& name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

}  // namespace

void NicTeamingPolicy::SetUplinkOrder(const std::vector<std::string>& active,
                                      const std::vector<std::string>& standby) {
  std::vector<std::string> newActive, newStandby;
  for (const auto& nic : active)
    if (!Contains(newActive, nic)) newActive.push_back(nic);
  for (const auto& nic : standby)
    if (!Contains(newActive, nic) && !Contains(newStandby, nic)) newStandby.push_back(nic);
  activeUplinks_ = std::move(newActive);
  standbyUplinks_ = std::move(newStandby);
  hasUplinkOrder_ = true;
}

void NicTeamingPolicy::ClearUplinkOrder() {
  activeUplinks_.clear();
  standbyUplinks_.clear();
  hasUplinkOrder_ = false;
}

bool NicTeamingPolicy::RemoveUplink(const std::string& nic) {
  auto before = activeUplinks_.size() + standbyUplinks_.size();
  std::erase(activeUplinks_, nic);
  std::erase(standbyUplinks_, nic);
  return activeUplinks_.size() + standbyUplinks_.size() != before;
}

}  // namespace HostCtl::Network
