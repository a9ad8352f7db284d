// Host advanced options ("/UserVars/KonuTimeOut") and user options ("PXEBootEnabled").
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace HostCtl::Adv {

// An option found by path. The kind is told by the class: the screens require an
// AdvancedIntegerOption and treat every other kind as "not an integer option".
class AdvancedOption {
 public:
  explicit AdvancedOption(std::string path) : path_(std::move(path)) {}
  virtual ~AdvancedOption() = default;
  const std::string& GetPath() const { return path_; }

 private:
  std::string path_;
};

class AdvancedIntegerOption : public AdvancedOption {
 public:
  AdvancedIntegerOption(std::string path, int64_t value, int64_t defaultValue, int64_t min, int64_t max)
      : AdvancedOption(std::move(path)), value_(value), default_(defaultValue), min_(min), max_(max) {}
  int64_t GetValue() const { return value_; }
  int64_t GetDefault() const { return default_; }
  int64_t GetMin() const { return min_; }
  int64_t GetMax() const { return max_; }

 private:
  int64_t value_, default_, min_, max_;
};

class AdvancedStringOption : public AdvancedOption {
 public:
  AdvancedStringOption(std::string path, std::string value, std::string defaultValue)
      : AdvancedOption(std::move(path)), value_(std::move(value)), default_(std::move(defaultValue)) {}
  const std::string& GetValue() const { return value_; }
  const std::string& GetDefault() const { return default_; }

 private:
  std::string value_, default_;
};

class AdvancedOptions {
 public:
  virtual ~AdvancedOptions() = default;
  AdvancedOptions() = default;
  AdvancedOptions(const AdvancedOptions&) = delete;
  AdvancedOptions& operator=(const AdvancedOptions&) = delete;

  // The option at that path, or null when the host has none.
  virtual std::unique_ptr<AdvancedOption> FindOption(const std::string& path) const = 0;
  // Sets an integer option. Throws HostCtl::Lib::HostCtlException when the option is
  // missing, is not an integer option, or the value is outside its range.
  virtual void SetIntegerValue(const std::string& path, int64_t value) = 0;
  virtual void SetStringValue(const std::string& path, const std::string& value) = 0;

  // User options, by bare name ("PXEBootEnabled").
  virtual bool UserOptionExists(const std::string& name) const = 0;
  // Throws when the option does not exist.
  virtual std::string GetUserOption(const std::string& name) const = 0;
};

}  // namespace HostCtl::Adv
