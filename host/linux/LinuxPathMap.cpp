// The Linux path map: one table from the document's host paths to their homes here.
#include "host/linux/LinuxPathMap.h"

#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "host/linux/LinuxCommand.h"

namespace HostCtl::Linux {
namespace {

enum class Kind {
  Tool,         // KONU's own host tool of the same name in the tool folder
  File,         // a fixed home; a folder maps everything below it too
  Log,          // the machine's log file, else the journal's export
  Certificate,  // the certificate named in KONU's configuration
};

struct Home {
  const char* hostPath;
  Kind kind;
  const char* linuxPath;         // File, Log: the machine's path; Certificate: the default
  const char* journalArguments;  // Log: the journal's filter for the export ("" = all)
};

constexpr Home kHomes[] = {
    {"/bin/qal-cmd", Kind::Tool, nullptr, nullptr},
    {"/etc/init.d/OrinShell", Kind::Tool, nullptr, nullptr},
    {"/etc/init.d/SSH", Kind::Tool, nullptr, nullptr},
    {"/sbin/orincfg-advcfg", Kind::Tool, nullptr, nullptr},
    {"/sbin/orincli", Kind::Tool, nullptr, nullptr},
    {"/sbin/localcli", Kind::Tool, nullptr, nullptr},
    {"/bin/powerOffVms", Kind::Tool, nullptr, nullptr},
    {"/sbin/services.sh", Kind::Tool, nullptr, nullptr},
    {"/sbin/nukbacktrace", Kind::Tool, nullptr, nullptr},
    {"/sbin/firmwareConfig.py", Kind::Tool, nullptr, nullptr},
    {"/sbin/backup.sh", Kind::Tool, nullptr, nullptr},
    {"/bin/nukping", Kind::Tool, nullptr, nullptr},
    {"/bin/poweroff", Kind::Tool, nullptr, nullptr},
    {"/bin/reboot", Kind::Tool, nullptr, nullptr},
    {"/var/run/corbel/show-konu-login", Kind::File, "/run/konu/show-konu-login", nullptr},
    {"/var/run/konu.pid", Kind::File, "/run/konu.pid", nullptr},
    {"/etc/corbel/support", Kind::File, "/etc/konu/support", nullptr},
    {"/etc/corbel/ssl/rui.crt", Kind::Certificate, "/etc/ssl/certs/ssl-cert-snakeoil.pem", nullptr},
    {"/bin/less", Kind::File, "/usr/bin/less", nullptr},
    {"/bin/openssl", Kind::File, "/usr/bin/openssl", nullptr},
    {"/usr/lib/corbel/openssh/bin/ssh-keygen", Kind::File, "/usr/bin/ssh-keygen", nullptr},
    {"/var/log/syslog.log", Kind::Log, "/var/log/syslog", ""},
    {"/var/log/nukernel.log", Kind::Log, "/var/log/kern.log", "-k"},
    {"/var/log/sysboot.log", Kind::Log, "/var/log/boot.log", "-b"},
    {"/var/log/mgmtd.log", Kind::Log, "/var/log/libvirt/libvirtd.log", "-u libvirtd"},
    {"/var/log/zebd.log", Kind::Log, "/var/log/konu/events.log", "-t KONU"},
};

constexpr int kExportSeconds = 5;        // a journalctl that takes longer is stopped
constexpr int kExportFreshSeconds = 10;  // an export this young is shown again as it is
constexpr const char kExportLines[] = "5000";

// "/etc/corbel/support/page1" below "/etc/corbel/support": the rest ("/page1"), else null.
const char* Below(std::string_view path, std::string_view folder) {
  if (path == folder) return path.data() + path.size();
  if (path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 &&
      path[folder.size()] == '/')
    return path.data() + folder.size();
  return nullptr;
}

std::string ConfigValue(const std::string& file, const std::string& key) {
  std::ifstream in(file);
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    auto eq = line.find('=');
    if (eq == std::string::npos || line.substr(0, eq) != key) continue;
    return line.substr(eq + 1);
  }
  return "";
}

bool Exists(const std::string& path) {
  struct stat st {};
  return stat(path.c_str(), &st) == 0;
}

}  // namespace

LinuxPathMap::LinuxPathMap(std::string root, std::string journalctl)
    : root_(root == "/" ? "" : std::move(root)), journalctl_(std::move(journalctl)) {
  certificate_ = ConfigValue(Under(kConfigFile), "certificate");
}

std::string LinuxPathMap::Under(std::string_view path) const { return root_ + std::string(path); }

// KONU's tool folder alone: a tool that is not installed fails ("poweroff: not found")
// instead of reaching the machine's own command of the same name.
std::string LinuxPathMap::ToolSearchPath() const { return Under(kToolFolder); }

std::string LinuxPathMap::Resolve(std::string_view absolutePath) const {
  for (const Home& home : kHomes) {
    const char* rest = Below(absolutePath, home.hostPath);
    if (!rest) continue;
    switch (home.kind) {
      case Kind::Tool: {
        std::string_view name = home.hostPath;
        name.remove_prefix(name.rfind('/') + 1);
        return Under(kToolFolder) + "/" + std::string(name);
      }
      case Kind::File:
        return Under(home.linuxPath) + rest;
      case Kind::Certificate:
        return certificate_.empty() ? Under(home.linuxPath) : Under(certificate_);
      case Kind::Log: {
        std::string file = Under(home.linuxPath);
        if (Exists(file)) return file;
        std::string_view name = home.hostPath;
        name.remove_prefix(name.rfind('/') + 1);
        return ExportedLog(name, home.journalArguments);
      }
    }
  }
  return Under(absolutePath);
}

std::string LinuxPathMap::ExportedLog(std::string_view name, std::string_view journalArguments) const {
  std::string folder = Under(kLogExportFolder);
  std::string path = folder + "/" + std::string(name);
  struct stat st {};
  if (stat(path.c_str(), &st) == 0 && time(nullptr) - st.st_mtime < kExportFreshSeconds) return path;
  std::error_code ignored;  // an export that cannot be written leaves the log unoffered
  std::filesystem::create_directories(folder, ignored);
  std::vector<std::string> args = {journalctl_, "--no-pager", "-q", "-n", kExportLines};
  std::string words(journalArguments);
  for (size_t at = 0; at < words.size();) {
    size_t end = words.find(' ', at);
    if (end == std::string::npos) end = words.size();
    if (end > at) args.emplace_back(words.substr(at, end - at));
    at = end + 1;
  }
  std::string partial = path + ".new";
  if (RunLimited(args, kExportSeconds, partial).Ok() && rename(partial.c_str(), path.c_str()) == 0)
    return path;
  unlink(partial.c_str());
  return path;  // no journal: the log is not offered
}

}  // namespace HostCtl::Linux
