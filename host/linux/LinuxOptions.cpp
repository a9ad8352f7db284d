// The advanced options of a Linux host, kept in /etc/konu/options.
#include "host/linux/LinuxOptions.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace HostCtl::Linux {
namespace {

// Closes and unlocks on every path out.
class LockedFile {
 public:
  explicit LockedFile(const std::string& path) : fd_(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (fd_ >= 0) flock(fd_, LOCK_EX);
  }
  ~LockedFile() {
    if (fd_ >= 0) close(fd_);
  }
  LockedFile(const LockedFile&) = delete;
  LockedFile& operator=(const LockedFile&) = delete;
  bool Ok() const { return fd_ >= 0; }

 private:
  int fd_;
};

bool ParseInteger(const std::string& text, int64_t* value) {
  if (text.empty()) return false;
  errno = 0;
  char* end = nullptr;
  long long v = std::strtoll(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0') return false;
  *value = v;
  return true;
}

}  // namespace

const std::vector<OptionSpec>& OptionSpecs() {
  static const std::vector<OptionSpec> kSpecs = {
      {"/UserVars/KonuTimeOut", true, "600", 0, 86400,
       "Idle time in seconds before the local console logs out"},
      {"/UserVars/OrinShellTimeOut", true, "0", 0, 86400, "Time in seconds the shell stays available"},
      {"/UserVars/OrinShellInteractiveTimeOut", true, "0", 0, 86400,
       "Idle time in seconds before a shell logs out"},
      {"/UserVars/SuppressShellWarning", true, "0", 0, 1, "Do not warn that the shell is enabled"},
      {"/UserVars/HostClientWelcomeMessage", false, "", 0, 0, "Welcome message of the host client"},
  };
  return kSpecs;
}

const OptionSpec* FindOptionSpec(const std::string& path) {
  for (const OptionSpec& option : OptionSpecs())
    if (path == option.path) return &option;
  return nullptr;
}

LinuxOptions::LinuxOptions(std::string root) : root_(root == "/" ? "" : std::move(root)) {}

std::string LinuxOptions::File() const { return root_ + kOptionsFile; }

std::map<std::string, std::string> LinuxOptions::Load() const {
  std::map<std::string, std::string> values;
  std::ifstream in(File());
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    auto eq = line.find('=');
    if (eq != std::string::npos && FindOptionSpec(line.substr(0, eq)))
      values[line.substr(0, eq)] = line.substr(eq + 1);
  }
  return values;
}

std::optional<std::string> LinuxOptions::Get(const std::string& path) const {
  const OptionSpec* option = FindOptionSpec(path);
  if (!option) return std::nullopt;
  auto values = Load();
  auto it = values.find(path);
  return it == values.end() ? std::string(option->defaultValue) : it->second;
}

std::optional<int64_t> LinuxOptions::GetInteger(const std::string& path) const {
  const OptionSpec* option = FindOptionSpec(path);
  auto text = Get(path);
  int64_t value = 0;
  if (!option || !option->integer || !text || !ParseInteger(*text, &value)) return std::nullopt;
  return value;
}

std::string LinuxOptions::Set(const std::string& path, const std::string& text, bool asInteger) {
  const OptionSpec* option = FindOptionSpec(path);
  if (!option) return "Option " + path + " not found";
  if (asInteger != option->integer)
    return "Option " + path + " is of type " + (option->integer ? "integer; use -i" : "string; use -s");
  if (option->integer) {
    int64_t value = 0;
    if (!ParseInteger(text, &value)) return "Invalid integer value '" + text + "' for option " + path;
    if (value < option->min || value > option->max)
      return "Invalid value " + text + " for option " + path + ": must be between " +
             std::to_string(option->min) + " and " + std::to_string(option->max);
  }
  if (text.find('\n') != std::string::npos) return "Invalid value for option " + path + ": no line breaks";
  std::error_code ignored;  // a folder that cannot be made fails at the lock below
  std::filesystem::create_directories(std::filesystem::path(File()).parent_path(), ignored);
  LockedFile lock(File() + ".lock");
  if (!lock.Ok()) return "Cannot lock " + File() + ": " + std::strerror(errno);
  auto values = Load();
  values[path] = text;
  return Save(values);
}

std::string LinuxOptions::Reset(const std::string& path) {
  if (!FindOptionSpec(path)) return "Option " + path + " not found";
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(File()).parent_path(), ignored);
  LockedFile lock(File() + ".lock");
  if (!lock.Ok()) return "Cannot lock " + File() + ": " + std::strerror(errno);
  auto values = Load();
  values.erase(path);
  return Save(values);
}

std::string LinuxOptions::Save(const std::map<std::string, std::string>& values) const {
  std::ostringstream text;
  text << "# KONU's advanced options; only values that differ from the defaults.\n";
  for (const auto& [path, value] : values)
    if (value != FindOptionSpec(path)->defaultValue) text << path << '=' << value << '\n';
  std::string data = text.str();
  std::string temporary = File() + ".new";
  int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return "Cannot write " + temporary + ": " + std::strerror(errno);
  bool written = write(fd, data.data(), data.size()) == static_cast<ssize_t>(data.size()) && fsync(fd) == 0;
  int saved = errno;
  close(fd);
  if (!written || rename(temporary.c_str(), File().c_str()) != 0) {
    if (written) saved = errno;
    unlink(temporary.c_str());
    return "Cannot write " + File() + ": " + std::strerror(saved);
  }
  return "";
}

}  // namespace HostCtl::Linux
