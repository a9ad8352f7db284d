// System and scaled clocks.
#include "app/Clock.h"

#include <cmath>

namespace Konu {
namespace {
double Seconds(const timeval& t) { return t.tv_sec + t.tv_usec / 1e6; }
timeval FromSeconds(double s) {
  timeval t;
  t.tv_sec = static_cast<time_t>(std::floor(s));
  t.tv_usec = static_cast<suseconds_t>((s - std::floor(s)) * 1e6);
  return t;
}
int MillisecondsUp(double seconds) {
  if (seconds <= 0) return 0;
  double ms = std::ceil(seconds * 1000.0);
  return ms > 2e9 ? 2000000000 : static_cast<int>(ms);
}
}  // namespace

timeval SystemClock::Now() const {
  timeval t;
  gettimeofday(&t, nullptr);
  return t;
}

int SystemClock::RealMilliseconds(const timeval& span) const { return MillisecondsUp(Seconds(span)); }

ScaledClock::ScaledClock(double speed) : speed_(speed > 0 ? speed : 1.0) { gettimeofday(&start_, nullptr); }

timeval ScaledClock::Now() const {
  timeval real;
  gettimeofday(&real, nullptr);
  return FromSeconds(Seconds(start_) + (Seconds(real) - Seconds(start_)) * speed_);
}

int ScaledClock::RealMilliseconds(const timeval& span) const { return MillisecondsUp(Seconds(span) / speed_); }

}  // namespace Konu
