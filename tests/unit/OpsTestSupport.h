// Helpers shared by the unit tests: a log sink that keeps lines, and a temporary simulated
// host root with small tool scripts (files and folders: tests/harness/Files.h).
#pragma once

#include <sys/stat.h>
#include <syslog.h>

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/HostRoot.h"
#include "host/Log.h"
#include "tests/QuietLog.h"
#include "tests/harness/Files.h"

namespace Konu::OpsTest {

struct LogLine {
  int priority;
  std::string text;
  bool operator==(const LogLine&) const = default;
};

inline std::ostream& operator<<(std::ostream& os, const LogLine& line) {
  return os << "<" << line.priority << ">" << line.text;
}

// Installed as the process's log sink for the life of the object; lines are kept in order.
class CapturedLog {
 public:
  CapturedLog() {
    auto sink = std::make_unique<Sink>(this);
    SetLogSink(std::move(sink));
  }
  ~CapturedLog() { KonuTest::UseQuietLog(); }
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  std::vector<LogLine> Lines() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return lines_;
  }
  // True when a line, of any priority, is exactly `text`.
  bool Has(const std::string& text) const {
    for (const LogLine& line : Lines())
      if (line.text == text) return true;
    return false;
  }
  // How many lines have exactly this priority and text.
  int Count(int priority, const std::string& text) const {
    int n = 0;
    for (const LogLine& line : Lines()) n += line.priority == priority && line.text == text;
    return n;
  }

 private:
  class Sink : public LogSink {
   public:
    explicit Sink(CapturedLog* owner) : owner_(owner) {}
    void Write(int priority, const std::string& text) override {
      std::lock_guard<std::mutex> lock(owner_->mutex_);
      owner_->lines_.push_back({priority, text});
    }

   private:
    CapturedLog* owner_;
  };

  mutable std::mutex mutex_;
  std::vector<LogLine> lines_;
};

using KonuTest::TempDir;
inline std::string ReadFile(const std::string& path) { return KonuTest::ReadFileText(path); }
inline void WriteFile(const std::string& path, const std::string& text, mode_t mode = 0644) {
  KonuTest::WriteFileText(path, text, mode);
}
using KonuTest::ReadLines;

// A temporary directory made the host root for the life of the object.
class SimulatedRoot {
 public:
  SimulatedRoot() { SetHostRoot(dir_.Path()); }
  ~SimulatedRoot() { SetHostRoot("/"); }
  SimulatedRoot(const SimulatedRoot&) = delete;
  SimulatedRoot& operator=(const SimulatedRoot&) = delete;

  const std::string& Path() const { return dir_.Path(); }
  // The file of host path `hostPath` inside the root.
  std::string operator/(const std::string& hostPath) const { return dir_.Path() + hostPath; }
  // A shell script at host path `hostPath`; `body` follows "#!/bin/sh".
  void AddScript(const std::string& hostPath, const std::string& body) const {
    WriteFile(*this / hostPath, "#!/bin/sh\n" + body, 0755);
  }
  void LinkToMachine(const std::string& hostPath, const std::string& target) const {
    std::filesystem::create_directories(std::filesystem::path(*this / hostPath).parent_path());
    std::filesystem::create_symlink(target, *this / hostPath);
  }

 private:
  TempDir dir_;
};

}  // namespace Konu::OpsTest
