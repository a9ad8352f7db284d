// The host's audit log: one record per login, logout or refused login.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace HostCtl {

class AuditLog {
 public:
  virtual ~AuditLog() = default;
  AuditLog() = default;
  AuditLog(const AuditLog&) = delete;
  AuditLog& operator=(const AuditLog&) = delete;

  // record "login.connect", the user, the origin (remote address, "" at the console),
  // success 1 or 0, then key/value pairs such as {"reason", "Invalid Login"}.
  virtual void CblAudit_VLog(const std::string& record, const std::string& user, const std::string& origin,
                             int success,
                             const std::vector<std::pair<std::string, std::string>>& attributes) = 0;
};

}  // namespace HostCtl
