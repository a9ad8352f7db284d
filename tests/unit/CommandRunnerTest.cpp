// The command runner against real child processes: exit codes, signals, the time limit,
// captured output, input, the child's environment, descriptors and signal state.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <string>
#include <thread>

#include "ops/CommandRunner.h"
#include "ops/UniqueFd.h"
#include "tests/unit/OpsTestSupport.h"

namespace Konu {
namespace {

using OpsTest::CapturedLog;
using OpsTest::SimulatedRoot;
using OpsTest::TempDir;

using namespace std::string_literals;

const std::string kNotNormally = "Run Command did not terminate normally";

// Runs "/bin/sh -c script" and returns its exit code; stdout into `out` when given.
int Sh(const std::string& script, std::string* out = nullptr, int timeLimit = 0) {
  const char* argv[] = {"sh", "-c", script.c_str(), nullptr};
  char buffer[4096];
  int length = sizeof buffer;
  int rc = RunCommand("/bin/sh", argv, out ? buffer : nullptr, out ? &length : nullptr, nullptr, nullptr,
                      nullptr, 0, timeLimit);
  if (out) *out = length >= 0 ? std::string(buffer, length) : "<read error>";
  return rc;
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// An ended but unreaped child of this process, without reaping it; 0 when there is none
// by the deadline.
siginfo_t WaitForZombie(std::chrono::milliseconds deadline) {
  auto until = std::chrono::steady_clock::now() + deadline;
  siginfo_t info{};
  do {
    memset(&info, 0, sizeof info);
    if (waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0) return info;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  } while (std::chrono::steady_clock::now() < until);
  return info;
}

TEST(CommandRunnerExit, EveryExitCodeComesBackAsIs) {
  CapturedLog log;
  for (int code = 0; code <= 255; ++code) {
    ASSERT_EQ(Sh("exit " + std::to_string(code)), code) << "exit " << code;
  }
  EXPECT_TRUE(log.Lines().empty());
}

TEST(CommandRunnerExit, ChildKilledBySignalGivesMinusOneAndIsLogged) {
  CapturedLog log;
  EXPECT_EQ(Sh("kill -TERM $$"), -1);
  EXPECT_EQ(log.Count(LOG_ERR, kNotNormally), 1);
  EXPECT_EQ(log.Lines().size(), 1u);
}

TEST(CommandRunnerExit, ProgramThatCannotBeStartedGivesMinusOneAndErrno) {
  CapturedLog log;
  TempDir dir;
  const char* argv[] = {"missing", nullptr};
  errno = 0;
  EXPECT_EQ(RunCommand((dir / "missing").c_str(), argv), -1);
  EXPECT_EQ(errno, ENOENT);
  // Nothing ran, so nothing "did not terminate normally".
  EXPECT_TRUE(log.Lines().empty());

  OpsTest::WriteFile(dir / "not-executable", "#!/bin/sh\nexit 0\n", 0644);
  errno = 0;
  EXPECT_EQ(RunCommand((dir / "not-executable").c_str(), argv), -1);
  EXPECT_EQ(errno, EACCES);
}

TEST(CommandRunnerTimeLimit, ChildOutlivingItsLimitIsKilledLoggedAndLeftUnreaped) {
  CapturedLog log;
  ASSERT_EQ(WaitForZombie(std::chrono::milliseconds(0)).si_pid, 0) << "a child was left over";

  std::string out;
  auto start = std::chrono::steady_clock::now();
  int rc = Sh("echo started; exec sleep 30", &out, 1);
  double elapsed = SecondsSince(start);

  EXPECT_EQ(rc, -1);
  EXPECT_GE(elapsed, 0.95);
  EXPECT_LT(elapsed, 1.5);
  EXPECT_EQ(out, "started\n");  // what it wrote before the kill is still collected
  EXPECT_EQ(log.Lines(), (std::vector<OpsTest::LogLine>{
                             {LOG_WARNING, "Killing process because 1 seconds timeout expired"},
                             {LOG_ERR, kNotNormally},
                         }));

  // The killed child is still this process's zombie: nobody reaped it.
  siginfo_t zombie = WaitForZombie(std::chrono::seconds(5));
  ASSERT_NE(zombie.si_pid, 0);
  EXPECT_EQ(zombie.si_code, CLD_KILLED);
  EXPECT_EQ(zombie.si_status, SIGKILL);
  int status = 0;
  ASSERT_EQ(waitpid(zombie.si_pid, &status, 0), zombie.si_pid);
  EXPECT_TRUE(WIFSIGNALED(status));
}

TEST(CommandRunnerTimeLimit, ChildEndingWithinItsLimitGivesItsCode) {
  CapturedLog log;
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Sh("exit 3", nullptr, 5), 3);
  EXPECT_LT(SecondsSince(start), 4.0);
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(WaitForZombie(std::chrono::milliseconds(0)).si_pid, 0);
}

// Regression: limit x 1,000,000 microseconds overflowed a 32-bit budget for limits above
// 2147 s, killing the child after the first 20 ms poll.
TEST(CommandRunnerTimeLimit, LongLimitsDoNotWrapAround) {
  CapturedLog log;
  EXPECT_EQ(Sh("sleep 0.3; exit 7", nullptr, 3000), 7);
  EXPECT_EQ(Sh("sleep 0.1; exit 8", nullptr, INT_MAX), 8);
  EXPECT_TRUE(log.Lines().empty());
}

TEST(CommandRunnerOutput, StreamsAreCapturedSeparatelyWithTheirLengths) {
  const char* argv[] = {"sh", "-c", "printf hello; printf oops >&2; exit 2", nullptr};
  char out[64];
  char err[64];
  int outLength = sizeof out;
  int errLength = sizeof err;
  EXPECT_EQ(RunCommand("/bin/sh", argv, out, &outLength, err, &errLength), 2);
  ASSERT_EQ(outLength, 5);
  ASSERT_EQ(errLength, 4);
  EXPECT_EQ(std::string(out, outLength), "hello");
  EXPECT_EQ(std::string(err, errLength), "oops");
}

TEST(CommandRunnerOutput, OutputLongerThanTheBufferIsCutAtCapacity) {
  const char* argv[] = {"sh", "-c", "i=0; while [ $i -lt 100 ]; do printf '%d,' $i; i=$((i+1)); done",
                        nullptr};
  char out[32];
  memset(out, '#', sizeof out);
  int capacity = 20;
  EXPECT_EQ(RunCommand("/bin/sh", argv, out, &capacity), 0);
  ASSERT_EQ(capacity, 20);
  EXPECT_EQ(std::string(out, 20), "0,1,2,3,4,5,6,7,8,9,");
  // No terminating zero, nothing past the capacity.
  EXPECT_EQ(std::string(out + 20, 12), std::string(12, '#'));
}

TEST(CommandRunnerOutput, EmptyOutputAndZeroCapacityGiveZero) {
  const char* argv[] = {"sh", "-c", "printf data", nullptr};
  char out[8];
  int zero = 0;
  EXPECT_EQ(RunCommand("/bin/sh", argv, out, &zero), 0);
  EXPECT_EQ(zero, 0);

  const char* quiet[] = {"sh", "-c", "exit 0", nullptr};
  int length = sizeof out;
  EXPECT_EQ(RunCommand("/bin/sh", quiet, out, &length), 0);
  EXPECT_EQ(length, 0);
}

TEST(CommandRunnerInput, InputReachesTheChildFollowedByEndOfFile) {
  const std::string input = "first line\nsecond\0line"s;
  const char* argv[] = {"cat", nullptr};
  char out[64];
  int length = sizeof out;
  // cat ends only once it has seen end of file.
  EXPECT_EQ(RunCommand("/bin/cat", argv, out, &length, nullptr, nullptr, input.data(),
                       static_cast<int>(input.size()), 10),
            0);
  ASSERT_EQ(length, static_cast<int>(input.size()));
  EXPECT_EQ(std::string(out, length), input);
}

TEST(CommandRunnerInput, ChildThatIgnoresLargeInputDoesNotTakeTheConsoleDown) {
  // More than a pipe holds, to a child that exits without reading: the write fails with
  // EPIPE instead of SIGPIPE ending this process.
  std::string input(1 << 20, 'x');
  const char* argv[] = {"sh", "-c", "exit 4", nullptr};
  EXPECT_EQ(RunCommand("/bin/sh", argv, nullptr, nullptr, nullptr, nullptr, input.data(),
                       static_cast<int>(input.size())),
            4);
  sigset_t pending;
  sigpending(&pending);
  EXPECT_FALSE(sigismember(&pending, SIGPIPE));
}

TEST(CommandRunnerChild, EnvironmentIsOnlyPythonHome) {
  setenv("KONU_TEST_SECRET", "leaked", 1);
  const char* argv[] = {"env", nullptr};
  char out[512];
  int length = sizeof out;
  EXPECT_EQ(RunCommand("/usr/bin/env", argv, out, &length), 0);
  unsetenv("KONU_TEST_SECRET");
  ASSERT_GE(length, 0);
  EXPECT_EQ(std::string(out, length), "PYTHONHOME=/\n");
}

TEST(CommandRunnerChild, SimulatedHostPathHoldsOnlyItsToolFolders) {
  SimulatedRoot root;
  root.LinkToMachine("/usr/bin/env", "/usr/bin/env");
  const char* argv[] = {"env", nullptr};
  char out[1024];
  int length = sizeof out;
  EXPECT_EQ(RunCommand("/usr/bin/env", argv, out, &length), 0);
  ASSERT_GE(length, 0);
  const std::string& r = root.Path();
  EXPECT_EQ(std::string(out, length),
            "PYTHONHOME=/\nPATH=" + r + "/bin:" + r + "/sbin:" + r + "/usr/bin:" + r + "/usr/sbin\n");
}

TEST(CommandRunnerChild, SimulatedHostRunsItsOwnToolsByPathAndByName) {
  SimulatedRoot root;
  root.LinkToMachine("/bin/sh", "/bin/sh");
  root.AddScript("/sbin/konu-test-tool", "echo \"simulated tool $1\"\n");
  std::string out;
  EXPECT_EQ(Sh("konu-test-tool one", &out), 0);
  EXPECT_EQ(out, "simulated tool one\n");
  // The machine's own folders are not on the path.
  EXPECT_EQ(Sh("ls /", &out), 127);
}

TEST(CommandRunnerChild, ChildHoldsNoDescriptorButTheStandardThree) {
  // Descriptors this process holds without close-on-exec must not reach the child.
  int extra[3];
  for (int& fd : extra) fd = open("/dev/null", O_RDONLY);
  int leakyPipe[2];
  ASSERT_EQ(pipe(leakyPipe), 0);

  std::string out;
  // $$ is the shell itself; ls runs as its child and lists the shell's descriptors.
  EXPECT_EQ(Sh("ls /proc/$$/fd; :", &out), 0);
  EXPECT_EQ(out, "0\n1\n2\n");

  for (int fd : extra) close(fd);
  close(leakyPipe[0]);
  close(leakyPipe[1]);
}

TEST(CommandRunnerChild, ChildStartsWithNoBlockedOrIgnoredSignals) {
  sigset_t block;
  sigemptyset(&block);
  sigaddset(&block, SIGUSR1);
  sigaddset(&block, SIGTERM);
  sigset_t old;
  pthread_sigmask(SIG_BLOCK, &block, &old);
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  struct sigaction oldPipe {};
  sigaction(SIGPIPE, &ignore, &oldPipe);

  const char* argv[] = {"grep", "-E", "^Sig(Blk|Ign)", "/proc/self/status", nullptr};
  char out[256];
  int length = sizeof out;
  int rc = RunCommand("/bin/grep", argv, out, &length);

  sigaction(SIGPIPE, &oldPipe, nullptr);
  pthread_sigmask(SIG_SETMASK, &old, nullptr);
  EXPECT_EQ(rc, 0);
  ASSERT_GE(length, 0);
  unsigned long long blocked = ~0ULL;
  unsigned long long ignored = ~0ULL;
  ASSERT_EQ(sscanf(std::string(out, length).c_str(), "SigBlk:\t%llx\nSigIgn:\t%llx", &blocked, &ignored), 2)
      << std::string(out, length);
  EXPECT_EQ(blocked, 0u);
  // glibc's spawn sets its own two internal signals (32 and 33) to ignored in every child;
  // every other signal must have its default disposition.
  const unsigned long long glibcInternal = (1ULL << 31) | (1ULL << 32);
  EXPECT_EQ(ignored & ~glibcInternal, 0u) << std::hex << ignored;
}

TEST(RunShell, RunsTheLineThroughShAndGivesItsCode) {
  TempDir dir;
  std::string marker = dir / "marker";
  EXPECT_EQ(RunShell(("echo ran > " + marker + "; exit 9").c_str()), 9);
  EXPECT_EQ(OpsTest::ReadFile(marker), "ran\n");
}

TEST(RunCommandUntil, GivesTheExitCodeOfATalkativeChild) {
  Pipe stop;
  ASSERT_TRUE(stop.Open());
  // More output than a pipe holds: it is read and dropped while the child runs.
  const char* argv[] = {"sh", "-c", "head -c 300000 /dev/zero; head -c 300000 /dev/zero >&2; exit 7",
                        nullptr};
  EXPECT_EQ(RunCommandUntil("/bin/sh", argv, stop.read.Get()), 7);
}

TEST(RunCommandUntil, AStopEndsTheChildAndReapsIt) {
  CapturedLog log;
  Pipe stop;
  ASSERT_TRUE(stop.Open());
  ASSERT_EQ(write(stop.write.Get(), "s", 1), 1);
  const char* argv[] = {"sleep", "30", nullptr};
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(RunCommandUntil("/bin/sleep", argv, stop.read.Get()), -1);
  EXPECT_LT(SecondsSince(start), 10.0);  // not the 30 s of the child
  EXPECT_EQ(WaitForZombie(std::chrono::milliseconds(100)).si_pid, 0);
}

}  // namespace
}  // namespace Konu
