// Simulated event service and audit log: one readable line per event in var/log/zebd.log and
// per record in var/log/audit.log, both under the root.
//
// State read: /faults/operations/EventLib.ZebUserLib_Init and .ZebUserLib_AddZeb make those
// calls answer 1 (the event library reports errors as codes); /faults/operations/
// AuditLog.CblAudit_VLog makes the audit call throw.
#include <sys/time.h>
#include <unistd.h>

#include <ctime>

#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {
namespace {

// "2026-11-21T13:41:13.482Z KONU[4242]: "
std::string LinePrefix() {
  timeval now{};
  gettimeofday(&now, nullptr);
  tm utc{};
  gmtime_r(&now.tv_sec, &utc);
  char stamp[40];
  strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S", &utc);
  char line[96];
  snprintf(line, sizeof line, "%s.%03dZ KONU[%d]: ", stamp, static_cast<int>(now.tv_usec / 1000),
           static_cast<int>(getpid()));
  return line;
}

// A value in double quotes, with quotes, backslashes and line ends escaped.
std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\')
      out += std::string("\\") + c;
    else if (c == '\n')
      out += "\\n";
    else
      out += c;
  }
  return out + "\"";
}

}  // namespace

int SimEventLib::ZebUserLib_Init() {
  try {
    state_.CheckFault("EventLib.ZebUserLib_Init");
  } catch (const Lib::HostCtlException&) {
    return 1;
  }
  open_ = true;
  return 0;
}

int SimEventLib::ZebUserLib_AddZeb(const std::string& message) {
  if (!open_) return 2;  // not initialised
  try {
    state_.CheckFault("EventLib.ZebUserLib_AddZeb");
    std::string line = message;
    for (char& c : line)
      if (c == '\n') c = ' ';
    state_.AppendLine("/var/log/zebd.log", LinePrefix() + line);
  } catch (const Lib::HostCtlException&) {
    return 1;
  }
  return 0;
}

void SimAuditLog::CblAudit_VLog(const std::string& record, const std::string& user, const std::string& origin,
                                int success,
                                const std::vector<std::pair<std::string, std::string>>& attributes) {
  state_.CheckFault("AuditLog.CblAudit_VLog");
  std::string line = LinePrefix() + record + " user=" + Quoted(user) + " origin=" + Quoted(origin) +
                     " success=" + std::to_string(success);
  for (const auto& [key, value] : attributes) line += " " + key + "=" + Quoted(value);
  state_.AppendLine("/var/log/audit.log", line);
}

}  // namespace HostCtl::Sim
