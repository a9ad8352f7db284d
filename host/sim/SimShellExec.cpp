// Simulated shell exec: runs a command line with the simulated host's tools, never the
// machine's own. Every absolute path word is taken under the root ("/sbin/services.sh stop"
// runs <root>/sbin/services.sh), the search path holds only the root's tool folders, and the
// command runs in the root.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <sstream>

#include "host/ChildRegistry.h"
#include "host/CommandLine.h"
#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {

namespace {

std::string Rooted(const std::string& root, const std::string& path) {
  return path == "/dev/null" ? path : root + path;  // output thrown away reaches nothing
}

}  // namespace

// Moves the programs and files of a command line under the root: the first word of each
// command, the script a shell runs ("/bin/sh /sbin/services.sh"), and redirection targets.
// Other arguments stay host paths: the simulated tools resolve them under their own root.
std::string RootedCommandLine(const std::string& root, const std::string& commandLine) {
  return Konu::MapCommandLine(commandLine, [&root](const std::string& path) { return Rooted(root, path); });
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
  // The console owns the terminal: the command's output must not reach the screen.
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  int error = Konu::SpawnChild(&pid, shell.c_str(), &actions, nullptr, argv, envp);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw Lib::HostCtlException("Cannot run '" + commandLine + "': " + std::strerror(error));

  int status = 0;
  if (Konu::WaitChild(pid, &status, true) < 0)
    throw Lib::HostCtlException("Cannot wait for '" + commandLine + "': " + std::strerror(errno));
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
  return -1;
}

}  // namespace HostCtl::Sim
