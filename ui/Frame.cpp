// Frame: modal running and the key reader with its dimming and idle time-out.
#include "ui/Frame.h"

#include <curses.h>
#include <sys/ioctl.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "app/Clock.h"
#include "app/Input.h"
#include "app/KonuTimeout.h"
#include "app/Runtime.h"
#include "app/Session.h"
#include "host/ChildRegistry.h"
#include "host/Log.h"
#include "ui/strings/StringFactory.h"

namespace Konu {
namespace {

constexpr time_t kDimSeconds = 60;
constexpr unsigned kShortestIdleSeconds = 60;

timeval After(const timeval& start, time_t seconds) {
  timeval t = start;
  t.tv_sec += seconds;
  return t;
}

// Strictly later: seconds first, then microseconds.
bool Later(const timeval& a, const timeval& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_usec > b.tv_usec;
}

// The span from `now` to `deadline`, never negative.
timeval Until(const timeval& deadline, const timeval& now) {
  if (!Later(deadline, now)) return timeval{0, 0};
  timeval span;
  span.tv_sec = deadline.tv_sec - now.tv_sec;
  span.tv_usec = deadline.tv_usec - now.tv_usec;
  if (span.tv_usec < 0) {
    span.tv_usec += 1000000;
    --span.tv_sec;
  }
  return span;
}

}  // namespace

Frame::Frame(Frame* owner, int x, int y, int width, int height, int background, int foreground)
    : Window(x, y, width, height, background, foreground),
      owner_(owner),
      strings_(StringFactory::Get("en_US")) {}

Frame::~Frame() = default;

const char* Frame::GetString(uint32_t id) const { return strings_ ? strings_->GetString(id) : ""; }

int Frame::RunModal() {
  Runtime& runtime = Runtime::Get();
  runtime.topFrame = nullptr;
  if (owner_) {
    owner_->SetActive(false);
    owner_->Update();
  }
  SetActive(true);
  runtime.topFrame = this;
  int result;
  try {
    result = EventLoop();
  } catch (const KonuTimeout&) {
    runtime.topFrame = nullptr;
    throw;
  }
  if (owner_) {
    RepaintBeneath(*owner_);
    owner_->SetActive(true);
    owner_->Update();
  }
  runtime.topFrame = owner_;
  return result;
}

void Frame::RepaintBeneath(const Frame& frame) {
  // A closing frame may be larger than the one it returns to: every frame further down is
  // put back first, bottom one first, so nothing of the closed one stays on the screen. The
  // returning frame's own refresh sends it all in one update.
  std::vector<const Frame*> beneath;
  for (const Frame* below = frame.owner_; below; below = below->owner_) beneath.push_back(below);
  for (auto it = beneath.rbegin(); it != beneath.rend(); ++it) {
    if (WINDOW* window = (*it)->Curses()) {
      touchwin(window);
      wnoutrefresh(window);
    }
  }
}

int Frame::GetKey(bool idleTimeout, int wakeFd) {
  Runtime& runtime = Runtime::Get();
  const Clock& clock = runtime.Clock();
  const unsigned timeout = runtime.session.idleTimeout;
  // Only a logged-in session times out: the login form and the shutdown dialog reached
  // with F12 wait without one.
  const bool timeoutApplies = idleTimeout && runtime.session.active && timeout != 0;
  const timeval start = clock.Now();
  const timeval dimDeadline = After(start, kDimSeconds);
  const timeval idleDeadline = After(start, std::max(timeout, kShortestIdleSeconds));
  bool dimmed = false;

  for (;;) {
    const timeval now = clock.Now();
    if (timeoutApplies && Later(now, idleDeadline)) {
      runtime.topFrame = nullptr;
      throw KonuTimeout{};
    }
    if (!dimmed && Later(now, dimDeadline)) {
      SetActive(false);
      Update();
      dimmed = true;
    }
    Paint();  // everything drawn since the last key goes out as one update
    int result;
    if (dimmed) {
      timeval span = Until(idleDeadline, now);
      result = WaitForInput(timeoutApplies ? &span : nullptr, wakeFd);
    } else {
      timeval span = Until(dimDeadline, now);
      result = WaitForInput(&span, wakeFd);
    }

    if (result >= 0 && result != KEY_RESIZE) {
      if (dimmed) {
        RepaintAll();
        SetActive(true);
        Update();
      }
      return result;  // the key that ends dimming is delivered too
    }
    switch (result) {
      case kWaitWoken:
        if (dimmed) {  // the next GetKey starts undimmed: bring the screen back first
          SetActive(true);
          Update();
        }
        return kWoken;
      case kWaitSigUsr1:
        if (runtime.topFrame) runtime.topFrame->Notification();
        CheckSmartCard();
        break;
      case kWaitSigUsr2:
        if (!runtime.session.active) ExitConsole(0);
        runtime.session.deferredExit = true;
        break;
      case kWaitSigWinch:
      case KEY_RESIZE:
        EndForResize();
      case kWaitTerminate:
        ExitConsole(0);
      default:
        break;  // the limit expired, or nothing usable arrived
    }
  }
}

void Frame::EndForResize() {
  // The console does not lay out again for a new size: it ends, and its supervisor starts
  // it again at the new size.
  winsize size{};
  if (ioctl(0, TIOCGWINSZ, &size) == 0 && size.ws_row != 0 && size.ws_col != 0) {
    resizeterm(size.ws_row, size.ws_col);
    Log(LOG_INFO, "Resized window to %dx%d", size.ws_col, size.ws_row);
    refresh();
  }
  ExitConsole(0);
}

}  // namespace Konu
