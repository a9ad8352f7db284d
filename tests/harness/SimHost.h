// Test helpers for a simulated host: a fresh host in a temporary directory and a way to run
// its tools and konu-hostsim with captured output.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/harness/BuildPaths.h"
#include "tests/harness/Files.h"

namespace KonuTest {

struct CommandResult {
  int exitCode = -1;  // -1 when it did not exit normally
  int signal = 0;     // the signal that ended it, if one did
  std::string out;
  std::string err;
};

// Runs argv[0] (a path, or a name looked up in PATH of `env`) with only `env` as its
// environment; output goes through files, so a chatty child never blocks.
inline CommandResult RunCommandLine(const std::vector<std::string>& argv,
                                    const std::vector<std::string>& env = {"PATH=/usr/bin:/bin"}) {
  TempDir outDir;
  std::string outPath = outDir.Path() + "/out", errPath = outDir.Path() + "/err";
  std::vector<char*> args, envp;
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  for (const std::string& e : env) envp.push_back(const_cast<char*>(e.c_str()));
  envp.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  pid_t pid = 0;
  int rc = argv[0].find('/') == std::string::npos
               ? posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), envp.data())
               : posix_spawn(&pid, args[0], &actions, nullptr, args.data(), envp.data());
  posix_spawn_file_actions_destroy(&actions);
  CommandResult result;
  if (rc != 0) return result;
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  result.out = ReadFileText(outPath);
  result.err = ReadFileText(errPath);
  return result;
}

// A fresh simulated host made by konu-hostsim create.
class SimHost {
 public:
  explicit SimHost(std::string hostsimBin) : bin_(std::move(hostsimBin)), root_(dir_.Path() + "/host") {
    CommandResult made = RunCommandLine({bin_, "create", root_});
    if (made.exitCode != 0) throw std::runtime_error("konu-hostsim create failed: " + made.err);
  }
  const std::string& Root() const { return root_; }
  std::string File(const std::string& hostPath) const { return root_ + hostPath; }

  // konu-hostsim --root ROOT args...
  CommandResult Control(std::vector<std::string> args) const {
    args.insert(args.begin(), {bin_, "--root", root_});
    return RunCommandLine(args);
  }
  // A user's password, through konu-hostsim (the state keeps only hashes).
  void SetPassword(const std::string& user, const std::string& password) const {
    CommandResult set = Control({"password", "set", user, password});
    if (set.exitCode != 0) throw std::runtime_error("konu-hostsim password set failed: " + set.err);
  }
  bool PasswordIs(const std::string& user, const std::string& password) const {
    return Control({"password", "check", user, password}).exitCode == 0;
  }
  // A tool by its host path, with the host's tool folders as the only PATH.
  CommandResult Tool(const std::string& hostPath, std::vector<std::string> args = {}) const {
    args.insert(args.begin(), File(hostPath));
    return RunCommandLine(args, {"PATH=" + root_ + "/bin:" + root_ + "/sbin", "PYTHONHOME=/"});
  }

 private:
  std::string bin_;
  TempDir dir_;
  std::string root_;
};

// Polls `done` until it holds or the deadline passes.
template <typename Predicate>
bool WaitFor(Predicate done, std::chrono::milliseconds deadline = std::chrono::seconds(20)) {
  auto end = std::chrono::steady_clock::now() + deadline;
  while (!done()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

}  // namespace KonuTest
