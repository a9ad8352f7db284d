// The log facade: a locked sink behind printf-style calls.
#include "host/Log.h"

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <mutex>

namespace Konu {
namespace {
struct LogState {
  std::mutex mutex;
  std::unique_ptr<LogSink> sink = std::make_unique<SyslogSink>();
  std::string ident = "KONU";
  int mask = LOG_UPTO(LOG_INFO);
};
LogState& State() {
  static LogState state;
  return state;
}
}  // namespace

void SyslogSink::Write(int priority, const std::string& text) { syslog(priority, "%s", text.c_str()); }

FileLogSink::FileLogSink(std::string path, std::string hostname)
    : path_(std::move(path)), hostname_(std::move(hostname)) {
  if (hostname_.empty()) {
    char host[256] = "localhost";
    gethostname(host, sizeof host - 1);
    hostname_ = host;
  }
}

void FileLogSink::Write(int priority, const std::string& text) {
  if ((priority & LOG_FACMASK) == 0) priority |= LOG_USER;
  char stamp[32];
  time_t now = time(nullptr);
  struct tm tmNow;
  localtime_r(&now, &tmNow);
  strftime(stamp, sizeof stamp, "%b %e %H:%M:%S", &tmNow);
  std::string line = "<" + std::to_string(priority) + ">" + stamp + " " + hostname_ + " " + LogIdent() + "[" +
                     std::to_string(getpid()) + "]: " + text + "\n";
  int fd = open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) return;
  ssize_t ignored = write(fd, line.data(), line.size());
  (void)ignored;
  close(fd);
}

void OpenLog(const char* ident) {
  LogState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.ident = ident;
  openlog(s.ident.c_str(), LOG_PID, LOG_USER);
  setlogmask(s.mask);
}

const std::string& LogIdent() { return State().ident; }

void SetLogSink(std::unique_ptr<LogSink> sink) {
  LogState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.sink = std::move(sink);
}

void VLog(int priority, const char* format, va_list args) {
  LogState& s = State();
  if ((LOG_MASK(LOG_PRI(priority)) & s.mask) == 0) return;
  char buf[2048];
  vsnprintf(buf, sizeof buf, format, args);  // glibc expands "%m" from errno
  std::lock_guard<std::mutex> lock(s.mutex);
  if (s.sink) s.sink->Write(priority, buf);
}

void Log(int priority, const char* format, ...) {
  int savedErrno = errno;
  va_list args;
  va_start(args, format);
  errno = savedErrno;
  VLog(priority, format, args);
  va_end(args);
  errno = savedErrno;
}

}  // namespace Konu
