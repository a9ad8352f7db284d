// Process-wide console state.
#include "app/Runtime.h"

#include <stdexcept>

#include "app/Clock.h"

namespace Konu {

Runtime& Runtime::Get() {
  static Runtime runtime;
  return runtime;
}

HostCtl::Host& Runtime::Host() const {
  if (!host_) throw std::logic_error("no host backend set");
  return *host_;
}

const Clock& Runtime::Clock() const {
  static const SystemClock systemClock;
  return clock_ ? *clock_ : systemClock;
}

}  // namespace Konu
