// HostsFileGuard: backup, name removal and restore of the hosts file.
#include "network/HostsFileGuard.h"

#include <syslog.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>

#include "host/ChildRegistry.h"
#include "host/HostRoot.h"
#include "host/Log.h"

namespace Konu {
namespace {

namespace fs = std::filesystem;

// The hosts file while a guard holds it set aside. The guard puts it back; when the console
// ends first (the guard lives on a worker thread), the way out does.
struct SetAside {
  std::mutex lock;
  bool held = false;
  std::string hosts;
  std::string backup;
};

SetAside& TheSetAside() {
  static SetAside* setAside = new SetAside;  // used on the way out: never destroyed
  return *setAside;
}

// Copies the backup back over the hosts file, once; called with the lock held.
void PutBack(SetAside& setAside) {
  if (!setAside.held) return;
  setAside.held = false;
  std::error_code error;
  fs::copy_file(setAside.backup, setAside.hosts, fs::copy_options::overwrite_existing, error);
  if (error) Log(LOG_ERR, "failed to restore /etc/hosts: %s", error.message().c_str());
}

void PutBackOnEnd() {
  SetAside& setAside = TheSetAside();
  std::lock_guard<std::mutex> held(setAside.lock);
  PutBack(setAside);
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

bool Listed(const std::vector<std::string>& names, const std::string& word) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& n) { return Lower(n) == Lower(word); });
}

}  // namespace

std::string HostsFileGuard::WithoutNames(const std::string& text, const std::vector<std::string>& names) {
  std::istringstream lines(text);
  std::string result;
  std::string line;
  while (std::getline(lines, line)) {
    const size_t hash = line.find('#');
    std::istringstream words(line.substr(0, hash));
    std::string address, word;
    std::vector<std::string> kept;
    bool removed = false;
    words >> address;
    while (words >> word) {
      if (Listed(names, word)) {
        removed = true;
      } else {
        kept.push_back(word);
      }
    }
    if (!removed) {
      result += line + "\n";
    } else if (!kept.empty()) {
      for (const std::string& name : kept) address += "\t" + name;
      result += address + (hash == std::string::npos ? "" : " " + line.substr(hash)) + "\n";
    }
  }
  if (!text.empty() && text.back() != '\n' && !result.empty() && result.back() == '\n') result.pop_back();
  return result;
}

HostsFileGuard::HostsFileGuard(const std::vector<std::string>& names) {
  SetAside& setAside = TheSetAside();
  std::lock_guard<std::mutex> held(setAside.lock);
  if (ChildrenEnding()) return;  // the way out may have passed: set nothing aside now
  AtChildrenEnd(PutBackOnEnd);
  const std::string hosts = HostPath("/etc/hosts");
  const std::string backup = HostPath("/etc/hosts.backup");
  std::error_code error;
  fs::copy_file(hosts, backup, fs::copy_options::overwrite_existing, error);
  if (error) {
    Log(LOG_ERR, "failed to backup /etc/hosts: %s", error.message().c_str());
    return;
  }
  setAside.held = true;
  setAside.hosts = hosts;
  setAside.backup = backup;
  std::ifstream in(hosts, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  const std::string stripped = WithoutNames(text.str(), names);
  if (stripped != text.str()) std::ofstream(hosts, std::ios::binary | std::ios::trunc) << stripped;
}

HostsFileGuard::~HostsFileGuard() { PutBackOnEnd(); }

}  // namespace Konu
