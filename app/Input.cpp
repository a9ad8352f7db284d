// The low-level wait: the keyboard and the signal pipe polled together.
#include "app/Input.h"

#include <curses.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <deque>

#include "app/Clock.h"
#include "app/Runtime.h"
#include "host/Log.h"

namespace Konu {

namespace {

// Signals taken off the pipe while the runner waited for a child, oldest first; only the
// user-interface thread touches them.
std::deque<int> keptSignals;

int ReadSignalByte() {
  unsigned char byte = 0;
  ssize_t got;
  do {
    got = read(Runtime::Get().signalReadFd, &byte, 1);
  } while (got < 0 && errno == EINTR);
  if (got == 1 && byte >= 1 && byte <= 4) return -2 - byte;
  return kWaitError;
}

// One key read under a zero curses time-out.
int KeyWithoutWaiting() {
  wtimeout(stdscr, 0);
  int key = wgetch(stdscr);
  wtimeout(stdscr, -1);
  return key;
}

// Readable but no key: true when the keyboard is gone for good (end of file, hang-up,
// error) rather than holding a partial sequence.
bool KeyboardGone() {
  pollfd fd{0, POLLIN, 0};
  if (poll(&fd, 1, 0) <= 0) return false;
  if (fd.revents & (POLLHUP | POLLERR | POLLNVAL)) return true;
  int pending = 0;
  return ioctl(0, FIONREAD, &pending) != 0 || pending == 0;
}

}  // namespace

void LogErrno(const char* what) {
  int err = errno;
  Log(LOG_ERR, "%s with errno(%d): %s", what, err, strerror(err));
}

int SignalFdForWaits() {
  // The user-interface thread is the process's main thread.
  if (syscall(SYS_gettid) != getpid()) return -1;
  return Runtime::Get().signalReadFd;
}

bool TakeSignalDuringWait() {
  int result = ReadSignalByte();
  if (result == kWaitTerminate) return true;
  if (result != kWaitError) keptSignals.push_back(result);
  return false;
}

int WaitForInput(const timeval* limit, int wakeFd) {
  if (!keptSignals.empty()) {
    int kept = keptSignals.front();
    keptSignals.pop_front();
    return kept;
  }
  // curses may already hold bytes it read from the terminal, where poll cannot see them: the
  // rest of a sequence it did not know (Esc then x gives Esc, and keeps the x). Take them now,
  // not when the next byte arrives.
  if (int held = KeyWithoutWaiting(); held != ERR) return held;
  Runtime& rt = Runtime::Get();
  // poll skips the entries whose descriptor is -1.
  pollfd fds[3] = {{0, POLLIN, 0}, {rt.signalReadFd, POLLIN, 0}, {wakeFd, POLLIN, 0}};
  int timeoutMs = limit ? rt.Clock().RealMilliseconds(*limit) : -1;
  int n = poll(fds, 3, timeoutMs);
  if (n == 0) return kWaitTimeout;
  if (n < 0) {
    LogErrno("poll() failed");
    return kWaitError;
  }
  // A key wins over a signal byte that arrived at the same time.
  if (fds[0].revents & (POLLIN | POLLHUP | POLLERR | POLLNVAL)) {
    int key = KeyWithoutWaiting();
    if (key != ERR) return key;
    if (KeyboardGone()) {
      // Nobody can type here any more: end, and let the host start the console again.
      Log(LOG_INFO, "The terminal is gone; ending");
      return kWaitTerminate;
    }
  }
  if (fds[1].revents & (POLLIN | POLLHUP | POLLERR)) return ReadSignalByte();
  if (fds[2].revents & (POLLIN | POLLHUP | POLLERR)) return kWaitWoken;
  return kWaitError;
}

}  // namespace Konu
