// The welcome screen's product line: read the version record once, format it and keep it.
#include "ui/strings/ProductLine.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/SysinfoUtil.h"

namespace Konu {
namespace {

struct RecordField {
  size_t offset;
  size_t width;
};
constexpr RecordField kProductName{0, 32};
constexpr RecordField kProductVersion{32, 64};
constexpr RecordField kKernelVersion{96, 32};
constexpr RecordField kBuildNumber{128, kVersionRecordSize - 128};

struct ProductLineState {
  VersionRecordReader reader;
  std::string line;  // empty until built
};

ProductLineState& State() {
  static ProductLineState state;
  return state;
}

std::string_view Field(const VersionRecord& record, RecordField field) {
  const char* start = record.data() + field.offset;
  return std::string_view(start, strnlen(start, field.width));
}

}  // namespace

void SetVersionRecordReader(VersionRecordReader reader) {
  State().reader = std::move(reader);
  State().line.clear();
}

VersionRecord ReadVersionRecordFromHost() {
  std::unique_ptr<HostCtl::SysinfoUtil> sysinfo = Runtime::Get().Host().CreateSysinfoUtil();
  std::vector<uint8_t> bytes = sysinfo->SysinfoGet(HostCtl::SystemVersionRecord::kNode, kVersionRecordSize);
  VersionRecord record{};
  if (!bytes.empty()) std::memcpy(record.data(), bytes.data(), std::min(bytes.size(), record.size()));
  return record;
}

std::string FormatProductLine(const VersionRecord& record) {
  std::string line;
  line.append(Field(record, kProductName)).append(" ");
  line.append(Field(record, kProductVersion)).append(" (NuKernel ");
  line.append(Field(record, kKernelVersion)).append(" Build ");
  line.append(Field(record, kBuildNumber)).append(")");
  return line;
}

const char* ProductLine() {
  ProductLineState& state = State();
  if (state.line.empty()) {
    try {
      VersionRecord record = state.reader ? state.reader() : ReadVersionRecordFromHost();
      state.line = FormatProductLine(record);
    } catch (const HostCtl::Lib::HostCtlException&) {
      // Shown as an empty line; the next request reads again.
    }
  }
  return state.line.c_str();
}

}  // namespace Konu
