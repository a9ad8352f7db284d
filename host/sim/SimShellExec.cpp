// Simulated shell exec: runs a command line with the simulated host's tools, never the
// machine's own. Every absolute path word is taken under the root ("/sbin/services.sh stop"
// runs <root>/sbin/services.sh), the search path holds only the root's tool folders, and the
// command runs in the root.
#include <unistd.h>

#include <sstream>

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
  const char* envp[] = {"PYTHONHOME=/", path.c_str(), hostRoot.c_str(), nullptr};
  return Konu::RunQuietShell(shell, command, envp, commandLine, root.c_str());
}

}  // namespace HostCtl::Sim
