// The simulated host's distributed-switch ports, host-local ports and virtual NIC switches.
#pragma once

#include <string>
#include <vector>

#include "host/DistributedSwitchInfo.h"
#include "host/sim/SimState.h"

namespace HostCtl::Sim {

class SimDistributedSwitchInfo : public Network::DistributedSwitchInfo {
 public:
  explicit SimDistributedSwitchInfo(std::string root) : state_(std::move(root)) {}
  std::string GetVendor(const std::string& dvsName) const override;
  Network::DVSwitchPort GetPort(const std::string& dvsName, const std::string& portKey) const override;
  std::string AddHostLocalPort(const std::string& dvsName, const std::string& cloneFrom,
                               const Network::DVSwitchPort& properties) override;
  void SetInterfacePort(const std::string& nic, const std::string& dvsName,
                        const std::string& portKey) override;
  std::vector<std::string> GetInterfaceNames() const override;
  void DisableInterface(const std::string& nic) override;

 private:
  SimState state_;
};

}  // namespace HostCtl::Sim
