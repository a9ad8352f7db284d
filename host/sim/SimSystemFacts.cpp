// Simulated hardware facts, support and firmware facts, smart-card slots and kernel
// information nodes.
//
// State read (JSON pointers):
//   /hardware/{vendor, product, cpuPackages, cpuModel, memoryPages, pageSize}
//   /hardware/cpuCores, /hardware/cpuThreads  optional; default one core per package, one
//                                           thread per core
//   /hardware/memoryBytes                   optional; overrides memoryPages * pageSize
//   /smartCards/slots [{name, token: null | {userId}}]
//   /version/{product, version, kernelVersion, build}   the `system.version` record
//   /bootOption                              first byte of `system.bootOption`
//   /support/{start, period, serviceTag, assetTag}, /firmware/{bios, bmc, cpld, plsa}
#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {

using nlohmann::json;

Hardware SimHardwareInfo::GetHardware() const {
  const auto snapshot = state_.Read("HardwareInfo.GetHardware");
  const json& state = *snapshot;
  Hardware hw;
  hw.vendor = ValueAt<std::string>(state, "/hardware/vendor", "");
  hw.product = ValueAt<std::string>(state, "/hardware/product", "");
  hw.cpuPackages = ValueAt<uint32_t>(state, "/hardware/cpuPackages", 1);
  hw.cpuCores = ValueAt<uint32_t>(state, "/hardware/cpuCores", hw.cpuPackages);
  hw.cpuThreads = ValueAt<uint32_t>(state, "/hardware/cpuThreads", hw.cpuCores);
  hw.cpuModel = ValueAt<std::string>(state, "/hardware/cpuModel", "");
  uint64_t pages = ValueAt<uint64_t>(state, "/hardware/memoryPages", 0);
  uint64_t pageSize = ValueAt<uint64_t>(state, "/hardware/pageSize", 4096);
  hw.memoryBytes = ValueAt<uint64_t>(state, "/hardware/memoryBytes", pages * pageSize);
  return hw;
}

SupportFacts SimSupportInfo::GetSupportFacts() const {
  const auto snapshot = state_.Read("SupportInfo.GetSupportFacts");
  const json& state = *snapshot;
  SupportFacts facts;
  facts.supportStart = ValueAt<std::string>(state, "/support/start", "");
  facts.supportPeriod = ValueAt<std::string>(state, "/support/period", "");
  facts.serviceTag = ValueAt<std::string>(state, "/support/serviceTag", "");
  facts.assetTag = ValueAt<std::string>(state, "/support/assetTag", "");
  facts.biosVersion = ValueAt<std::string>(state, "/firmware/bios", "");
  facts.bmcVersion = ValueAt<std::string>(state, "/firmware/bmc", "");
  facts.cpldVersion = ValueAt<std::string>(state, "/firmware/cpld", "");
  facts.plsaVersion = ValueAt<std::string>(state, "/firmware/plsa", "");
  return facts;
}

std::vector<SmartCardSlot> SimSmartCardInfo::GetSlots() const {
  const auto snapshot = state_.Read("SmartCardInfo.GetSlots");
  const json& state = *snapshot;
  std::vector<SmartCardSlot> slots;
  const json& list = NodeAt(state, "/smartCards/slots");
  if (!list.is_array()) return slots;
  for (const auto& entry : list) {
    SmartCardSlot slot;
    slot.name = ValueAt<std::string>(entry, "/name", "");
    if (entry.is_object() && entry.contains("token") && entry["token"].is_object())
      slot.token = SmartCardToken{ValueAt<std::string>(entry["token"], "/userId", "")};
    slots.push_back(std::move(slot));
  }
  return slots;
}

std::vector<uint8_t> SimSysinfoUtil::SysinfoGet(const std::string& node, size_t size) const {
  const auto snapshot = state_.Read("SysinfoUtil.SysinfoGet");
  const json& state = *snapshot;
  std::vector<uint8_t> record;
  if (node == SystemVersionRecord::kNode) {
    SystemVersionRecord version;
    version.productName = ValueAt<std::string>(state, "/version/product", "");
    version.productVersion = ValueAt<std::string>(state, "/version/version", "");
    version.kernelVersion = ValueAt<std::string>(state, "/version/kernelVersion", "");
    version.buildNumber = ValueAt<std::string>(state, "/version/build", "");
    record = version.Encode();
  } else if (node == BootOptionRecord::kNode) {
    uint32_t value = static_cast<uint32_t>(ValueAt<int64_t>(state, "/bootOption", 0));
    record = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
              static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
  } else {
    throw Lib::HostCtlException("Unknown sysinfo node '" + node + "'");
  }
  record.resize(size, 0);
  return record;
}

}  // namespace HostCtl::Sim
