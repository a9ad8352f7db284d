// System and scaled clocks.
#include "app/Clock.h"

namespace Konu {
namespace {
double Seconds(const timeval& t) { return t.tv_sec + t.tv_usec / 1e6; }
// Rounded with integer casts: the console links no maths library.
timeval FromSeconds(double s) {
  auto whole = static_cast<time_t>(s);          // towards zero
  if (static_cast<double>(whole) > s) --whole;  // down, for times before 1970 too
  timeval t;
  t.tv_sec = whole;
  t.tv_usec = static_cast<suseconds_t>((s - static_cast<double>(whole)) * 1e6);
  return t;
}
int MillisecondsUp(double seconds) {
  if (seconds <= 0) return 0;
  const double ms = seconds * 1000.0;
  if (ms > 2e9) return 2000000000;
  auto whole = static_cast<int>(ms);
  return static_cast<double>(whole) < ms ? whole + 1 : whole;
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

int ScaledClock::RealMilliseconds(const timeval& span) const {
  return MillisecondsUp(Seconds(span) / speed_);
}

}  // namespace Konu
