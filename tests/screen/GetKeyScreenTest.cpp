// Key reading on a clock that runs fast: the idle time-out never ends a session before 60 s,
// a longer one dims the screen first, and 0 never ends it, nor does any time-out outside a
// session. (Dimming after 60 s and the waking key: e2e.Startup.ScreenDimsAfterAMinute... and
// e2e.Shutdown.NoIdleTimeOutClosesTheDialogOpenedWithF12.)
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

#include "app/Clock.h"
#include "app/KonuTimeout.h"
#include "app/Runtime.h"
#include "tests/harness/Terminal.h"
#include "tests/screen/UiChild.h"
#include "ui/Frame.h"
#include "ui/TextArea.h"

namespace Konu {
namespace {

using KonuTest::Terminal;
using KonuTest::UiCurses;

// Shows each key it reads until "q".
class KeyFrame : public Frame {
 public:
  explicit KeyFrame(bool idleTimeout)
      : Frame(nullptr, 0, 0, 40, 6, 3, 0), idleTimeout_(idleTimeout), text_(this, 2, 2, 36, 1, 0) {}
  int EventLoop() override {
    text_.SetText("{color:red}waiting{/color}");
    for (;;) {
      int key = GetKey(idleTimeout_);
      char line[64];
      snprintf(line, sizeof line, "got %s", keyname(key));
      text_.SetText(line);
      if (key == 'q') return 0;
    }
  }

 private:
  bool idleTimeout_;
  TextArea text_;
};

struct Setup {
  double speed = 1;
  unsigned idleTimeout = 600;
  bool useTimeout = false;
  bool session = false;
};

// Runs a KeyFrame modally; a time-out shows "timeout after N s" in clock seconds.
int RunKeys(const Setup& setup) {
  UiCurses curses;
  if (!curses.Ok()) return 2;
  static ScaledClock* clock = nullptr;
  clock = new ScaledClock(setup.speed);
  Runtime& runtime = Runtime::Get();
  runtime.SetClock(clock);
  runtime.session.idleTimeout = setup.idleTimeout;
  runtime.session.active = setup.session;
  KeyFrame frame(setup.useTimeout);
  timeval start = clock->Now();
  try {
    frame.RunModal();
  } catch (const KonuTimeout&) {
    timeval end = clock->Now();
    double seconds = (end.tv_sec - start.tv_sec) + (end.tv_usec - start.tv_usec) / 1e6;
    char line[80];
    snprintf(line, sizeof line, "timeout after %.1f s, top frame %s", seconds,
             runtime.topFrame ? "set" : "cleared");
    mvaddstr(LINES - 1, 0, line);
    refresh();
    UiCurses::HoldUntil('q');
  }
  return 0;
}

bool Dimmed(const Terminal& t) {
  KonuTest::CellColors cell = t.Colors(2, 2);
  return cell.background == 0 && cell.foreground == 6;
}

double TimeoutSeconds(const Terminal& t) {
  int row = -1;
  if (!t.Find("timeout after ", &row, nullptr)) return -1;
  double seconds = -1;
  sscanf(t.Row(row).c_str(), "timeout after %lf", &seconds);
  return seconds;
}

TEST(GetKeyScreen, AnIdleTimeoutBelowSixtySecondsEndsOnlyAfterSixty) {
  Terminal t(24, 80);
  t.Fork([] { return RunKeys({.speed = 600, .idleTimeout = 30, .useTimeout = true, .session = true}); },
         KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("timeout after", 5000)) << t.Screen();
  EXPECT_GE(TimeoutSeconds(t), 60.0) << t.Screen();
  EXPECT_TRUE(t.Find("top frame cleared", nullptr, nullptr)) << t.Screen();
  Quit(t);
}

TEST(GetKeyScreen, ALongerIdleTimeoutDimsFirstAndEndsAfterItsOwnTime) {
  Terminal t(24, 80);
  t.Fork([] { return RunKeys({.speed = 600, .idleTimeout = 120, .useTimeout = true, .session = true}); },
         KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitFor([&] { return Dimmed(t); }, 5000)) << t.Screen();
  ASSERT_TRUE(t.WaitForText("timeout after", 5000)) << t.Screen();
  EXPECT_GE(TimeoutSeconds(t), 120.0) << t.Screen();
  Quit(t);
}

// A time-out of 0 in a session, and any time-out outside one (the login form, the shutdown
// dialog), never ends the wait; the screen still dims.
TEST(GetKeyScreen, NoTimeoutWithZeroOrOutsideASessionButTheScreenStillDims) {
  const struct {
    unsigned idleTimeout;
    bool session;
  } kCases[] = {{0, true}, {60, false}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.session ? "zero in a session" : "no session");
    Terminal t(24, 80);
    // 60000 times faster: every real millisecond is a minute.
    t.Fork(
        [c] {
          return RunKeys(
              {.speed = 60000, .idleTimeout = c.idleTimeout, .useTimeout = true, .session = c.session});
        },
        KonuTest::UiEnv());
    ASSERT_TRUE(t.WaitFor([&] { return Dimmed(t); }, 5000)) << t.Screen();
    EXPECT_FALSE(t.WaitForExit(500, nullptr)) << t.Screen();  // more than eight hours of its clock
    EXPECT_FALSE(t.Find("timeout after", nullptr, nullptr)) << t.Screen();
    Quit(t);
  }
}

}  // namespace
}  // namespace Konu
