// LinuxAuditLog: one kernel audit record per login, logout or refused login; the journal
// when the kernel does not take it (no audit subsystem, or a container that may not write).
#include "host/linux/LinuxAuditLog.h"

#include <libaudit.h>
#include <syslog.h>

#include <cstdlib>

#include "host/Log.h"

namespace HostCtl::Linux {
namespace {

int RecordType(const std::string& record) {
  if (record == "login.connect") return AUDIT_USER_LOGIN;
  if (record == "login.disconnect") return AUDIT_USER_LOGOUT;
  return AUDIT_TRUSTED_APP;
}

// name="value", or name=HEX where the value holds blanks, quotes or control characters
// (a typed user name is untrusted).
std::string Field(const std::string& name, const std::string& value) {
  char* encoded = audit_encode_nv_string(name.c_str(), value.c_str(), 0);
  if (!encoded) return name + "=?";
  std::string field = encoded;
  free(encoded);
  return field;
}

}  // namespace

const AuditApi& KernelAudit() {
  static const AuditApi api{audit_open, audit_log_user_message, audit_close};
  return api;
}

void LinuxAuditLog::CblAudit_VLog(const std::string& record, const std::string& user,
                                  const std::string& origin, int success,
                                  const std::vector<std::pair<std::string, std::string>>& attributes) {
  int fd = api_.open();
  if (fd >= 0) {
    std::string message = "op=" + record + " " + Field("acct", user);
    for (const auto& [key, value] : attributes) message += " " + Field(key, value);
    int sent = api_.logUserMessage(fd, RecordType(record), message.c_str(), nullptr,
                                   origin.empty() ? nullptr : origin.c_str(), nullptr, success);
    api_.close(fd);
    if (sent > 0) return;
  }
  std::string line = "audit: " + record + " user=\"" + user + "\" origin=\"" + origin +
                     "\" success=" + std::to_string(success);
  for (const auto& [key, value] : attributes) line += " " + key + "=\"" + value + "\"";
  Konu::Log(LOG_AUTH | LOG_INFO, "%s", line.c_str());
}

}  // namespace HostCtl::Linux
