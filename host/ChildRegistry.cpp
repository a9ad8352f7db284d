// The record of running children and worker threads: spawned, reaped, killed and waited for
// under one lock.
#include "host/ChildRegistry.h"

#include <dirent.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

namespace Konu {
namespace {

struct Worker {
  uint64_t id;
  std::function<void()> stop;
};

struct Registry {
  std::mutex lock;
  std::vector<pid_t> children;
  std::vector<Worker> workers;
  std::condition_variable workerEnded;
  uint64_t lastWorker = 0;
  std::vector<void (*)()> undos;
  bool ending = false;
  bool ended = false;
};

// The way out waits this long at most for the workers and the killed children together, so
// that the console still ends within a second of a terminating signal.
constexpr std::chrono::milliseconds kEndWait{500};

// Never destroyed: worker threads and the exit path may use it while statics are torn down.
Registry& TheRegistry() {
  static Registry* registry = [] {
    auto* made = new Registry;
    atexit(EndChildren);
    return made;
  }();
  return *registry;
}

// The processes descending from `root` now (children, their children, ...), from the parent
// of every process in /proc: the shell of a command line runs the tools as its children.
std::vector<pid_t> Descendants(pid_t root) {
  std::vector<std::pair<pid_t, pid_t>> parents;  // (process, its parent)
  if (DIR* proc = opendir("/proc")) {
    while (const dirent* entry = readdir(proc)) {
      char* end = nullptr;
      const long pid = std::strtol(entry->d_name, &end, 10);
      if (pid <= 0 || *end != '\0') continue;
      std::ifstream stat(std::string("/proc/") + entry->d_name + "/stat");
      std::string text;
      if (!std::getline(stat, text)) continue;
      const size_t close = text.rfind(')');
      if (close == std::string::npos) continue;
      std::istringstream fields(text.substr(close + 1));
      std::string state;
      long parent = 0;
      if (fields >> state >> parent)
        parents.emplace_back(static_cast<pid_t>(pid), static_cast<pid_t>(parent));
    }
    closedir(proc);
  }
  std::vector<pid_t> found = {root};
  for (size_t i = 0; i < found.size(); ++i)
    for (const auto& [pid, parent] : parents)
      if (parent == found[i]) found.push_back(pid);
  found.erase(found.begin());
  return found;
}

// SIGKILL to the child and everything it started; the tree is taken first, because the
// grandchildren of a killed child are no longer its descendants.
void KillTree(pid_t child) {
  const std::vector<pid_t> descendants = Descendants(child);
  kill(child, SIGKILL);
  for (pid_t pid : descendants) kill(pid, SIGKILL);
}

// Called with the lock held.
void Forget(Registry& registry, pid_t pid) {
  auto& children = registry.children;
  children.erase(std::remove(children.begin(), children.end(), pid), children.end());
}

// Called with the lock held.
bool Recorded(const Registry& registry, pid_t pid) {
  return std::find(registry.children.begin(), registry.children.end(), pid) != registry.children.end();
}

}  // namespace

int SpawnChild(pid_t* pid, const char* path, const posix_spawn_file_actions_t* actions,
               const posix_spawnattr_t* attributes, const char* const argv[], const char* const envp[],
               bool searchPath) {
  Registry& registry = TheRegistry();
  // Spawned under the lock: the process cannot end between the spawn and the record.
  std::lock_guard<std::mutex> held(registry.lock);
  if (registry.ending) return ECANCELED;
  pid_t started = -1;
  int rc = (searchPath ? posix_spawnp : posix_spawn)(
      &started, path, actions, attributes, const_cast<char* const*>(argv), const_cast<char* const*>(envp));
  if (rc != 0) return rc;
  registry.children.push_back(started);
  *pid = started;
  return 0;
}

pid_t WaitChild(pid_t pid, int* status, bool block) {
  Registry& registry = TheRegistry();
  if (block) {
    // Wait for the end without reaping, so the reaping below stays under the lock.
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0) {
      if (errno == EINTR) continue;
      const int error = errno;
      std::lock_guard<std::mutex> held(registry.lock);
      if (error == ECHILD) Forget(registry, pid);
      errno = error;
      return -1;
    }
  }
  std::lock_guard<std::mutex> held(registry.lock);
  const pid_t result = waitpid(pid, status, WNOHANG);
  if (result == pid || (result < 0 && errno == ECHILD)) {
    const int error = errno;
    Forget(registry, pid);
    errno = error;
  }
  return result;
}

void KillChild(pid_t pid) {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> held(registry.lock);
  if (Recorded(registry, pid)) KillTree(pid);
}

void KillAndForgetChild(pid_t pid) {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> held(registry.lock);
  if (Recorded(registry, pid)) {
    KillTree(pid);
    Forget(registry, pid);
  }
}

void KillAllChildren() {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> held(registry.lock);
  // Stopped before their children die, so a worker woken by the kill knows why.
  if (!registry.ending)
    for (const Worker& worker : registry.workers) worker.stop();
  registry.ending = true;
  for (pid_t child : registry.children) KillTree(child);
}

bool ChildrenEnding() {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> held(registry.lock);
  return registry.ending;
}

void AtChildrenEnd(void (*undo)()) {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> held(registry.lock);
  if (std::find(registry.undos.begin(), registry.undos.end(), undo) == registry.undos.end())
    registry.undos.push_back(undo);
}

bool AddWorker(uint64_t* id, std::function<void()> stop) {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> held(registry.lock);
  if (registry.ending) return false;
  *id = ++registry.lastWorker;
  registry.workers.push_back({*id, std::move(stop)});
  return true;
}

void WorkerEnded(uint64_t id) {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> held(registry.lock);
  auto& workers = registry.workers;
  workers.erase(std::remove_if(workers.begin(), workers.end(), [id](const Worker& w) { return w.id == id; }),
                workers.end());
  registry.workerEnded.notify_all();
}

void EndChildren() {
  const int savedErrno = errno;
  KillAllChildren();
  Registry& registry = TheRegistry();
  std::vector<void (*)()> undos;
  {
    std::unique_lock<std::mutex> held(registry.lock);
    const auto deadline = std::chrono::steady_clock::now() + kEndWait;
    // The workers first: a stopped worker reaps its own child and puts back what it set aside.
    // Once only: a worker left behind is not waited for again by exit()'s own call.
    if (!registry.ended)
      registry.workerEnded.wait_until(held, deadline, [&registry] { return registry.workers.empty(); });
    // A killed child goes within microseconds; one stuck in the kernel is left to init.
    const timespec look{0, 10 * 1000 * 1000};
    for (;;) {
      auto& children = registry.children;
      children.erase(std::remove_if(children.begin(), children.end(),
                                    [](pid_t child) {
                                      const pid_t result = waitpid(child, nullptr, WNOHANG);
                                      return result == child || (result < 0 && errno == ECHILD);
                                    }),
                     children.end());
      if (children.empty() || std::chrono::steady_clock::now() >= deadline) break;
      nanosleep(&look, nullptr);
    }
    if (!registry.ended) undos = registry.undos;
    registry.ended = true;
  }
  for (void (*undo)() : undos) undo();
  errno = savedErrno;
}

void ExitConsole(int status) {
  EndChildren();
  std::exit(status);
}

}  // namespace Konu
