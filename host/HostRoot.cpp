// The host root: one prefix for every absolute host path, or the real host's path map.
#include "host/HostRoot.h"

namespace Konu {
namespace {
std::string& Root() {
  static std::string root = "/";
  return root;
}
const HostPathMap*& Map() {
  static const HostPathMap* map = nullptr;
  return map;
}

// The tool folders a simulated root offers its children in place of the machine's own.
constexpr const char* kSimulatedToolFolders[] = {"/bin", "/sbin", "/usr/bin", "/usr/sbin"};
}  // namespace

void SetHostRoot(std::string_view root) {
  std::string r(root);
  while (r.size() > 1 && r.back() == '/') r.pop_back();
  Root() = r.empty() ? "/" : r;
}

const std::string& HostRoot() { return Root(); }

bool IsSimulatedHost() { return Root() != "/"; }

void SetHostPathMap(const HostPathMap* map) { Map() = map; }

std::string HostPath(std::string_view absolutePath) {
  if (!IsSimulatedHost()) return Map() ? Map()->Resolve(absolutePath) : std::string(absolutePath);
  std::string path = Root();
  if (absolutePath.empty() || absolutePath.front() != '/') path += '/';
  path += absolutePath;
  return path;
}

std::string HostToolSearchPath() {
  if (!IsSimulatedHost()) return Map() ? Map()->ToolSearchPath() : "";
  std::string path;
  for (const char* folder : kSimulatedToolFolders) {
    if (!path.empty()) path += ':';
    path += HostPath(folder);
  }
  return path;
}

}  // namespace Konu
