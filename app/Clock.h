// The clock that key reading measures with. Real runs use the system clock; tests run a
// scaled clock so that the 60-second dimming and the idle time-out pass in well under a
// second of real time.
#pragma once

#include <sys/time.h>

namespace Konu {

class Clock {
 public:
  virtual ~Clock() = default;
  // The current time of this clock.
  virtual timeval Now() const = 0;
  // How many real milliseconds to wait for `span` of this clock to pass (rounded up, >= 0).
  virtual int RealMilliseconds(const timeval& span) const = 0;
};

class SystemClock : public Clock {
 public:
  timeval Now() const override;
  int RealMilliseconds(const timeval& span) const override;
};

// Runs `speed` times faster than the system clock, starting from the real time of its
// construction.
class ScaledClock : public Clock {
 public:
  explicit ScaledClock(double speed);
  timeval Now() const override;
  int RealMilliseconds(const timeval& span) const override;

 private:
  double speed_;
  timeval start_;
};

}  // namespace Konu
