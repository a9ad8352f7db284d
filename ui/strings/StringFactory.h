// Every screen text by a fixed integer id, 0 to 266. Unknown ids give "".
#pragma once

#include <cstdint>

namespace Konu {

class StringFactory {
 public:
  virtual ~StringFactory() = default;
  // Never null. The text stays valid for the life of the process (id 2: until it is first
  // built successfully, after which the new text stays valid).
  virtual const char* GetString(uint32_t id) const = 0;

  // The first call with "en_US" creates the one English factory and keeps it for ever;
  // every later call returns it whatever the locale. Any other locale while none exists
  // gives null.
  static const StringFactory* Get(const char* locale);
};

// The English texts.
class en_US_Factory : public StringFactory {
 public:
  const char* GetString(uint32_t id) const override;
};

}  // namespace Konu
