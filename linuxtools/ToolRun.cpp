// One run of a Linux host tool.
#include "linuxtools/ToolRun.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace Konu::LinuxTools {

ToolRun::ToolRun(std::string name, std::vector<std::string> args)
    : name_(std::move(name)), args_(std::move(args)) {
  const char* root = getenv("KONU_TOOLS_ROOT");
  root_ = root && *root && std::string(root) != "/" ? root : "";
}

std::string ToolRun::File(const std::string& absolutePath) const { return root_ + absolutePath; }

std::string ToolRun::Config(const std::string& key, const std::string& fallback) const {
  std::ifstream in(File("/etc/konu/konu.conf"));
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    auto eq = line.find('=');
    if (eq != std::string::npos && line.substr(0, eq) == key) return line.substr(eq + 1);
  }
  return fallback;
}

HostCtl::Linux::CommandResult ToolRun::Run(const std::vector<std::string>& argv, int seconds) const {
  return HostCtl::Linux::RunLimited(argv, seconds);
}

bool ToolRun::RunOrReport(const std::vector<std::string>& argv, int seconds) const {
  HostCtl::Linux::CommandResult result = Run(argv, seconds);
  fputs(result.out.c_str(), stdout);
  if (result.Ok()) return true;
  Fail(HostCtl::Linux::DescribeFailure(argv[0], result));
  return false;
}

int ToolRun::Fail(const std::string& message, int code) const {
  fprintf(stderr, "%s: %s\n", name_.c_str(), message.c_str());
  return code;
}

int ToolRun::Usage(const std::string& usage, int code) const {
  fprintf(stderr, "Usage: %s\n", usage.c_str());
  return code;
}

std::string ShellUnit(const ToolRun& run) { return run.Config("shell-unit", "getty@tty2.service"); }
std::string SshUnit(const ToolRun& run) { return run.Config("ssh-unit", "ssh.service"); }

}  // namespace Konu::LinuxTools
