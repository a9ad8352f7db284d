// Encoding and decoding of the system version record.
#include "host/SysinfoUtil.h"

#include <cstring>

#include "host/HostCtlException.h"

namespace HostCtl {
namespace {

struct Field {
  std::string SystemVersionRecord::*text;
  size_t offset;
  size_t size;
};

constexpr Field kFields[] = {
    {&SystemVersionRecord::productName, SystemVersionRecord::kProductOffset,
     SystemVersionRecord::kProductSize},
    {&SystemVersionRecord::productVersion, SystemVersionRecord::kVersionOffset,
     SystemVersionRecord::kVersionSize},
    {&SystemVersionRecord::kernelVersion, SystemVersionRecord::kKernelOffset,
     SystemVersionRecord::kKernelSize},
    {&SystemVersionRecord::buildNumber, SystemVersionRecord::kBuildOffset, SystemVersionRecord::kBuildSize},
};

}  // namespace

std::vector<uint8_t> SystemVersionRecord::Encode() const {
  std::vector<uint8_t> record(kSize, 0);
  for (const auto& field : kFields) {
    const std::string& text = this->*field.text;
    size_t n = std::min(text.size(), field.size - 1);
    std::memcpy(record.data() + field.offset, text.data(), n);
  }
  return record;
}

SystemVersionRecord SystemVersionRecord::Decode(const std::vector<uint8_t>& record) {
  if (record.size() < kSize)
    throw Lib::HostCtlException("Short system version record (" + std::to_string(record.size()) + " bytes)");
  SystemVersionRecord out;
  for (const auto& field : kFields) {
    const char* start = reinterpret_cast<const char*>(record.data() + field.offset);
    out.*field.text = std::string(start, strnlen(start, field.size));
  }
  return out;
}

}  // namespace HostCtl
