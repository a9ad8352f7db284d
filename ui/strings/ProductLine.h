// The welcome screen's product line, built once from the kernel's version record.
#pragma once

#include <array>
#include <functional>
#include <stdexcept>
#include <string>

namespace Konu {

// The kernel's system version record: NUL-terminated text fields at byte 0 (product name,
// 32 bytes), 32 (product version, 64), 96 (kernel version, 32) and 128 (build number, to the
// end).
constexpr size_t kVersionRecordSize = 312;
using VersionRecord = std::array<char, kVersionRecordSize>;

// A failed read of the version record. The product line swallows it and tries again on the
// next request; any other exception from a reader passes to the caller.
class VersionReadError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Reads the record; throws VersionReadError when the host cannot give it.
using VersionRecordReader = std::function<VersionRecord()>;

// Installs the reader used from now on (an empty function restores the built-in one) and
// forgets a line built from the previous reader. Set it at start-up, before the first screen.
void SetVersionRecordReader(VersionRecordReader reader);

// The built-in reader: a fixed record for a host that has not been wired to a backend yet.
VersionRecord DefaultVersionRecord();

// "%s %s (NuKernel %s Build %s)" with the record's four fields; a field without its
// terminator ends at the field's last byte.
std::string FormatProductLine(const VersionRecord& record);

// The product line, built on the first successful read and kept. "" while the read fails.
// The pointer stays valid until the next successful build.
const char* ProductLine();

}  // namespace Konu
