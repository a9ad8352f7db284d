// The welcome screen's product line, built once from the kernel's version record.
#pragma once

#include <array>
#include <functional>
#include <string>

namespace Konu {

// The kernel's system version record: NUL-terminated text fields at byte 0 (product name,
// 32 bytes), 32 (product version, 64), 96 (kernel version, 32) and 128 (build number, to the
// end).
constexpr size_t kVersionRecordSize = 312;
using VersionRecord = std::array<char, kVersionRecordSize>;

// Reads the record; throws HostCtl::Lib::HostCtlException when the host cannot give it.
using VersionRecordReader = std::function<VersionRecord()>;

// Installs the reader used from now on (an empty function restores the host reader) and
// forgets a line built from the previous reader.
void SetVersionRecordReader(VersionRecordReader reader);

// The host reader: "system.version" through the runtime's host backend, 312 bytes.
VersionRecord ReadVersionRecordFromHost();

// "%s %s (NuKernel %s Build %s)" with the record's four fields; a field without its
// terminator ends at the field's last byte.
std::string FormatProductLine(const VersionRecord& record);

// The product line, built on the first successful read and kept; "" while the read fails
// with a host-control error, and read again on the next call. Other errors pass on. The
// pointer stays valid until the next successful build.
const char* ProductLine();

}  // namespace Konu
