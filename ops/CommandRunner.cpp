// The command runner: spawn, feed, then wait (looking every 20 ms) while draining the output
// and watching for a terminating signal.
#include "ops/CommandRunner.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <syslog.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/Input.h"
#include "host/ChildRegistry.h"
#include "host/CommandLine.h"
#include "host/HostRoot.h"
#include "host/Log.h"
#include "ops/ChildProcess.h"
#include "ops/UniqueFd.h"

namespace Konu {
namespace {

constexpr int kPollMilliseconds = 20;

// "PYTHONHOME=/" and nothing else of the console's environment, but a PATH that reaches the
// host's tools and nothing else: a simulated host's folders, or the real host's tool folder.
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

// One of the child's output pipes, read as the child writes so it never blocks on a full
// pipe. Bytes beyond the capacity (and all bytes of a stream nobody asked for) are read
// and dropped.
class OutputStream {
 public:
  OutputStream(UniqueFd fd, char* buffer, int* length)
      : fd_(std::move(fd)),
        buffer_(buffer && length ? buffer : nullptr),
        length_(buffer_ ? length : nullptr),
        capacity_(length_ ? *length_ : 0) {
    fcntl(fd_.Get(), F_SETFL, fcntl(fd_.Get(), F_GETFL) | O_NONBLOCK);
  }
  int Fd() const { return fd_.Valid() ? fd_.Get() : -1; }

  // Reads what is there now: until the pipe is empty (false) or at its end (true, closed).
  bool ReadAvailable() {
    char scratch[4096];
    while (fd_.Valid()) {
      bool keep = buffer_ && !failed_ && got_ < capacity_;
      char* into = keep ? buffer_ + got_ : scratch;
      size_t room = keep ? static_cast<size_t>(capacity_ - got_) : sizeof scratch;
      ssize_t n = read(fd_.Get(), into, room);
      if (n > 0) {
        if (keep) got_ += static_cast<int>(n);
      } else if (n == 0) {
        fd_.Reset();
      } else if (errno == EINTR) {
        continue;
      } else if (errno == EAGAIN) {
        return false;
      } else {
        failed_ = true;
        fd_.Reset();
      }
    }
    return true;
  }

  // Stores the count (or -1 after a read error) in the caller's length.
  void Finish() {
    if (length_) *length_ = failed_ ? -1 : got_;
  }

 private:
  UniqueFd fd_;
  char* buffer_;
  int* length_;
  int capacity_;
  int got_ = 0;
  bool failed_ = false;
};

using Readable = std::array<bool, 4>;

// Which of up to four descriptors (-1 = none) are readable within `ms` milliseconds.
Readable WaitReadable(const std::array<int, 4>& fds, int ms) {
  Readable ready{};
  fd_set set;
  FD_ZERO(&set);
  int highest = -1;
  for (int fd : fds) {
    if (fd < 0 || fd >= FD_SETSIZE) continue;
    FD_SET(fd, &set);
    highest = std::max(highest, fd);
  }
  timeval limit{0, ms * 1000};
  int n = select(highest + 1, &set, nullptr, nullptr, &limit);
  if (n < 0 && errno != EINTR) SleepMicroseconds(ms * 1000L);  // never spin
  if (n <= 0) return ready;
  for (size_t i = 0; i < fds.size(); ++i)
    ready[i] = fds[i] >= 0 && fds[i] < FD_SETSIZE && FD_ISSET(fds[i], &set);
  return ready;
}

int64_t MonotonicMicroseconds() {
  timespec t{};
  clock_gettime(CLOCK_MONOTONIC, &t);
  return static_cast<int64_t>(t.tv_sec) * 1000000 + t.tv_nsec / 1000;
}

// Waits for the child while reading both output pipes and, on the user-interface thread,
// watching the signal pipe: a terminating signal kills the child and ends the console.
// With a time limit, a child still running when it expires is killed and left unreaped.
// A readable `stopFd` (-1 = none) ends the wait at once and answers true; the child is
// still running then.
bool WaitAndRead(ChildProcess& child, int timeLimit, OutputStream& out, OutputStream& err, int& status,
                 int stopFd = -1) {
  const int64_t deadline =
      timeLimit > 0 ? MonotonicMicroseconds() + static_cast<int64_t>(timeLimit) * 1000000 : 0;
  const int signalFd = SignalFdForWaits();
  for (;;) {
    int ended = -1;
    pid_t result = child.TryWait(ended);
    if (result != 0) {
      // Killed because the console ends: the user-interface thread ends it now.
      if (signalFd >= 0 && ChildrenEnding()) ExitConsole(0);
      if (result > 0) status = ended;
      // What the child wrote before it ended is in the pipes now.
      out.ReadAvailable();
      err.ReadAvailable();
      return false;
    }
    if (deadline != 0 && MonotonicMicroseconds() >= deadline) {
      Log(LOG_WARNING, "Killing process because %d seconds timeout expired", timeLimit);
      child.KillAndAbandon();
      return false;
    }
    Readable ready = WaitReadable({out.Fd(), err.Fd(), signalFd, stopFd}, kPollMilliseconds);
    if (ready[0]) out.ReadAvailable();
    if (ready[1]) err.ReadAvailable();
    if (ready[2] && TakeSignalDuringWait()) {
      child.KillAndReap();
      ExitConsole(0);
    }
    if (ready[3]) return true;
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

// RunCommand, with a stop descriptor for RunCommandUntil (-1 = none).
int Run(const char* path, const char* const argv[], char* out, int* outLength, char* err, int* errLength,
        const char* input, int inputLength, int timeLimit, int stopFd) {
  Pipe in;
  Pipe outPipe;
  Pipe errPipe;
  if (!in.Open() || !outPipe.Open() || !errPipe.Open()) return -1;

  ChildEnvironment environment;
  ShellArguments arguments(path, argv);
  ChildProcess child;
  int spawnError = child.Spawn(HostPath(path), arguments.Get(), environment.Get(), in.read.Get(),
                               outPipe.write.Get(), errPipe.write.Get());
  if (spawnError != 0) {
    in = Pipe();
    outPipe = Pipe();
    errPipe = Pipe();
    errno = spawnError;
    return -1;
  }

  in.read.Reset();
  outPipe.write.Reset();
  errPipe.write.Reset();

  if (input) WriteInput(in.write.Get(), input, inputLength);
  in.write.Reset();

  OutputStream outStream(std::move(outPipe.read), out, outLength);
  OutputStream errStream(std::move(errPipe.read), err, errLength);
  int status = -1;
  if (WaitAndRead(child, timeLimit, outStream, errStream, status, stopFd))
    return -1;  // `child` kills and reaps
  outStream.Finish();
  errStream.Finish();

  if ((status & 0x7f) != 0) {
    if (!ChildrenEnding()) Log(LOG_ERR, "Run Command did not terminate normally");
    return -1;
  }
  return (status >> 8) & 0xff;
}

}  // namespace

int RunCommand(const char* path, const char* const argv[], char* out, int* outLength, char* err,
               int* errLength, const char* input, int inputLength, int timeLimit) {
  return Run(path, argv, out, outLength, err, errLength, input, inputLength, timeLimit, -1);
}

int RunCommandUntil(const char* path, const char* const argv[], int stopFd) {
  return Run(path, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0, stopFd);
}

int RunShell(const char* command) {
  const char* argv[] = {"sh", "-c", command, nullptr};
  return RunCommand("/bin/sh", argv);
}

}  // namespace Konu
