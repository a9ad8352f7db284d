// What the fuzz targets share: a check that reports the broken invariant and aborts, so
// libFuzzer saves the input, and a reader that takes typed values off the front of an input.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#define FUZZ_CHECK(condition, ...)                                                 \
  do {                                                                             \
    if (!(condition)) {                                                            \
      std::fprintf(stderr, "%s:%d: broken: %s\n", __FILE__, __LINE__, #condition); \
      std::fprintf(stderr, __VA_ARGS__);                                           \
      std::fprintf(stderr, "\n");                                                  \
      std::abort();                                                                \
    }                                                                              \
  } while (0)

namespace Konu::Fuzz {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(reinterpret_cast<const char*>(data), size) {}

  bool Empty() const { return data_.empty(); }
  // The next byte, or 0 when the input is used up.
  uint8_t Byte() {
    if (data_.empty()) return 0;
    uint8_t b = static_cast<uint8_t>(data_.front());
    data_.remove_prefix(1);
    return b;
  }
  // A number in [low, high] made of the next byte.
  int Between(int low, int high) { return low + Byte() % (high - low + 1); }
  // Everything not yet taken.
  std::string Rest() {
    std::string rest(data_);
    data_ = {};
    return rest;
  }

 private:
  std::string_view data_;
};

}  // namespace Konu::Fuzz
