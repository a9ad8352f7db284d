// The command runner: spawn, feed, wait (with the 20 ms poll of the timed wait), drain.
#include "ops/CommandRunner.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <syslog.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/CommandLine.h"
#include "host/HostRoot.h"
#include "host/Log.h"
#include "ops/ChildProcess.h"
#include "ops/UniqueFd.h"

namespace Konu {
namespace {

constexpr long kPollMicroseconds = 20000;

// "PYTHONHOME=/" and nothing else of the console's environment, but a PATH that reaches the
// host's tools: a simulated host's alone, or the real host's before the machine's own.
class ChildEnvironment {
 public:
  ChildEnvironment() {
    entries_.push_back("PYTHONHOME=/");
    std::string path = HostToolSearchPath();
    if (!path.empty()) entries_.push_back("PATH=" + path);
    for (const std::string& entry : entries_) pointers_.push_back(entry.c_str());
    pointers_.push_back(nullptr);
  }
  const char* const* Get() const { return pointers_.data(); }

 private:
  std::vector<std::string> entries_;
  std::vector<const char*> pointers_;
};

void SleepMicroseconds(long usec) {
  timespec left{usec / 1000000, (usec % 1000000) * 1000};
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

// Writes SIGPIPE-safely: a child that exits without reading its input must not take the
// console down with it. SIGPIPE is blocked around the writes and a SIGPIPE they raised
// is taken back off the thread before the old mask returns.
class SigpipeGuard {
 public:
  SigpipeGuard() {
    sigemptyset(&pipeOnly_);
    sigaddset(&pipeOnly_, SIGPIPE);
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipeOnly_, &oldMask_);
  }
  ~SigpipeGuard() {
    if (raised_ && !wasPending_) {
      timespec zero{0, 0};
      int savedErrno = errno;
      while (sigtimedwait(&pipeOnly_, nullptr, &zero) < 0 && errno == EINTR) {
      }
      errno = savedErrno;
    }
    pthread_sigmask(SIG_SETMASK, &oldMask_, nullptr);
  }
  SigpipeGuard(const SigpipeGuard&) = delete;
  SigpipeGuard& operator=(const SigpipeGuard&) = delete;
  void NoteRaised() { raised_ = true; }

 private:
  sigset_t pipeOnly_;
  sigset_t oldMask_;
  bool wasPending_ = false;
  bool raised_ = false;
};

// All of `input`, continuing after partial writes and retrying on EAGAIN and EINTR;
// any other error or a zero-byte write ends it silently.
void WriteInput(int fd, const char* input, int length) {
  SigpipeGuard guard;
  int done = 0;
  while (done < length) {
    ssize_t n = write(fd, input + done, static_cast<size_t>(length - done));
    if (n > 0) {
      done += static_cast<int>(n);
    } else if (n < 0 && (errno == EAGAIN || errno == EINTR)) {
      continue;
    } else {
      if (n < 0 && errno == EPIPE) guard.NoteRaised();
      return;
    }
  }
}

// Reads until end of file or until the capacity in `length` is filled; stores the count,
// or -1 after a read error.
void Drain(int fd, char* buffer, int* length) {
  int capacity = *length;
  int got = 0;
  while (got < capacity) {
    ssize_t n = read(fd, buffer + got, static_cast<size_t>(capacity - got));
    if (n > 0) {
      got += static_cast<int>(n);
    } else if (n == 0) {
      break;
    } else if (errno == EAGAIN || errno == EINTR) {
      continue;
    } else {
      *length = -1;
      return;
    }
  }
  *length = got;
}

// The timed wait: one non-blocking look every 20 ms until the child ends or the budget
// (kept in 64 bits, so long limits do not wrap) runs out; then kill it and leave it.
void WaitWithLimit(ChildProcess& child, int timeLimit, int& status) {
  int64_t budget = static_cast<int64_t>(timeLimit) * 1000000;
  for (;;) {
    int ended = -1;
    pid_t result = child.TryWait(ended);
    if (result != 0) {
      if (result > 0) status = ended;
      return;
    }
    SleepMicroseconds(kPollMicroseconds);
    budget -= kPollMicroseconds;
    if (budget <= 0) {
      Log(LOG_WARNING, "Killing process because %d seconds timeout expired", timeLimit);
      child.KillAndAbandon();
      return;
    }
  }
}

// A shell's command line ("sh -c LINE") and script ("sh /etc/init.d/SSH status") name host
// paths; they are placed on this machine as the program's own path is.
class ShellArguments {
 public:
  ShellArguments(const char* path, const char* const argv[]) {
    std::string_view name(path);
    name.remove_prefix(name.rfind('/') + 1);
    bool shell = name == "sh" || name == "bash";
    bool command = false, script = false;
    for (size_t i = 0; argv[i]; ++i) {
      std::string arg = argv[i];
      if (shell && i > 0 && !script) {
        if (command) {
          arg = HostCommandLine(arg);
          script = true;
        } else if (arg == "-c") {
          command = true;
        } else if (!arg.empty() && arg.front() == '/') {
          arg = HostPath(arg);
          script = true;
        }
      }
      args_.push_back(std::move(arg));
    }
    for (const std::string& arg : args_) pointers_.push_back(arg.c_str());
    pointers_.push_back(nullptr);
  }
  const char* const* Get() const { return pointers_.data(); }

 private:
  std::vector<std::string> args_;
  std::vector<const char*> pointers_;
};

// Starts the child on three fresh pipes and closes the child's ends in the parent. False
// (errno set, every pipe closed) when no child could be started.
bool Start(ChildProcess& child, const char* path, const char* const argv[], Pipe& in, Pipe& outPipe,
           Pipe& errPipe) {
  if (!in.Open() || !outPipe.Open() || !errPipe.Open()) return false;
  ChildEnvironment environment;
  ShellArguments arguments(path, argv);
  int spawnError = child.Spawn(HostPath(path), arguments.Get(), environment.Get(), in.read.Get(),
                               outPipe.write.Get(), errPipe.write.Get());
  if (spawnError != 0) {
    in = Pipe();
    outPipe = Pipe();
    errPipe = Pipe();
    errno = spawnError;
    return false;
  }
  in.read.Reset();
  outPipe.write.Reset();
  errPipe.write.Reset();
  return true;
}

// The exit code of a wait status, or -1 (logged) when the child did not end normally.
int ExitCode(int status) {
  if ((status & 0x7f) != 0) {
    Log(LOG_ERR, "Run Command did not terminate normally");
    return -1;
  }
  return (status >> 8) & 0xff;
}

// Reads what is there and throws it away; at end of file (or an error) stops watching `fd`.
void Discard(pollfd& entry) {
  if (entry.fd < 0 || (entry.revents & (POLLIN | POLLHUP | POLLERR)) == 0) return;
  char scratch[512];
  ssize_t n = read(entry.fd, scratch, sizeof scratch);
  if (n == 0 || (n < 0 && errno != EINTR && errno != EAGAIN)) entry.fd = -1;
}

}  // namespace

int RunCommand(const char* path, const char* const argv[], char* out, int* outLength, char* err,
               int* errLength, const char* input, int inputLength, int timeLimit) {
  Pipe in;
  Pipe outPipe;
  Pipe errPipe;
  ChildProcess child;
  if (!Start(child, path, argv, in, outPipe, errPipe)) return -1;

  if (input) WriteInput(in.write.Get(), input, inputLength);
  in.write.Reset();

  int status = -1;
  if (timeLimit > 0) {
    WaitWithLimit(child, timeLimit, status);
  } else {
    child.Wait(status);
  }

  if (out && outLength) Drain(outPipe.read.Get(), out, outLength);
  if (err && errLength) Drain(errPipe.read.Get(), err, errLength);

  return ExitCode(status);
}

int RunCommandUntil(const char* path, const char* const argv[], int stopFd) {
  Pipe in;
  Pipe outPipe;
  Pipe errPipe;
  ChildProcess child;
  if (!Start(child, path, argv, in, outPipe, errPipe)) return -1;
  in.write.Reset();

  pollfd watched[3] = {{stopFd, POLLIN, 0}, {outPipe.read.Get(), POLLIN, 0}, {errPipe.read.Get(), POLLIN, 0}};
  for (;;) {
    int status = -1;
    pid_t result = child.TryWait(status);
    if (result < 0) return -1;
    if (result > 0) return ExitCode(status);
    // The output is read while waiting, so a talkative child never stalls on a full pipe.
    if (poll(watched, 3, kPollMicroseconds / 1000) > 0) {
      if (watched[0].revents != 0) return -1;  // the child goes with `child`: killed and reaped
      Discard(watched[1]);
      Discard(watched[2]);
    }
  }
}

int RunShell(const char* command) {
  const char* argv[] = {"sh", "-c", command, nullptr};
  return RunCommand("/bin/sh", argv);
}

}  // namespace Konu
