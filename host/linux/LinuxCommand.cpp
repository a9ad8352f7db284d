// The machine's own commands, each with a time limit.
#include "host/linux/LinuxCommand.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/ChildRegistry.h"

extern char** environ;

namespace HostCtl::Linux {
namespace {

// Both ends close on exec; the child gets its end through a dup2 of the spawn.
struct PipePair {
  int fd[2] = {-1, -1};
  bool Open() { return pipe2(fd, O_CLOEXEC) == 0; }
  void Close(int i) {
    if (fd[i] >= 0) close(fd[i]);
    fd[i] = -1;
  }
  ~PipePair() {
    Close(0);
    Close(1);
  }
};

long long NowMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

}  // namespace

CommandResult RunLimited(const std::vector<std::string>& args, int seconds, const std::string& outFile) {
  CommandResult result;
  if (args.empty()) return result;
  PipePair out, err;
  if (!out.Open() || !err.Open()) return result;
  int fileFd = -1;
  if (!outFile.empty()) {
    fileFd = open(outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0640);
    if (fileFd < 0) {
      result.err = outFile + ": " + std::strerror(errno);
      return result;
    }
  }
  std::vector<char*> argv;
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, fileFd >= 0 ? fileFd : out.fd[1], 1);
  posix_spawn_file_actions_adddup2(&actions, err.fd[1], 2);
  // The tool's own blocked signals must not reach the command.
  posix_spawnattr_t attr;
  posix_spawnattr_init(&attr);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attr, &none);
  posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETSIGMASK);
  pid_t pid = 0;
  int error = Konu::SpawnChild(&pid, argv[0], &actions, &attr, argv.data(), environ, /*searchPath=*/true);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attr);
  if (fileFd >= 0) close(fileFd);
  out.Close(1);
  err.Close(1);
  if (error != 0) {
    result.missing = error == ENOENT;
    result.err = args[0] + ": " + std::strerror(error);
    return result;
  }
  long long deadline = NowMs() + seconds * 1000LL;
  pollfd fds[2] = {{out.fd[0], POLLIN, 0}, {err.fd[0], POLLIN, 0}};
  int open = 2;
  while (open > 0) {
    long long left = deadline - NowMs();
    if (left <= 0) {
      result.timedOut = true;
      break;
    }
    int n = poll(fds, 2, static_cast<int>(left));
    if (n < 0 && errno != EINTR) break;
    for (int i = 0; i < 2 && n > 0; ++i) {
      if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
      char buffer[4096];
      ssize_t got = read(fds[i].fd, buffer, sizeof buffer);
      if (got > 0) {
        (i == 0 ? result.out : result.err).append(buffer, static_cast<size_t>(got));
      } else if (got == 0 || errno != EINTR) {
        fds[i].fd = -1;
        --open;
      }
    }
  }
  int status = 0;
  while (!result.timedOut) {
    pid_t done = Konu::WaitChild(pid, &status, false);
    if (done == pid) break;
    if (done < 0 && errno != EINTR) return result;
    if (NowMs() >= deadline) {
      result.timedOut = true;
      break;
    }
    timespec pause{0, 10 * 1000 * 1000};
    nanosleep(&pause, nullptr);
  }
  if (result.timedOut) {
    Konu::KillChild(pid);
    Konu::WaitChild(pid, &status, true);
    return result;
  }
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.exitCode = 128 + WTERMSIG(status);
  return result;
}

std::string DescribeFailure(const std::string& program, const CommandResult& result) {
  if (result.missing) return program + " not found";
  if (result.timedOut) return program + " did not finish in time and was stopped";
  std::string text = result.err.empty() ? result.out : result.err;
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  if (text.empty()) return program + " failed with exit code " + std::to_string(result.exitCode);
  return text;
}

}  // namespace HostCtl::Linux
