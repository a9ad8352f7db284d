// The log facade used everywhere. Priorities and facilities are syslog's (LOG_INFO,
// LOG_AUTH | LOG_ERR, ...). On the real host lines go to syslog(3); on a simulated host
// they are appended to its var/log/syslog.log in syslog's format, priority included.
#pragma once

#include <cstdarg>
#include <memory>
#include <string>

namespace Konu {

class LogSink {
 public:
  virtual ~LogSink() = default;
  // One finished line without its trailing newline; called under the facade's lock.
  virtual void Write(int priority, const std::string& text) = 0;
};

// syslog(3) with the ident given to OpenLog.
class SyslogSink : public LogSink {
 public:
  void Write(int priority, const std::string& text) override;
};

// Appends "<PRI>Mmm dd hh:mm:ss HOST IDENT[PID]: text" lines to a file (opened per line,
// O_APPEND, so other writers' lines are never torn). HOST is `hostname`, or this machine's
// name when it is empty.
class FileLogSink : public LogSink {
 public:
  explicit FileLogSink(std::string path, std::string hostname = "");
  void Write(int priority, const std::string& text) override;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
  std::string hostname_;
};

// openlog(ident, LOG_PID, LOG_USER) and setlogmask(LOG_UPTO(LOG_INFO)) for the process;
// the file sink uses the same ident and mask.
void OpenLog(const char* ident);
const std::string& LogIdent();

// Replaces the sink (the default is SyslogSink). Thread-safe.
void SetLogSink(std::unique_ptr<LogSink> sink);

// printf-style; "%m" is the text of errno as in syslog(3).
void Log(int priority, const char* format, ...) __attribute__((format(printf, 2, 3)));
void VLog(int priority, const char* format, va_list args);

}  // namespace Konu
