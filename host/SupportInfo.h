// Support-contract and firmware facts of the host, for the support information pages.
#pragma once

#include <string>

namespace HostCtl {

// Each fact is "" where the host has nothing to say.
struct SupportFacts {
  std::string supportStart;   // start of the support contract
  std::string supportPeriod;  // its length
  std::string serviceTag;     // the machine's serial number
  std::string assetTag;       // the owner's inventory number
  std::string biosVersion;
  std::string bmcVersion;
  std::string cpldVersion;
  std::string plsaVersion;
};

class SupportInfo {
 public:
  virtual ~SupportInfo() = default;
  SupportInfo() = default;
  SupportInfo(const SupportInfo&) = delete;
  SupportInfo& operator=(const SupportInfo&) = delete;

  virtual SupportFacts GetSupportFacts() const = 0;
};

}  // namespace HostCtl
