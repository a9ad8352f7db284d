// The real machine's hardware, keyboard layouts, version facts, shell, events and audit.
//
// Files read under the root: /sys/class/dmi/id/{sys_vendor, product_name}, /proc/cpuinfo,
// /proc/meminfo, /etc/vconsole.conf, /etc/default/keyboard, /usr/share/keymaps/,
// /usr/share/kbd/keymaps/, /etc/os-release, /proc/sys/kernel/{osrelease, version}.
#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <vector>

#include "host/CommandLine.h"
#include "host/HostCtlException.h"
#include "host/HostRoot.h"
#include "host/Log.h"
#include "host/linux/LinuxCommand.h"
#include "host/linux/LinuxPathMap.h"
#include "host/linux/LinuxServices.h"

namespace HostCtl::Linux {
namespace {

// Keymap files below a folder, by name without ".map", ".map.gz" or ".kmap(.gz)".
void CollectKeymaps(const LinuxFiles& files, const std::string& dir, int depth,
                    std::set<std::string>* names) {
  if (depth > 4) return;
  for (const auto& entry : files.List(dir)) {
    bool isKeymap = false;
    for (std::string suffix : {".map.gz", ".map", ".kmap.gz", ".kmap"}) {
      if (entry.size() > suffix.size() &&
          entry.compare(entry.size() - suffix.size(), suffix.size(), suffix) == 0) {
        names->insert(entry.substr(0, entry.size() - suffix.size()));
        isKeymap = true;
        break;
      }
    }
    if (!isKeymap)
      CollectKeymaps(files, dir + "/" + entry, depth + 1, names);  // a folder lists; a file does not
  }
}

}  // namespace

Hardware LinuxHardwareInfo::GetHardware() const {
  Hardware hw;
  hw.vendor = files_.ReadLine("/sys/class/dmi/id/sys_vendor");
  hw.product = files_.ReadLine("/sys/class/dmi/id/product_name");
  CpuFacts cpu = ParseCpuInfo(files_.Read("/proc/cpuinfo"));
  hw.cpuPackages = cpu.packages;
  hw.cpuCores = cpu.cores;
  hw.cpuThreads = cpu.threads;
  hw.cpuModel = cpu.model;
  hw.memoryBytes = ParseMemTotalBytes(files_.Read("/proc/meminfo"));
  return hw;
}

void LinuxSystemInfo::SetSystemAlert(const std::string& text) {
  Konu::Log(LOG_WARNING, "System alert: %s", text.c_str());
}

bool LinuxSystemInfo::HasAccount(const std::string& name) const {
  if (name.empty()) return false;
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> buffer(16384);
  return getpwnam_r(name.c_str(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr;
}

std::string LinuxSystemInfo::GetKeyboardLayout() const {
  auto vconsole = ParseKeyValues(files_.Read("/etc/vconsole.conf"));
  if (!vconsole["KEYMAP"].empty()) return vconsole["KEYMAP"];
  auto keyboard = ParseKeyValues(files_.Read("/etc/default/keyboard"));
  return keyboard["XKBLAYOUT"];
}

std::vector<std::string> LinuxSystemInfo::GetKeyboardLayouts() const {
  std::set<std::string> names;
  CollectKeymaps(files_, "/usr/share/keymaps", 0, &names);
  CollectKeymaps(files_, "/usr/share/kbd/keymaps", 0, &names);
  return {names.begin(), names.end()};
}

namespace {
constexpr int kKeyboardSeconds = 15;
}

void LinuxSystemInfo::LoadKeyboardMappings(const std::string& layout) {
  CommandResult loaded = RunLimited({"loadkeys", layout}, kKeyboardSeconds);
  if (!loaded.Ok()) throw Lib::HostCtlException(DescribeFailure("loadkeys", loaded));
}

void LinuxSystemInfo::SetKeyboardLayout(const std::string& layout) {
  std::string original = files_.Path(kKeyboardOriginalFile);
  if (!files_.Exists(kKeyboardOriginalFile)) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(original).parent_path(), ignored);
    std::ofstream(original) << GetKeyboardLayout() << '\n';
  }
  CommandResult set = RunLimited({"localectl", "set-keymap", layout}, kKeyboardSeconds);
  if (set.missing) return LoadKeyboardMappings(layout);
  if (!set.Ok()) throw Lib::HostCtlException(DescribeFailure("localectl", set));
}

std::unique_ptr<Adv::AdvancedOption> LinuxAdvancedOptions::FindOption(const std::string& path) const {
  const OptionSpec* option = FindOptionSpec(path);
  auto value = options_.Get(path);
  if (!option || !value) return nullptr;
  if (!option->integer)
    return std::make_unique<Adv::AdvancedStringOption>(path, *value, option->defaultValue);
  auto number = options_.GetInteger(path);
  int64_t fallback = std::strtoll(option->defaultValue, nullptr, 10);
  return std::make_unique<Adv::AdvancedIntegerOption>(path, number.value_or(fallback), fallback, option->min,
                                                      option->max);
}

void LinuxAdvancedOptions::SetIntegerValue(const std::string& path, int64_t value) {
  std::string error = options_.Set(path, std::to_string(value), true);
  if (!error.empty()) throw Lib::HostCtlException(error);
}

void LinuxAdvancedOptions::SetStringValue(const std::string& path, const std::string& value) {
  std::string error = options_.Set(path, value, false);
  if (!error.empty()) throw Lib::HostCtlException(error);
}

std::string LinuxAdvancedOptions::GetUserOption(const std::string& name) const {
  throw Lib::HostCtlException("User option '" + name + "' not found");
}

std::vector<uint8_t> LinuxSysinfoUtil::SysinfoGet(const std::string& node, size_t size) const {
  std::vector<uint8_t> record;
  if (node == SystemVersionRecord::kNode) {
    auto os = ParseKeyValues(files_.Read("/etc/os-release"));
    SystemVersionRecord version;
    version.productName = os["NAME"].empty() ? "Linux" : os["NAME"];
    version.productVersion = os["VERSION_ID"];
    version.kernelVersion = files_.ReadLine("/proc/sys/kernel/osrelease");
    // "#1 SMP PREEMPT_DYNAMIC Debian 6.1.76-1 (2024-02-01)": the build is the first word.
    std::string build = files_.ReadLine("/proc/sys/kernel/version");
    version.buildNumber = build.substr(0, build.find(' '));
    if (!version.buildNumber.empty() && version.buildNumber.front() == '#') version.buildNumber.erase(0, 1);
    record = version.Encode();
  } else if (node == BootOptionRecord::kNode) {
    record.assign(BootOptionRecord::kSize, 0);  // never in audit mode
  } else {
    throw Lib::HostCtlException("Unknown sysinfo node '" + node + "'");
  }
  record.resize(size, 0);
  return record;
}

int LinuxShellExec::NukCtl_Exec(const std::string& commandLine, bool, bool, bool) {
  // The host paths of the line ("/sbin/services.sh") are KONU's tools on this machine.
  std::string command = Konu::HostCommandLine(commandLine);
  std::string toolPath = Konu::HostToolSearchPath();
  std::string path = "PATH=" + (toolPath.empty() ? std::string(kToolFolder) : toolPath);
  const char* envp[] = {"PYTHONHOME=/", path.c_str(), nullptr};
  return Konu::RunQuietShell("/bin/sh", command, envp, commandLine);
}

namespace {

constexpr const char kJournalSocket[] = "/run/systemd/journal/socket";
constexpr const char kEventMarker[] = "@&!*@*@(";

// One entry in the journal's native protocol; false when the journal is not there.
bool SendToJournal(const std::string& socketPath, const std::string& entry) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (socketPath.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size() + 1);
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return false;
  bool sent = sendto(fd, entry.data(), entry.size(), MSG_NOSIGNAL, reinterpret_cast<sockaddr*>(&address),
                     sizeof address) == static_cast<ssize_t>(entry.size());
  close(fd);
  return sent;
}

std::string OneLine(std::string text) {
  for (char& c : text)
    if (c == '\n') c = ' ';
  return text;
}

}  // namespace

int LinuxEventLib::ZebUserLib_AddZeb(const std::string& message) {
  if (!open_) return 2;
  // "@&!*@*@(zeb.user.konu.reboot.host)Rebooting host": the id, then the text.
  std::string id, text = message;
  if (message.rfind(kEventMarker, 0) == 0) {
    size_t close = message.find(')');
    if (close != std::string::npos) {
      id = message.substr(std::strlen(kEventMarker), close - std::strlen(kEventMarker));
      text = message.substr(close + 1);
    }
  }
  const std::string ident = Konu::LogIdent().empty() ? "KONU" : Konu::LogIdent();
  std::string entry = "MESSAGE=" + OneLine(text) + "\nPRIORITY=6\nSYSLOG_IDENTIFIER=" + ident +
                      "\nKONU_EVENT_ID=" + OneLine(id) + "\n";
  if (!SendToJournal(files_.Path(kJournalSocket), entry)) Konu::Log(LOG_INFO, "event: %s", message.c_str());
  return 0;
}

}  // namespace HostCtl::Linux
