// The host's hardware facts for the welcome screen: vendor, product, CPUs, memory.
#pragma once

#include <cstdint>
#include <string>

namespace HostCtl {

struct Hardware {
  std::string vendor;   // system vendor as reported (may carry blanks)
  std::string product;  // system product name
  uint32_t cpuPackages = 0;
  uint32_t cpuCores = 0;    // all cores of all packages
  uint32_t cpuThreads = 0;  // logical CPUs
  std::string cpuModel;     // model name of the first package
  uint64_t memoryBytes = 0;
};

class HardwareInfo {
 public:
  virtual ~HardwareInfo() = default;
  HardwareInfo() = default;
  HardwareInfo(const HardwareInfo&) = delete;
  HardwareInfo& operator=(const HardwareInfo&) = delete;

  virtual Hardware GetHardware() const = 0;
};

}  // namespace HostCtl
