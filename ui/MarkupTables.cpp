// The colour-name table and the variable table of screen texts.
#include "ui/MarkupTables.h"

namespace Konu {
namespace {
std::string Empty() { return std::string(); }
}  // namespace

const std::vector<ColorName>& ColorNames() {
  static const std::vector<ColorName> table = {
      {"white", 7}, {"black", 0}, {"dark-grey", 6}, {"light-grey", 2}, {"yellow", 3}, {"red", 1},
  };
  return table;
}

int FindColor(std::string_view name) {
  for (const ColorName& entry : ColorNames()) {
    if (name == entry.name) return entry.index;
  }
  return -1;
}

VariableTable::VariableTable(const std::vector<std::string>& names) {
  entries_.reserve(names.size());
  for (const std::string& name : names) entries_.push_back({name, Empty});
}

VariableTable& VariableTable::Standard() {
  static VariableTable table({"ip", "ssl-thumbprint", "ssh-dsa-fingerprint", "ssh-rsa-fingerprint",
                              "orinproduct", "orinversion", "supportstart", "supportperiod", "servicetag",
                              "assettag", "BIOSversion", "BMCversion", "CPLDversion", "PLSAversion",
                              "memory"});
  return table;
}

const MarkupVariable* VariableTable::Find(std::string_view name) const {
  for (const MarkupVariable& entry : entries_) {
    if (entry.name == name) return &entry;
  }
  return nullptr;
}

bool VariableTable::SetProvider(std::string_view name, VariableProvider provider) {
  for (MarkupVariable& entry : entries_) {
    if (entry.name == name) {
      entry.provider = provider ? std::move(provider) : VariableProvider(Empty);
      return true;
    }
  }
  return false;
}

}  // namespace Konu
