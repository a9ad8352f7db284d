// The signal thread and its pipe.
#include "app/SignalThread.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <syslog.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "app/Input.h"
#include "app/Runtime.h"
#include "app/TerminalRestore.h"
#include "host/ChildRegistry.h"
#include "host/Log.h"

namespace Konu {
namespace {

sigset_t HandledSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (int s : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH}) sigaddset(&set, s);
  return set;
}

constexpr unsigned char kTerminateByte = 4;

struct SignalThreadArgs {
  sigset_t set;
  int writeFd;
};

// A terminating signal the user-interface thread has not acted on: output held by XOFF
// keeps that thread in write() for ever. After the first span this thread drops the held
// output and lets the terminal take output again, so that thread can end the process
// itself; after the second it ends the process from here.
constexpr long kUnblockAfterMilliseconds = 1000;
constexpr long kEndAfterMilliseconds = 1500;

timespec Now() {
  timespec t{};
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t;
}

long MillisecondsBetween(const timespec& from, const timespec& to) {
  return (to.tv_sec - from.tv_sec) * 1000 + (to.tv_nsec - from.tv_nsec) / 1000000;
}

// The next signal of the set; with a deadline (milliseconds after `since`, > 0) only until
// then, giving 0 when it passed.
int NextSignal(const sigset_t& set, long deadline, const timespec& since) {
  for (;;) {
    if (deadline <= 0) {
      int sig = 0;
      if (int err = sigwait(&set, &sig); err != 0) {
        errno = err;
        LogErrno("sigwait() failed");
        continue;
      }
      return sig;
    }
    long left = deadline - MillisecondsBetween(since, Now());
    if (left <= 0) return 0;
    timespec wait{left / 1000, (left % 1000) * 1000000};
    int sig = sigtimedwait(&set, nullptr, &wait);
    if (sig > 0) return sig;
    if (errno == EAGAIN) return 0;
    if (errno != EINTR) LogErrno("sigwait() failed");
  }
}

void* SignalLoop(void* raw) {
  const SignalThreadArgs* args = static_cast<const SignalThreadArgs*>(raw);
  long deadline = 0;  // none until a terminating signal was forwarded
  timespec since{};
  for (;;) {
    int sig = NextSignal(args->set, deadline, since);
    if (sig == 0 && deadline == kUnblockAfterMilliseconds) {
      LetOutputFlow();
      deadline = kEndAfterMilliseconds;
      continue;
    }
    if (sig == 0) {
      EndChildren();
      EmergencyRestoreTerminal();
      _exit(0);
    }
    unsigned char byte = SignalByte(sig);
    if (byte == 0) continue;
    while (write(args->writeFd, &byte, 1) < 0 && errno == EINTR) {
    }
    if (byte == kTerminateByte && deadline == 0) {
      // Whatever the console waits for gives way at once: no child outlives the console,
      // a wait on a child that is not watching the signal pipe returns, and the worker
      // threads are asked to stop.
      KillAllChildren();
      deadline = kUnblockAfterMilliseconds;
      since = Now();
    }
  }
  return nullptr;
}

}  // namespace

unsigned char SignalByte(int signal) {
  switch (signal) {
    case SIGUSR1:
      return 1;
    case SIGUSR2:
      return 2;
    case SIGWINCH:
      return 3;
    case SIGHUP:
    case SIGINT:
    case SIGQUIT:
    case SIGTERM:
      return kTerminateByte;
    default:
      return 0;
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
