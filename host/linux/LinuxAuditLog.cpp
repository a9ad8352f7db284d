// LinuxAuditLog: one kernel audit record per login, logout or refused login; the journal
// when the kernel does not take it (no audit subsystem, or a container that may not write).
#include "host/linux/LinuxAuditLog.h"

#include <libaudit.h>
#include <syslog.h>

#include <cstdlib>

#include "host/Log.h"
#include "host/SharedLibrary.h"

namespace HostCtl::Linux {
namespace {

// libaudit, loaded at the first record rather than at start-up. Without it every record
// goes to the journal.
struct AuditLibrary {
  Konu::SharedLibrary library{"libaudit.so.1"};
  decltype(&audit_open) open = library.Get<decltype(&audit_open)>("audit_open");
  decltype(&audit_log_user_message) logUserMessage =
      library.Get<decltype(&audit_log_user_message)>("audit_log_user_message");
  decltype(&audit_close) close = library.Get<decltype(&audit_close)>("audit_close");
  decltype(&audit_encode_nv_string) encode =
      library.Get<decltype(&audit_encode_nv_string)>("audit_encode_nv_string");
};

// Loaded once and never unloaded, as libpam (screens/PamLibrary.cpp).
const AuditLibrary& Audit() {
  static const AuditLibrary& audit = *new AuditLibrary;
  return audit;
}

int Open() { return Audit().open ? Audit().open() : -1; }

int LogUserMessage(int fd, int type, const char* message, const char* hostname, const char* address,
                   const char* tty, int result) {
  return Audit().logUserMessage ? Audit().logUserMessage(fd, type, message, hostname, address, tty, result)
                                : -1;
}

void Close(int fd) {
  if (Audit().close) Audit().close(fd);
}

int RecordType(const std::string& record) {
  if (record == "login.connect") return AUDIT_USER_LOGIN;
  if (record == "login.disconnect") return AUDIT_USER_LOGOUT;
  return AUDIT_TRUSTED_APP;
}

// name="value", or name=HEX where the value holds blanks, quotes or control characters
// (a typed user name is untrusted).
std::string Field(const std::string& name, const std::string& value) {
  char* encoded = Audit().encode ? Audit().encode(name.c_str(), value.c_str(), 0) : nullptr;
  if (!encoded) return name + "=?";
  std::string field = encoded;
  free(encoded);
  return field;
}

}  // namespace

const AuditApi& KernelAudit() {
  static const AuditApi api{Open, LogUserMessage, Close};
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
