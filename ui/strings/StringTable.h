// The English screen texts by id: one row per id, 0 to 266, in id order.
#pragma once

#include <cstdint>
#include <span>

namespace Konu {

struct StringEntry {
  uint32_t id;
  const char* text;  // null when the row shows another id's text or is built at run time
  int32_t sameAs;    // the lower id whose text this row shows (an alias), or -1
};

constexpr uint32_t kLastStringId = 266;
constexpr uint32_t kProductLineId = 2;  // built from the kernel's version record
constexpr uint32_t kEmptyStringId = 3;

// All 267 rows; row i has id i.
std::span<const StringEntry> StringTable();

}  // namespace Konu
