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
// signal byte, and a signal byte over the wake descriptor, when they arrive together.
int WaitForInput(const timeval* limit, int wakeFd = -1);

// Logs "WHAT with errno(N): TEXT" at error priority.
void LogErrno(const char* what);

}  // namespace Konu
