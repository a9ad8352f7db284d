// The pid file rules.
#include "app/PidFile.h"

#include <fcntl.h>
#include <signal.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>

#include "app/Input.h"
#include "host/Log.h"

namespace Konu {

bool ClaimPidFile(const std::string& path) {
  long pid = 0;
  if (FILE* f = fopen(path.c_str(), "re")) {
    if (fscanf(f, "%ld", &pid) != 1) pid = 0;
    fclose(f);
  }
  if (pid > 0 && kill(static_cast<pid_t>(pid), 0) == 0) {
    Log(LOG_ERR, "Attempt to run multiple KONU instances, not updating %s", path.c_str());
    return false;
  }
  // Written over and then cut to the pid's length: the same file as truncating first, but
  // without the flush ext4 starts on closing a file truncated to nothing.
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) {
    LogErrno(("Unable to write " + path).c_str());
    return false;
  }
  std::string text = std::to_string(getpid());
  bool ok = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
            ftruncate(fd, static_cast<off_t>(text.size())) == 0;
  close(fd);
  return ok;
}

}  // namespace Konu
