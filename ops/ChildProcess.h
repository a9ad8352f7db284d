// One spawned child process: started with posix_spawn and recorded (host/ChildRegistry, so
// that it never outlives the console), waited for by its owner, and killed and reaped if the
// owner lets it go while it may still run.
#pragma once

#include <sys/types.h>

#include <string>

namespace Konu {

class ChildProcess {
 public:
  ChildProcess() = default;
  ~ChildProcess();

  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;

  // Starts `path` with `argv` and exactly the environment `envp` (both null-terminated),
  // with `stdinFd`, `stdoutFd` and `stderrFd` placed on the child's 0, 1 and 2 and every
  // other descriptor closed. The child starts with no blocked signals and default signal
  // dispositions, whatever the console has blocked or ignored. Returns 0 or the error
  // number of the failed spawn (the child then does not exist).
  int Spawn(const std::string& path, const char* const argv[], const char* const envp[], int stdinFd,
            int stdoutFd, int stderrFd);

  pid_t Pid() const { return pid_; }
  // True while a started child has not been reaped or given up.
  bool Owned() const { return pid_ > 0; }

  // One waitpid(pid, &status, WNOHANG). Returns its result: the pid once the child has
  // ended (status filled in, child reaped), 0 while it runs, -1 on error (errno set).
  pid_t TryWait(int& status);

  // One blocking waitpid(pid, &status, 0); results as TryWait.
  pid_t Wait(int& status);

  // Sends SIGKILL and gives the child up without reaping it: it stays a zombie of this
  // process, as the runner's timed wait wants.
  void KillAndAbandon();

  // Sends SIGKILL and reaps the child (the destructor does the same).
  void KillAndReap();

 private:
  pid_t Settle(pid_t result);

  pid_t pid_ = -1;
};

}  // namespace Konu
