// Signals the console of a simulated host through its pid file, and nothing else.
#include "hostsim/ConsoleSignal.h"

#include <limits.h>
#include <signal.h>
#include <stdlib.h>

#include <fstream>
#include <sstream>
#include <vector>

namespace Konu::Sim {
namespace {

std::vector<std::string> NulSeparated(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<std::string> parts;
  std::string part;
  while (std::getline(in, part, '\0')) parts.push_back(part);
  return parts;
}

std::string Canonical(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) ? std::string(resolved) : std::string();
}

bool NamesRoot(const std::string& text, const std::string& canonicalRoot) {
  if (text.empty()) return false;
  if (Canonical(text) == canonicalRoot) return true;
  auto equals = text.find('=');
  return equals != std::string::npos && Canonical(text.substr(equals + 1)) == canonicalRoot;
}

std::string BaseName(const std::string& path) {
  auto slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

bool IsConsoleOfRoot(int pid, const std::string& root, std::string* why) {
  std::string canonicalRoot = Canonical(root);
  if (canonicalRoot.empty() || canonicalRoot == "/") {
    *why = "the root " + root + " is not a simulated host directory";
    return false;
  }
  std::string proc = "/proc/" + std::to_string(pid);
  std::vector<std::string> argv = NulSeparated(proc + "/cmdline");
  if (argv.empty()) {
    *why = "process " + std::to_string(pid) + " does not exist";
    return false;
  }
  if (BaseName(argv[0]) != "konu") {
    *why = "process " + std::to_string(pid) + " is not konu (" + argv[0] + ")";
    return false;
  }
  for (size_t i = 1; i < argv.size(); ++i)
    if (NamesRoot(argv[i], canonicalRoot)) return true;
  for (const std::string& variable : NulSeparated(proc + "/environ")) {
    auto equals = variable.find('=');
    if (equals != std::string::npos && Canonical(variable.substr(equals + 1)) == canonicalRoot) return true;
  }
  *why = "process " + std::to_string(pid) + " is a konu for another host";
  return false;
}

bool SignalConsole(const std::string& root, int signal, std::string* why) {
  std::string pidFile = root + "/var/run/konu.pid";
  std::ifstream in(pidFile);
  long pid = 0;
  if (!(in >> pid) || pid <= 0 || pid > INT_MAX) {
    *why = "no console pid in " + pidFile;
    return false;
  }
  if (!IsConsoleOfRoot(static_cast<int>(pid), root, why)) return false;
  if (kill(static_cast<pid_t>(pid), signal) != 0) {
    *why = "cannot signal process " + std::to_string(pid);
    return false;
  }
  return true;
}

}  // namespace Konu::Sim
