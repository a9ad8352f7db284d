// The signal thread and its pipe.
#include "app/SignalThread.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "app/Input.h"
#include "app/Runtime.h"
#include "host/Log.h"

namespace Konu {
namespace {

sigset_t HandledSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (int s : {SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH}) sigaddset(&set, s);
  return set;
}

struct SignalThreadArgs {
  sigset_t set;
  int writeFd;
};

void* SignalLoop(void* raw) {
  const SignalThreadArgs* args = static_cast<const SignalThreadArgs*>(raw);
  for (;;) {
    int sig = 0;
    if (int err = sigwait(&args->set, &sig); err != 0) {
      errno = err;
      LogErrno("sigwait() failed");
      continue;
    }
    unsigned char byte = SignalByte(sig);
    if (byte == 0) continue;
    while (write(args->writeFd, &byte, 1) < 0 && errno == EINTR) {
    }
  }
  return nullptr;
}

}  // namespace

unsigned char SignalByte(int signal) {
  switch (signal) {
    case SIGUSR1: return 1;
    case SIGUSR2: return 2;
    case SIGWINCH: return 3;
    case SIGINT:
    case SIGQUIT:
    case SIGTERM: return 4;
    default: return 0;
  }
}

void StartSignalThread() {
  // Lives as long as the process; the thread reads it.
  static SignalThreadArgs args;
  args.set = HandledSignals();
  if (int err = pthread_sigmask(SIG_BLOCK, &args.set, nullptr); err != 0) {
    Log(LOG_ERR, "pthread_sigmask() failed");
  }
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) {
    LogErrno("pipe() failed");
    exit(1);
  }
  Runtime::Get().signalReadFd = fds[0];
  args.writeFd = fds[1];
  pthread_t thread;
  if (int err = pthread_create(&thread, nullptr, SignalLoop, &args); err != 0) {
    errno = err;
    Log(LOG_ERR, "pthread_create() failed");
    exit(1);
  }
  pthread_detach(thread);
}

}  // namespace Konu
