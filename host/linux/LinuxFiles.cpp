// Reading the machine's files through the backend's root.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "host/HostCtlException.h"
#include "host/linux/LinuxServices.h"

namespace HostCtl::Linux {

void ThrowNotSupported() { throw Lib::HostCtlException("not supported on this host"); }

std::string LinuxFiles::Read(const std::string& absolute) const {
  std::ifstream in(Path(absolute));
  if (!in) return "";
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::string LinuxFiles::ReadLine(const std::string& absolute) const {
  std::string text = Read(absolute);
  auto end = text.find('\n');
  if (end != std::string::npos) text.erase(end);
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

bool LinuxFiles::Exists(const std::string& absolute) const {
  struct stat st {};
  return stat(Path(absolute).c_str(), &st) == 0;
}

std::vector<std::string> LinuxFiles::List(const std::string& absolute) const {
  std::vector<std::string> names;
  DIR* dir = opendir(Path(absolute).c_str());
  if (!dir) return names;
  while (dirent* entry = readdir(dir)) {
    std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(dir);
  std::sort(names.begin(), names.end());
  return names;
}

std::string LinuxFiles::LinkName(const std::string& absolute) const {
  char target[4096];
  ssize_t n = readlink(Path(absolute).c_str(), target, sizeof target - 1);
  if (n <= 0) return "";
  std::string text(target, static_cast<size_t>(n));
  while (!text.empty() && text.back() == '/') text.pop_back();
  auto slash = text.rfind('/');
  return slash == std::string::npos ? text : text.substr(slash + 1);
}

std::vector<InterfaceIpv4> LinuxFiles::Ipv4Addresses() const {
  return AssignIpv4Addresses(ParseFibTrieLocalAddresses(Read("/proc/net/fib_trie")), Ipv4Routes());
}

std::vector<InterfaceIpv6> LinuxFiles::Ipv6Addresses() const {
  return ParseIfInet6(Read("/proc/net/if_inet6"));
}

std::string LinuxFiles::FullHostname() const {
  std::string name = ReadLine("/proc/sys/kernel/hostname");
  if (name.empty()) name = ReadLine("/etc/hostname");
  return name;
}

}  // namespace HostCtl::Linux
