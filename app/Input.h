// The low-level wait on the keyboard and the signal pipe, and errno logging.
#pragma once

#include <sys/time.h>

namespace Konu {

// Results of WaitForInput besides a key code (>= 0).
enum WaitResult {
  kWaitError = -1,      // poll error or an unknown signal byte
  kWaitTimeout = -2,    // the limit expired
  kWaitSigUsr1 = -3,    // signal byte 1
  kWaitSigUsr2 = -4,    // signal byte 2
  kWaitSigWinch = -5,   // signal byte 3
  kWaitTerminate = -6,  // signal byte 4 (SIGINT, SIGQUIT, SIGTERM)
  kWaitWoken = -7       // the caller's wake descriptor became readable
};

// Waits on fd 0 and the signal pipe, and on `wakeFd` when it is not -1 (it is not read).
// `limit` is a span of the runtime clock; null waits without limit. A key wins over a
// signal byte, and a signal byte over the wake descriptor, when they arrive together. A
// keyboard that is gone (end of file, hang-up) gives kWaitTerminate.
int WaitForInput(const timeval* limit, int wakeFd = -1);

// For waits below the key reader (the command runner waiting for a child): the signal
// pipe's read end on the user-interface thread, -1 on any other thread (only that thread
// may take signals off the pipe).
int SignalFdForWaits();

// Takes one byte off the signal pipe after poll() found it readable. Returns true for a
// terminating signal (the caller cleans up and exits with status 0); any other signal is
// kept for the next WaitForInput.
bool TakeSignalDuringWait();

// Logs "WHAT with errno(N): TEXT" at error priority.
void LogErrno(const char* what);

}  // namespace Konu
