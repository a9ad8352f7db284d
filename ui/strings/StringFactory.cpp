// The one English string factory and its lookup by id.
#include "ui/strings/StringFactory.h"

#include <cstring>

#include "ui/strings/ProductLine.h"
#include "ui/strings/StringTable.h"

namespace Konu {

const StringFactory* StringFactory::Get(const char* locale) {
  // Created by the first "en_US" request and never destroyed: frames keep the pointer.
  static const StringFactory* english = nullptr;
  if (english == nullptr && locale != nullptr && std::strcmp(locale, "en_US") == 0) {
    english = new en_US_Factory();
  }
  return english;
}

const char* en_US_Factory::GetString(uint32_t id) const {
  if (id > kLastStringId) return "";
  if (id == kEmptyStringId) return "";
  if (id == kProductLineId) return ProductLine();
  const StringEntry& row = StringTable()[id];
  return row.sameAs >= 0 ? StringTable()[row.sameAs].text : row.text;
}

}  // namespace Konu
