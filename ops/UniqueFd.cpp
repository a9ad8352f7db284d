// Pipe creation for the command runner.
#include "ops/UniqueFd.h"

#include <fcntl.h>

#include <cerrno>

namespace Konu {
namespace {

// Moves a descriptor that landed on 0, 1 or 2 (the console's own standard streams were
// closed) above 2, so placing the child's ends on 0..2 cannot clobber one another.
bool LiftAboveStandardStreams(UniqueFd& fd) {
  if (fd.Get() > 2) return true;
  int lifted = fcntl(fd.Get(), F_DUPFD_CLOEXEC, 3);
  if (lifted < 0) return false;
  fd.Reset(lifted);
  return true;
}

}  // namespace

bool Pipe::Open() {
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) return false;
  UniqueFd r(fds[0]);
  UniqueFd w(fds[1]);
  if (!LiftAboveStandardStreams(r) || !LiftAboveStandardStreams(w)) {
    int saved = errno;
    r.Reset();
    w.Reset();
    errno = saved;
    return false;
  }
  read = std::move(r);
  write = std::move(w);
  return true;
}

}  // namespace Konu
