// Worker threads at the end of the console: the way out asks every worker to stop and waits
// for it (half a second at most) before exit() tears down what the worker could still use.
// Each case ends a process of its own (a death test), as the console ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "host/ChildRegistry.h"
#include "ops/WorkerThread.h"

namespace Konu {
namespace {

// One write to stderr, which the death test reads back.
void Say(const char* text) {
  ssize_t ignored = write(2, text, strlen(text));
  (void)ignored;
}

std::atomic<bool> busy{false};  // the worker has reached the wait the end must break

// A child of its own that only a kill ends, waited for as host calls wait for their tools.
void WaitForKilledChild() {
  const char* argv[] = {"sleep", "60", nullptr};
  const char* envp[] = {"PATH=/usr/bin:/bin", nullptr};
  pid_t pid = -1;
  const int error = SpawnChild(&pid, "sleep", nullptr, nullptr, argv, envp, true);
  busy = true;
  if (error != 0) return Say("not started\n");
  int status = 0;
  if (WaitChild(pid, &status, true) != pid) return Say("reaped by another\n");
  Say(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL ? "killed, reaped by the worker\n" : "ended\n");
}

TEST(WorkerThreadEnd, TheWayOutStopsEachWorkerAndWaitsForItsLastStep) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const struct {
    const char* what;
    WorkerThread::Work work;
    const char* said;
  } kCases[] = {
      {"a lookup watching its stop flag",
       [](const WorkerStop& stop) {
         busy = true;
         while (!stop.Requested()) usleep(1000);
         Say("flag seen\n");
       },
       "flag seen"},
      {"a wait on the stop descriptor that winds down for a moment",
       [](const WorkerStop& stop) {
         busy = true;
         pollfd watch{stop.Fd(), POLLIN, 0};
         while (poll(&watch, 1, -1) < 0 && errno == EINTR) {
         }
         usleep(50 * 1000);
         Say("wound down\n");
       },
       "wound down"},
      {"a child that the end kills", [](const WorkerStop&) { WaitForKilledChild(); },
       "killed, reaped by the worker"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    EXPECT_EXIT(
        {
          WorkerThread worker(c.work);
          worker.Detach();
          while (!busy) usleep(1000);
          ExitConsole(0);
        },
        testing::ExitedWithCode(0), c.said);
  }
}

TEST(WorkerThreadEnd, AWorkerDeafToItsStopIsLeftBehindAndNoneStartsOnceTheConsoleEnds) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        int never[2];
        if (pipe(never) != 0) Say("no pipe\n");
        WorkerThread deaf([&never](const WorkerStop&) {
          char byte;
          busy = true;
          ssize_t ignored = read(never[0], &byte, 1);  // nothing ever comes
          (void)ignored;
          Say("deaf worker went on\n");
        });
        deaf.Detach();
        while (!busy) usleep(1000);
        KillAllChildren();
        WorkerThread late([](const WorkerStop&) { Say("late worker ran\n"); });
        Say(late.Error() == ECANCELED ? "late worker refused\n" : "late worker started\n");
        ExitConsole(0);
      },
      testing::ExitedWithCode(0),
      testing::AllOf(testing::HasSubstr("late worker refused"), testing::Not(testing::HasSubstr("went on")),
                     testing::Not(testing::HasSubstr("late worker ran"))));
}

}  // namespace
}  // namespace Konu
