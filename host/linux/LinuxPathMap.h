// Where KONU keeps the document's host paths on a Linux machine: one table from each host
// path to its home (tools under /usr/libexec/konu, the marker under /run/konu, the logs the
// machine's own, exported from the journal where the machine keeps no file).
#pragma once

#include <string>
#include <string_view>

#include "host/HostRoot.h"

namespace HostCtl::Linux {

// The folder of KONU's own Linux host tools; nothing is ever installed into /bin or /sbin.
// It is the whole PATH of the console's children; the tools find the machine's commands
// (systemctl, virsh, ...) on their own PATH.
inline constexpr const char kToolFolder[] = "/usr/libexec/konu";
// KONU's configuration ("certificate=PATH", "agents=UNIT ...") and the options file.
inline constexpr const char kConfigFile[] = "/etc/konu/konu.conf";
// Where a log the machine keeps only in its journal is exported to when it is opened.
inline constexpr const char kLogExportFolder[] = "/run/konu/logs";

class LinuxPathMap : public Konu::HostPathMap {
 public:
  // `root` is "/" on the machine; tests give a temporary tree. `journalctl` is the program
  // that exports a log (found on PATH).
  explicit LinuxPathMap(std::string root = "/", std::string journalctl = "journalctl");

  std::string Resolve(std::string_view absolutePath) const override;
  std::string ToolSearchPath() const override;

 private:
  std::string Under(std::string_view path) const;
  // The exported copy of a journal-only log, refreshed when older than a few seconds.
  std::string ExportedLog(std::string_view name, std::string_view journalArguments) const;

  std::string root_;
  std::string journalctl_;
  std::string certificate_;
};

}  // namespace HostCtl::Linux
