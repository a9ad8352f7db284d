// Restoring the terminal on every exit path.
#include "app/TerminalRestore.h"

#include <curses.h>
#include <fcntl.h>
#include <term.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "host/ChildRegistry.h"

namespace Konu {
namespace {

constexpr char kPaletteReset[] = "\033]R";

// Written once by the user-interface thread before any emergency can use it.
struct EmergencyState {
  termios saved{};
  char leave[512] = {};
  size_t length = 0;
};
EmergencyState emergency;
std::atomic<bool> emergencyReady{false};
std::atomic<bool> terminalLent{false};
std::atomic<bool> restored{false};

void Append(const char* capability) {
  char* text = tigetstr(const_cast<char*>(capability));
  if (text == nullptr || text == reinterpret_cast<char*>(-1)) return;
  size_t n = strlen(text);
  if (emergency.length + n >= sizeof emergency.leave) return;
  memcpy(emergency.leave + emergency.length, text, n);
  emergency.length += n;
}

[[noreturn]] void RestoreThenAbort() {
  EndChildren();
  EmergencyRestoreTerminal();
  abort();
}

}  // namespace

void PrepareTerminalRestore(const termios& saved) {
  emergency.saved = saved;
  // CAN first: the dropped output may have stopped inside an escape sequence.
  emergency.leave[0] = '\030';
  emergency.length = 1;
  // cnorm after rmcup: leaving the alternate screen may restore the cursor state saved on
  // entering it (a pager killed on its own alternate screen saved a hidden cursor).
  for (const char* capability : {"sgr0", "rmkx", "rmcup", "cnorm"}) Append(capability);
  size_t n = sizeof kPaletteReset - 1;
  if (emergency.length + n < sizeof emergency.leave) {
    memcpy(emergency.leave + emergency.length, kPaletteReset, n);
    emergency.length += n;
  }
  emergencyReady.store(true, std::memory_order_release);
  std::set_terminate(RestoreThenAbort);
}

void SetTerminalLent(bool lent) { terminalLent = lent; }

void RestoreTerminal() {
  if (terminalLent) {
    EmergencyRestoreTerminal();
    return;
  }
  if (restored.exchange(true)) return;
  if (!isendwin()) endwin();
  fputs(kPaletteReset, stdout);
  fflush(stdout);
}

void LetOutputFlow() {
  // Output stopped by an XOFF from the keyboard resumes when IXON is switched off (TCOON
  // undoes only TCOOFF); switching it back on leaves the output flowing.
  termios now{};
  if (tcgetattr(1, &now) == 0 && (now.c_iflag & IXON)) {
    termios without = now;
    without.c_iflag &= ~IXON;
    tcsetattr(1, TCSANOW, &without);
    tcsetattr(1, TCSANOW, &now);
  }
  tcflow(1, TCOON);
}

void EmergencyRestoreTerminal() {
  if (!emergencyReady.load(std::memory_order_acquire) || restored.exchange(true)) return;
  tcflush(1, TCOFLUSH);
  LetOutputFlow();
  tcsetattr(1, TCSANOW, &emergency.saved);
  // A description of our own, so non-blocking writes leave the shared one as it was. The
  // terminal refuses a non-blocking write while another thread's write holds it: retry
  // for a little while.
  int fd = open("/proc/self/fd/1", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) return;
  size_t done = 0;
  for (int attempt = 0; attempt < 20 && done < emergency.length; ++attempt) {
    ssize_t n = write(fd, emergency.leave + done, emergency.length - done);
    if (n > 0) {
      done += static_cast<size_t>(n);
    } else if (n < 0 && errno != EAGAIN && errno != EINTR) {
      break;
    } else {
      usleep(10000);
    }
  }
  close(fd);
}

}  // namespace Konu
