// Simulated shell exec: runs a command line with the simulated host's tools, never the
// machine's own. Every absolute path word is taken under the root ("/sbin/services.sh stop"
// runs <root>/sbin/services.sh), the search path holds only the root's tool folders, and the
// command runs in the root.
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <sstream>

#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {

// Rewrites every blank-separated word that begins with '/' to lie under the root, except
// "/dev/null", which stays the machine's (redirecting output there reaches nothing).
std::string RootedCommandLine(const std::string& root, const std::string& commandLine) {
  std::string out;
  size_t i = 0;
  while (i < commandLine.size()) {
    if (commandLine[i] == ' ' || commandLine[i] == '\t') {
      out += commandLine[i++];
      continue;
    }
    size_t end = commandLine.find_first_of(" \t", i);
    std::string word = commandLine.substr(i, end == std::string::npos ? std::string::npos : end - i);
    // A redirection glued to its path (">/dev/console") is rooted the same way.
    size_t slash = word.find('/');
    bool rootable = slash != std::string::npos && word.find_first_not_of("<>&012") == slash;
    if (rootable && word.compare(slash, std::string::npos, "/dev/null") != 0)
      word = word.substr(0, slash) + root + word.substr(slash);
    out += word;
    i = end == std::string::npos ? commandLine.size() : end;
  }
  return out;
}

int SimShellExec::NukCtl_Exec(const std::string& commandLine, bool, bool, bool) {
  state_.CheckFault("ShellExec.NukCtl_Exec");
  const std::string& root = state_.Root();
  std::string command = RootedCommandLine(root, commandLine);
  std::string shell = root + "/bin/sh";
  if (access(shell.c_str(), X_OK) != 0) shell = "/bin/sh";  // the root's sh is the machine's anyway
  std::string path = "PATH=" + root + "/bin:" + root + "/sbin:" + root + "/usr/bin:" + root + "/usr/sbin";
  std::string hostRoot = "KONU_HOST_ROOT=" + root;
  const char* argv[] = {"sh", "-c", command.c_str(), nullptr};
  const char* envp[] = {"PYTHONHOME=/", path.c_str(), hostRoot.c_str(), nullptr};

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, root.c_str());
  pid_t pid = 0;
  int error = posix_spawn(&pid, shell.c_str(), &actions, nullptr, const_cast<char* const*>(argv),
                          const_cast<char* const*>(envp));
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw Lib::HostCtlException("Cannot run '" + commandLine + "': " + std::strerror(error));

  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR)
      throw Lib::HostCtlException("Cannot wait for '" + commandLine + "': " + std::strerror(errno));
  }
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
  return -1;
}

}  // namespace HostCtl::Sim
