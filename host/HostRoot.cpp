// The host root: one prefix for every absolute host path.
#include "host/HostRoot.h"

namespace Konu {
namespace {
std::string& Root() {
  static std::string root = "/";
  return root;
}
}  // namespace

void SetHostRoot(std::string_view root) {
  std::string r(root);
  while (r.size() > 1 && r.back() == '/') r.pop_back();
  Root() = r.empty() ? "/" : r;
}

const std::string& HostRoot() { return Root(); }

bool IsSimulatedHost() { return Root() != "/"; }

std::string HostPath(std::string_view absolutePath) {
  if (!IsSimulatedHost()) return std::string(absolutePath);
  std::string path = Root();
  if (absolutePath.empty() || absolutePath.front() != '/') path += '/';
  path += absolutePath;
  return path;
}

}  // namespace Konu
