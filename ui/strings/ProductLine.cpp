// The welcome screen's product line: read the version record once, format it and keep it.
#include "ui/strings/ProductLine.h"

#include <algorithm>
#include <cstring>
#include <string_view>

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

void CopyText(VersionRecord* record, RecordField field, std::string_view text) {
  std::memcpy(record->data() + field.offset, text.data(), std::min(text.size(), field.width - 1));
}

}  // namespace

void SetVersionRecordReader(VersionRecordReader reader) {
  State().reader = std::move(reader);
  State().line.clear();
}

VersionRecord DefaultVersionRecord() {
  VersionRecord record{};
  CopyText(&record, kProductName, "KONU-Orin");
  CopyText(&record, kProductVersion, "8.0.3");
  CopyText(&record, kKernelVersion, "8.0.3");
  CopyText(&record, kBuildNumber, "24414501");
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
      VersionRecord record = state.reader ? state.reader() : DefaultVersionRecord();
      state.line = FormatProductLine(record);
    } catch (const VersionReadError&) {
      // Shown as an empty line; the next request reads again.
    }
  }
  return state.line.c_str();
}

}  // namespace Konu
