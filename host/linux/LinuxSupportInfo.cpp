// The real machine's support facts: what DMI tells under the backend's root. DMI has no
// support contract, BMC, CPLD or PLSA version, so those stay empty.
//
// Files read under the root: /sys/class/dmi/id/{product_serial, chassis_asset_tag,
// bios_version} (product_serial is readable by root only; unreadable means empty).
#include "host/linux/LinuxHost.h"
#include "host/linux/LinuxServices.h"

namespace HostCtl::Linux {
namespace {

// Placeholders firmware writes where a field was never filled in.
bool Unset(const std::string& value) {
  for (const char* filler : {"Not Specified", "To Be Filled By O.E.M.", "Default string", "None"})
    if (value == filler) return true;
  return false;
}

class LinuxSupportInfo : public SupportInfo {
 public:
  explicit LinuxSupportInfo(std::string root) : files_(std::move(root)) {}
  SupportFacts GetSupportFacts() const override {
    SupportFacts facts;
    facts.serviceTag = Dmi("product_serial");
    facts.assetTag = Dmi("chassis_asset_tag");
    facts.biosVersion = Dmi("bios_version");
    return facts;
  }

 private:
  std::string Dmi(const char* name) const {
    std::string value = files_.ReadLine(std::string("/sys/class/dmi/id/") + name);
    while (!value.empty() && (value.back() == ' ' || value.back() == '\t')) value.pop_back();
    return Unset(value) ? "" : value;
  }
  LinuxFiles files_;
};

}  // namespace

std::unique_ptr<SupportInfo> LinuxHost::CreateSupportInfo() const {
  return std::make_unique<LinuxSupportInfo>(root_);
}

}  // namespace HostCtl::Linux
