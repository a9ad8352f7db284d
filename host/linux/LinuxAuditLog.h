// The console's audit records on a Linux machine: to the kernel's audit subsystem through
// libaudit where it takes them, else as an authentication-facility log line, which the
// journal keeps. The libaudit calls are a table so tests can stand in for the kernel.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/AuditLog.h"

namespace HostCtl::Linux {

struct AuditApi {
  int (*open)();  // a descriptor, or -1 (no audit subsystem, or not permitted)
  // > 0 sent; 0 nobody listens; < 0 refused.
  int (*logUserMessage)(int fd, int type, const char* message, const char* hostname, const char* address,
                        const char* tty, int result);
  void (*close)(int fd);
};

// libaudit's own calls (the library is loaded at the first of them).
const AuditApi& KernelAudit();

class LinuxAuditLog : public AuditLog {
 public:
  explicit LinuxAuditLog(const AuditApi& api = KernelAudit()) : api_(api) {}
  void CblAudit_VLog(const std::string& record, const std::string& user, const std::string& origin,
                     int success,
                     const std::vector<std::pair<std::string, std::string>>& attributes) override;

 private:
  const AuditApi& api_;
};

}  // namespace HostCtl::Linux
