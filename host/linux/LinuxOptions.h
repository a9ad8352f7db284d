// The advanced options of a Linux host: one KONU-owned file, /etc/konu/options, with a line
// "PATH=VALUE" for each option that differs from its default. Read by the console's backend
// and by the option tools; written atomically (temporary file, fsync, rename) under a lock.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace HostCtl::Linux {

inline constexpr const char kOptionsFile[] = "/etc/konu/options";
// The keyboard layout the machine had before KONU first changed it; the reset restores it.
inline constexpr const char kKeyboardOriginalFile[] = "/etc/konu/keyboard.orig";

struct OptionSpec {
  const char* path;
  bool integer;
  const char* defaultValue;
  int64_t min, max;
  const char* description;
};

// The options a Linux host has, with their defaults.
const std::vector<OptionSpec>& OptionSpecs();
const OptionSpec* FindOptionSpec(const std::string& path);

class LinuxOptions {
 public:
  explicit LinuxOptions(std::string root = "/");

  // The option's value as text (its default when the file does not set it), or nothing
  // for an option this host does not have.
  std::optional<std::string> Get(const std::string& path) const;
  std::optional<int64_t> GetInteger(const std::string& path) const;

  // Sets one option from its text; `asInteger` says which kind the caller gave. Returns ""
  // or the error for the operator; a refused change writes nothing.
  std::string Set(const std::string& path, const std::string& text, bool asInteger);
  // Back to the default (the line is removed).
  std::string Reset(const std::string& path);

  // The file on this machine (under the root).
  std::string File() const;

 private:
  std::map<std::string, std::string> Load() const;
  std::string Save(const std::map<std::string, std::string>& values) const;

  std::string root_;
};

}  // namespace HostCtl::Linux
