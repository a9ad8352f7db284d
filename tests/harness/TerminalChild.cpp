// Test terminal: opening the pty and starting the program under test on it.
#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#include "tests/harness/Terminal.h"
#include "tests/harness/TerminalImpl.h"

namespace KonuTest {

namespace {

constexpr char kDefaultTerm[] = "TERM=xterm-256color";

// argv or envp for execve, built before fork so that the child only makes system calls.
class CStrings {
 public:
  explicit CStrings(const std::vector<std::string>& strings) : strings_(strings) {
    for (auto& s : strings_) pointers_.push_back(s.data());
    pointers_.push_back(nullptr);
  }
  CStrings(const CStrings&) = delete;
  CStrings& operator=(const CStrings&) = delete;
  char** Get() { return pointers_.data(); }

 private:
  std::vector<std::string> strings_;
  std::vector<char*> pointers_;
};

std::vector<std::string> WithTerm(const std::vector<std::string>& env) {
  std::vector<std::string> all = env;
  bool hasTerm = false;
  for (const auto& entry : env) hasTerm = hasTerm || entry.rfind("TERM=", 0) == 0;
  if (!hasTerm) all.emplace_back(kDefaultTerm);
  return all;
}

void SetFdFlag(int fd, int flag) {
  int flags = fcntl(fd, F_GETFD);
  if (flags < 0 || fcntl(fd, F_SETFD, flags | flag) != 0) {
    throw std::system_error(errno, std::generic_category(), "fcntl");
  }
}

}  // namespace

int Terminal::Impl::OpenPty() {
  if (master >= 0) throw std::logic_error("Terminal: a program was already started");
  winsize size{};
  size.ws_row = static_cast<unsigned short>(rows);
  size.ws_col = static_cast<unsigned short>(cols);
  int slave = -1;
  if (openpty(&master, &slave, nullptr, nullptr, &size) != 0) {
    master = -1;
    throw std::system_error(errno, std::generic_category(), "openpty");
  }
  try {
    SetFdFlag(master, FD_CLOEXEC);
    SetFdFlag(slave, FD_CLOEXEC);
    int statusFlags = fcntl(master, F_GETFL);
    if (statusFlags < 0 || fcntl(master, F_SETFL, statusFlags | O_NONBLOCK) != 0) {
      throw std::system_error(errno, std::generic_category(), "fcntl");
    }
  } catch (...) {
    close(slave);
    throw;
  }
  return slave;
}

namespace {

// In the child: the slave becomes the controlling tty and fds 0-2 of a new session, and
// signals are as a freshly started program expects them.
void BecomeTerminalChild(int master, int slave) {
  close(master);
  if (login_tty(slave) != 0) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (int sig : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGALRM, SIGTERM, SIGCHLD, SIGTSTP, SIGTTIN, SIGTTOU,
                  SIGWINCH, SIGUSR1, SIGUSR2}) {
    signal(sig, SIG_DFL);
  }
}

void WriteErrno(int fd, int error) {
  ssize_t ignored = write(fd, &error, sizeof error);
  (void)ignored;
}

}  // namespace

void Terminal::Spawn(const std::vector<std::string>& argv, const std::vector<std::string>& env) {
  if (argv.empty()) throw std::invalid_argument("Terminal::Spawn: empty argv");
  int slave = impl_->OpenPty();
  CStrings args(argv);
  CStrings envp(WithTerm(env));
  // The child reports a failed exec through this pipe; a successful exec closes it.
  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) {
    close(slave);
    throw std::system_error(errno, std::generic_category(), "pipe2");
  }
  fflush(nullptr);  // or the child would inherit and repeat our buffered output
  pid_t pid = fork();
  if (pid == 0) {
    close(report[0]);
    BecomeTerminalChild(impl_->master, slave);
    // Only fds 0-2 reach the program, whatever the test process has open.
    if (close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) != 0) {
      for (int fd = 3; fd < 1024; ++fd) fcntl(fd, F_SETFD, FD_CLOEXEC);
    }
    execve(args.Get()[0], args.Get(), envp.Get());
    WriteErrno(report[1], errno);
    _exit(127);
  }
  int forkError = errno;
  close(slave);
  close(report[1]);
  if (pid < 0) {
    close(report[0]);
    throw std::system_error(forkError, std::generic_category(), "fork");
  }
  impl_->pid = pid;
  int execError = 0;
  ssize_t n;
  do {
    n = read(report[0], &execError, sizeof execError);
  } while (n < 0 && errno == EINTR);
  close(report[0]);
  if (n == static_cast<ssize_t>(sizeof execError)) {
    impl_->KillAndReap();
    throw std::system_error(execError, std::generic_category(), "exec " + argv[0]);
  }
}

void Terminal::Fork(const std::function<int()>& body, const std::vector<std::string>& env) {
  int slave = impl_->OpenPty();
  CStrings envp(WithTerm(env));
  fflush(nullptr);
  pid_t pid = fork();
  if (pid == 0) {
    BecomeTerminalChild(impl_->master, slave);
    environ = envp.Get();
    int result = 125;
    try {
      result = body();
    } catch (const std::exception& e) {
      fprintf(stderr, "Terminal::Fork: uncaught exception: %s\n", e.what());
    } catch (...) {
      fprintf(stderr, "Terminal::Fork: uncaught exception\n");
    }
    fflush(nullptr);
    _exit(result);  // not exit(): the test process's atexit handlers are not the child's
  }
  int forkError = errno;
  close(slave);
  if (pid < 0) throw std::system_error(forkError, std::generic_category(), "fork");
  impl_->pid = pid;
}

}  // namespace KonuTest
