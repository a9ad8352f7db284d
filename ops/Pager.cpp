// The pager run: LESSSECURE around it, and a wait that still answers the signal pipe.
#include "ops/Pager.h"

#include <poll.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "app/Runtime.h"
#include "app/Session.h"
#include "host/ChildRegistry.h"
#include "host/HostRoot.h"
#include "host/Log.h"
#include "ops/ChildProcess.h"

extern char** environ;

namespace Konu {
namespace {

constexpr const char kPagerPath[] = "/bin/less";
constexpr const char kSecureVariable[] = "LESSSECURE";
constexpr int kLookMilliseconds = 100;

// Signal bytes of the console's pipe.
constexpr char kNotify = 1, kQuit = 2, kResize = 3, kTerminate = 4;

// LESSSECURE=1 for the scope; afterwards the earlier text, "" when there was none.
class SecurePagerEnvironment {
 public:
  SecurePagerEnvironment() {
    const char* earlier = getenv(kSecureVariable);
    saved_ = earlier ? earlier : "";
    setenv(kSecureVariable, "1", 1);
  }
  ~SecurePagerEnvironment() { setenv(kSecureVariable, saved_.c_str(), 1); }
  SecurePagerEnvironment(const SecurePagerEnvironment&) = delete;
  SecurePagerEnvironment& operator=(const SecurePagerEnvironment&) = delete;

 private:
  std::string saved_;
};

// One look at the signal pipe; the pager has the keyboard, so fd 0 is left alone.
void AnswerSignals(ChildProcess& pager) {
  const int fd = Runtime::Get().signalReadFd;
  if (fd < 0) {
    poll(nullptr, 0, kLookMilliseconds);
    return;
  }
  pollfd watch{fd, POLLIN, 0};
  if (poll(&watch, 1, kLookMilliseconds) <= 0) return;
  char event = 0;
  if (read(fd, &event, 1) != 1) return;
  Session& session = Runtime::Get().session;
  if (event == kTerminate || event == kResize || (event == kQuit && !session.active)) {
    pager.KillAndAbandon();
    ExitConsole(0);
  }
  if (event == kQuit) session.deferredExit = true;
  if (event == kNotify) CheckSmartCard();
}

}  // namespace

int ViewInPager(const std::string& hostFile) {
  SecurePagerEnvironment secure;
  const std::string file = HostPath(hostFile);
  const char* argv[] = {"less", "-cfP", kPagerPrompt, file.c_str(), nullptr};
  ChildProcess pager;
  if (int error = pager.Spawn(HostPath(kPagerPath), argv, environ, 0, 1, 2)) {
    Log(LOG_ERR, "Cannot start the pager %s: %s", kPagerPath, std::strerror(error));
    return -1;
  }
  int status = 0;
  for (;;) {
    pid_t ended = pager.TryWait(status);
    if (ended != 0 && ChildrenEnding()) ExitConsole(0);  // killed because the console ends
    if (ended < 0) return -1;
    if (ended > 0) break;
    AnswerSignals(pager);
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace Konu
