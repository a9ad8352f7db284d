// Distributed switches on a Linux machine: there are none, so every switch and port is unknown
// and every change is refused with "not supported on this host", like the other network writes.
#pragma once

#include "host/DistributedSwitchInfo.h"
#include "host/HostCtlException.h"
#include "host/linux/LinuxServices.h"

namespace HostCtl::Linux {

class LinuxDistributedSwitchInfo : public Network::DistributedSwitchInfo {
 public:
  std::string GetVendor(const std::string& dvsName) const override { ThrowNoSwitch(dvsName); }
  Network::DVSwitchPort GetPort(const std::string& dvsName, const std::string&) const override {
    ThrowNoSwitch(dvsName);
  }
  std::string AddHostLocalPort(const std::string&, const std::string&,
                               const Network::DVSwitchPort&) override {
    ThrowNotSupported();
  }
  void SetInterfacePort(const std::string&, const std::string&, const std::string&) override {
    ThrowNotSupported();
  }
  std::vector<std::string> GetInterfaceNames() const override { ThrowNotSupported(); }
  void DisableInterface(const std::string&) override { ThrowNotSupported(); }

 private:
  [[noreturn]] static void ThrowNoSwitch(const std::string& dvsName) {
    throw Lib::HostCtlException("Distributed switch '" + dvsName + "' not found");
  }
};

}  // namespace HostCtl::Linux
