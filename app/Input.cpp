// The low-level wait: the keyboard and the signal pipe polled together.
#include "app/Input.h"

#include <curses.h>
#include <poll.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "app/Clock.h"
#include "app/Runtime.h"
#include "host/Log.h"

namespace Konu {

void LogErrno(const char* what) {
  int err = errno;
  Log(LOG_ERR, "%s with errno(%d): %s", what, err, strerror(err));
}

int WaitForInput(const timeval* limit, int wakeFd) {
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
  if (fds[0].revents & (POLLIN | POLLHUP | POLLERR)) {
    wtimeout(stdscr, 0);
    int key = wgetch(stdscr);
    wtimeout(stdscr, -1);
    return key;
  }
  if (fds[1].revents & (POLLIN | POLLHUP | POLLERR)) {
    unsigned char byte = 0;
    ssize_t got;
    do {
      got = read(rt.signalReadFd, &byte, 1);
    } while (got < 0 && errno == EINTR);
    if (got == 1 && byte >= 1 && byte <= 4) return -2 - byte;
    return kWaitError;
  }
  if (fds[2].revents & (POLLIN | POLLHUP | POLLERR)) return kWaitWoken;
  return kWaitError;
}

}  // namespace Konu
