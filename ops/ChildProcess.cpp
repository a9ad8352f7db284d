// Spawning, waiting for and putting down child processes.
#include "ops/ChildProcess.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <utility>

#include "host/ChildRegistry.h"

namespace Konu {
namespace {

// posix_spawn's file actions and attributes, destroyed with the scope.
class SpawnSetup {
 public:
  SpawnSetup() {
    actionsOk_ = posix_spawn_file_actions_init(&actions_) == 0;
    attrOk_ = posix_spawnattr_init(&attr_) == 0;
  }
  ~SpawnSetup() {
    if (actionsOk_) posix_spawn_file_actions_destroy(&actions_);
    if (attrOk_) posix_spawnattr_destroy(&attr_);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;

  // Returns 0 or the error number.
  int Prepare(int stdinFd, int stdoutFd, int stderrFd) {
    if (!actionsOk_ || !attrOk_) return ENOMEM;
    if (int rc = posix_spawn_file_actions_adddup2(&actions_, stdinFd, 0)) return rc;
    if (int rc = posix_spawn_file_actions_adddup2(&actions_, stdoutFd, 1)) return rc;
    if (int rc = posix_spawn_file_actions_adddup2(&actions_, stderrFd, 2)) return rc;
    // Descriptors opened elsewhere without close-on-exec stay with the console.
    if (int rc = posix_spawn_file_actions_addclosefrom_np(&actions_, 3)) return rc;

    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    if (int rc = posix_spawnattr_setsigmask(&attr_, &none)) return rc;
    if (int rc = posix_spawnattr_setsigdefault(&attr_, &all)) return rc;
    return posix_spawnattr_setflags(&attr_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }

  const posix_spawn_file_actions_t* Actions() const { return &actions_; }
  const posix_spawnattr_t* Attributes() const { return &attr_; }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attr_;
  bool actionsOk_ = false;
  bool attrOk_ = false;
};

}  // namespace

ChildProcess::~ChildProcess() { KillAndReap(); }

ChildProcess::ChildProcess(ChildProcess&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  if (this != &other) {
    KillAndReap();
    pid_ = std::exchange(other.pid_, -1);
  }
  return *this;
}

int ChildProcess::Spawn(const std::string& path, const char* const argv[], const char* const envp[],
                        int stdinFd, int stdoutFd, int stderrFd) {
  KillAndReap();
  SpawnSetup setup;
  if (int rc = setup.Prepare(stdinFd, stdoutFd, stderrFd)) return rc;
  pid_t pid = -1;
  if (int rc = SpawnChild(&pid, path.c_str(), setup.Actions(), setup.Attributes(), argv, envp)) return rc;
  pid_ = pid;
  return 0;
}

pid_t ChildProcess::Settle(pid_t result) {
  // Reaped, or no longer ours to wait for (someone else reaped it): either way it is gone.
  if (result == pid_ || (result < 0 && errno == ECHILD)) pid_ = -1;
  return result;
}

pid_t ChildProcess::TryWait(int& status) {
  if (pid_ <= 0) {
    errno = ECHILD;
    return -1;
  }
  return Settle(WaitChild(pid_, &status, false));
}

pid_t ChildProcess::Wait(int& status) {
  if (pid_ <= 0) {
    errno = ECHILD;
    return -1;
  }
  return Settle(WaitChild(pid_, &status, true));
}

void ChildProcess::KillAndAbandon() {
  if (pid_ <= 0) return;
  KillAndForgetChild(pid_);
  pid_ = -1;
}

void ChildProcess::KillAndReap() {
  if (pid_ <= 0) return;
  int savedErrno = errno;
  KillChild(pid_);
  int status = 0;
  WaitChild(pid_, &status, true);
  pid_ = -1;
  errno = savedErrno;
}

}  // namespace Konu
