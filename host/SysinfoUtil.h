// Kernel information nodes: raw records by node name ("system.version", "system.bootOption")
// and the layout of the version record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace HostCtl {

class SysinfoUtil {
 public:
  virtual ~SysinfoUtil() = default;
  SysinfoUtil() = default;
  SysinfoUtil(const SysinfoUtil&) = delete;
  SysinfoUtil& operator=(const SysinfoUtil&) = delete;

  // Reads a node into a record of exactly `size` bytes (zero-filled past the node's data).
  // Throws HostCtl::Lib::HostCtlException for an unknown node.
  virtual std::vector<uint8_t> SysinfoGet(const std::string& node, size_t size) const = 0;
};

// The "system.version" record: 312 bytes holding NUL-terminated texts at fixed offsets.
struct SystemVersionRecord {
  static constexpr const char* kNode = "system.version";
  static constexpr size_t kSize = 312;
  static constexpr size_t kProductOffset = 0, kProductSize = 32;
  static constexpr size_t kVersionOffset = 32, kVersionSize = 64;
  static constexpr size_t kKernelOffset = 96, kKernelSize = 32;
  static constexpr size_t kBuildOffset = 128, kBuildSize = 32;

  std::string productName;
  std::string productVersion;
  std::string kernelVersion;
  std::string buildNumber;

  // Each text cut to its field less one byte, so a NUL always ends it.
  std::vector<uint8_t> Encode() const;
  // Reads the texts up to the first NUL or the end of each field; a short record throws.
  static SystemVersionRecord Decode(const std::vector<uint8_t>& record);
};

// The "system.bootOption" record: 4 bytes, the first 1 when the host runs in audit mode.
struct BootOptionRecord {
  static constexpr const char* kNode = "system.bootOption";
  static constexpr size_t kSize = 4;
};

}  // namespace HostCtl
