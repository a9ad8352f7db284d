// Random keys, signals and resizes on a fresh simulated host, at terminal sizes from 1x1 to
// 300x100: the console must never crash, trip a sanitizer, stop reading keys for 10 s or
// leave the terminal unrestored. Screens are found by pressing keys (and root's password
// when a login form shows), so new screens are soaked without being named here. A failure
// prints its seed; SOAK_SEED=N SOAK_STEPS=M replays or lengthens one run.
#include <dirent.h>
#include <signal.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <random>

#include "tests/harness/SimHostFixture.h"

namespace KonuTest {
namespace {

constexpr int kHangMs = 10000;

// Keys that move and open things come more often than the rest, so the soak goes deep.
const char* const kKeys[] = {"Up",  "Up",    "Down",        "Down",   "Down",     "Left",  "Right", "Home",
                             "End", "PgUp",  "PgDn",        "Enter",  "Enter",    "Enter", "Enter", "Esc",
                             "Tab", "Space", "Backspace",   "Delete", "Insert",   "F1",    "F2",    "F2",
                             "F2",  "F3",    "F4",          "F5",     "F6",       "F7",    "F8",    "F9",
                             "F10", "F11",   "F11",         "F12",    "y",        "n",     "a",     "1",
                             ".",   ":",     "{color:red}", "\x1bx",  "\x1b[1;5A"};

struct Size {
  int rows, cols;
};
// Every run starts with the next of these, then random sizes.
constexpr Size kSizes[] = {{25, 80}, {1, 1}, {24, 80}, {100, 300}, {5, 20}, {23, 79}};

// The kernel's name for where a process sleeps ("do_sys_poll", "do_wait", ...).
std::string WaitChannel(pid_t pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/wchan");
  std::string where;
  std::getline(in, where);
  return where;
}

bool Gone(pid_t pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
  std::string stat;
  std::getline(in, stat);
  size_t close = stat.rfind(')');
  return close == std::string::npos || stat.compare(close + 2, 1, "Z") == 0;
}

// How often the console's main thread has gone to sleep: it changes once the thread has
// woken for what was sent and waits again.
long Sleeps(pid_t pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/status");
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("voluntary_ctxt_switches:", 0) == 0) return std::atol(line.c_str() + 24);
  }
  return -1;
}

// The console has taken what was sent (it slept since `sleepsBefore`) and waits for a key
// again, itself or through a child that reads the terminal (the pager).
bool ReadingKeys(pid_t pid, long sleepsBefore) {
  if (WaitChannel(pid).find("poll") != std::string::npos) return Sleeps(pid) != sleepsBefore;
  std::ifstream children("/proc/" + std::to_string(pid) + "/task/" + std::to_string(pid) + "/children");
  for (pid_t child; children >> child;) {
    std::string where = WaitChannel(child);
    if (where.find("poll") != std::string::npos || where.find("select") != std::string::npos ||
        where.find("tty_read") != std::string::npos)
      return true;
  }
  return false;
}

std::string SanitizerReports(const std::string& dir) {
  std::string reports;
  if (DIR* d = opendir(dir.c_str())) {
    while (dirent* e = readdir(d)) {
      if (e->d_name[0] != '.') reports += ReadFileText(dir + "/" + e->d_name);
    }
    closedir(d);
  }
  return reports;
}

class Soak : public SimHostFixture, public ::testing::WithParamInterface<unsigned> {
 protected:
  // Runs the console once, at `size`, until it ends or the steps are used up.
  void Run(Size size, int* steps) {
    Terminal term(size.rows, size.cols);
    std::vector<std::string> env = {"TERM=xterm-256color", "ESCDELAY=25", "LANG=C.UTF-8",
                                    "ASAN_OPTIONS=log_path=" + logs_.Path() + "/asan",
                                    "UBSAN_OPTIONS=print_stacktrace=1:log_path=" + logs_.Path() + "/ubsan"};
    if (const char* lsan = std::getenv("LSAN_OPTIONS")) env.push_back(std::string("LSAN_OPTIONS=") + lsan);
    term.Spawn({KONU_BIN, "--host-root", Root()}, env);
    const std::string where = " at " + std::to_string(size.cols) + "x" + std::to_string(size.rows);
    bool loginShown = false;
    long sleeps = -1;  // anything but the count of a fresh process
    for (; *steps > 0; --*steps) {
      int status = 0;
      if (!term.WaitFor([&] { return ReadingKeys(term.Pid(), sleeps) || Gone(term.Pid()); }, kHangMs) ||
          Gone(term.Pid())) {
        if (term.WaitForExit(1000, &status)) return Ended(term, status, where);
        FAIL() << "no key read for 10 s" << where << ", wait channel " << WaitChannel(term.Pid()) << "\n"
               << term.Screen();
      }
      const bool login = term.Screen().find("Authentication Required") != std::string::npos;
      int dice = Between(0, 99);
      sleeps = Sleeps(term.Pid());
      if (login && !loginShown && dice < 85) {
        term.Press("Enter");  // the name field holds "root"
        term.Type("konu");
        term.Press("Enter");
        keys_ += 3;
      } else if (dice < 94) {
        term.Press(kKeys[Between(0, std::size(kKeys) - 1)]);
        ++keys_;
      } else if (dice < 96) {
        term.Signal(SIGUSR1);
      } else if (dice < 97) {
        term.Signal(Between(0, 1) ? SIGUSR2 : SIGTERM);
      } else if (dice < 98) {
        term.Press("Esc");
        term.Type("R");  // ESC R: a resize typed at the keyboard
      } else {
        term.Resize(Between(1, 100), Between(1, 300));
      }
      loginShown = login;
    }
    // Steps used up: SIGTERM must end it like any other run.
    term.Signal(SIGTERM);
    int status = 0;
    ASSERT_TRUE(term.WaitForExit(2000, &status)) << "SIGTERM did not end the console" << where;
    Ended(term, status, where);
  }

  void Ended(Terminal& term, int status, const std::string& where) {
    ++runs_;
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
        << "the console ended with wait status " << status << where << "\n"
        << term.Screen();
    ASSERT_TRUE(TerminalRestored(term)) << "terminal not restored" << where;
  }

  size_t Between(size_t low, size_t high) {
    return std::uniform_int_distribution<size_t>(low, high)(random_);
  }

  std::mt19937 random_;
  TempDir logs_;
  int keys_ = 0;
  int runs_ = 0;
};

TEST_P(Soak, NoCrashHangOrSanitizerReport) {
  const char* seedText = std::getenv("SOAK_SEED");
  const unsigned seed = seedText ? static_cast<unsigned>(std::atoi(seedText)) : GetParam();
  const char* stepsText = std::getenv("SOAK_STEPS");
  int steps = stepsText ? std::atoi(stepsText) : 150;
  random_.seed(seed);
  SCOPED_TRACE("seed " + std::to_string(seed) + " (replay: SOAK_SEED=" + std::to_string(seed) + ")");
  for (size_t run = 0; steps > 0 && !HasFatalFailure(); ++run) {
    Size size = run < std::size(kSizes)
                    ? kSizes[(run + seed) % std::size(kSizes)]
                    : Size{static_cast<int>(Between(1, 100)), static_cast<int>(Between(1, 300))};
    Run(size, &steps);
    --steps;
  }
  EXPECT_EQ(SanitizerReports(logs_.Path()), "");
  std::printf("soak seed %u: %d keys over %d runs\n", seed, keys_, runs_);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Soak, ::testing::Values(1u, 2u, 3u, 4u));

}  // namespace
}  // namespace KonuTest
