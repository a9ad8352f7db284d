// The NIC teaming policy of a port group: the explicit uplink order (active, then standby)
// and the explicit maximum of active uplinks, each of which may be absent (inherited).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace HostCtl::Network {

class NicTeamingPolicy {
 public:
  // True when the policy carries an explicit uplink order.
  bool HasUplinkOrder() const { return hasUplinkOrder_; }
  // The active uplinks in order (empty when no explicit order).
  const std::vector<std::string>& GetUplinkOrder() const { return activeUplinks_; }
  const std::vector<std::string>& GetStandbyUplinks() const { return standbyUplinks_; }
  // Sets an explicit order; a name listed twice is kept once, at its first place, and a
  // standby uplink that is also active is dropped from the standby list.
  void SetUplinkOrder(const std::vector<std::string>& active, const std::vector<std::string>& standby = {});
  // Drops the explicit order (the policy inherits the switch's).
  void ClearUplinkOrder();
  // Takes a NIC out of both lists; answers whether it was in one.
  bool RemoveUplink(const std::string& nic);

  bool HasMaxActiveUplinks() const { return hasMaxActiveUplinks_; }
  uint32_t GetMaxActiveUplinks() const { return maxActiveUplinks_; }
  void SetMaxActiveUplinks(uint32_t max) {
    maxActiveUplinks_ = max;
    hasMaxActiveUplinks_ = true;
  }
  void ClearMaxActiveUplinks() {
    maxActiveUplinks_ = 0;
    hasMaxActiveUplinks_ = false;
  }

  friend bool operator==(const NicTeamingPolicy&, const NicTeamingPolicy&) = default;

 private:
  bool hasUplinkOrder_ = false;
  std::vector<std::string> activeUplinks_;
  std::vector<std::string> standbyUplinks_;
  bool hasMaxActiveUplinks_ = false;
  uint32_t maxActiveUplinks_ = 0;
};

}  // namespace HostCtl::Network
