// Side-by-side figures for konu, dialog and whiptail at 80x25 with xterm-256color, each the
// median of several runs: CPU and wall time to the first settled paint, resident memory,
// bytes and changed cells per key typed into a login or input form, bytes of konu's F2 to
// login form, and wake-ups in 10 s idle. Figures only: nothing here passes or fails.
#include <dirent.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

#include "tests/harness/SimHost.h"
#include "tests/harness/Terminal.h"

using KonuTest::Terminal;

namespace {

constexpr int kRuns = 10;  // BENCH_RUNS overrides
const std::vector<std::string> kEnv = {"TERM=xterm-256color", "ESCDELAY=25", "LANG=C.UTF-8",
                                       "PATH=/usr/bin:/bin"};

// Sum of a per-thread /proc counter over every thread of `pid`.
long long PerThread(pid_t pid, const std::function<long long(const std::string&)>& read) {
  long long sum = 0;
  std::string dir = "/proc/" + std::to_string(pid) + "/task";
  if (DIR* d = opendir(dir.c_str())) {
    while (dirent* e = readdir(d)) {
      if (e->d_name[0] != '.') sum += read(dir + "/" + e->d_name);
    }
    closedir(d);
  }
  return sum;
}

double CpuMs(pid_t pid) {
  return PerThread(pid,
                   [](const std::string& task) {
                     long long ns = 0;
                     std::ifstream(task + "/schedstat") >> ns;
                     return ns;
                   }) /
         1e6;
}

long long Field(const std::string& statusFile, const std::string& name) {
  std::ifstream in(statusFile);
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(name, 0) == 0) return std::atoll(line.c_str() + name.size());
  }
  return 0;
}

long long Wakeups(pid_t pid) {
  return PerThread(pid, [](const std::string& task) {
    return Field(task + "/status", "voluntary_ctxt_switches:") +
           Field(task + "/status", "nonvoluntary_ctxt_switches:");
  });
}

// The program sleeps waiting for input (poll, select or a blocking read of the terminal).
bool Waiting(pid_t pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/wchan");
  std::string where;
  std::getline(in, where);
  return where.find("poll") != std::string::npos || where.find("select") != std::string::npos ||
         where.find("tty_read") != std::string::npos || where.find("wait_woken") != std::string::npos;
}

// Waits until the program sleeps for a key and its output has stopped.
bool Settle(Terminal& t) {
  if (!t.WaitFor([&] { return Waiting(t.Pid()); }, 10000)) return false;
  for (size_t before = t.BytesWritten() + 1; before != t.BytesWritten();) {
    before = t.BytesWritten();
    t.Pump(30);
  }
  return t.WaitFor([&] { return Waiting(t.Pid()); }, 10000);
}

int ChangedCells(const std::string& a, const std::string& b) {
  int changed = 0;
  for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) changed += a[i] != b[i];
  return changed + static_cast<int>(std::max(a.size(), b.size()) - std::min(a.size(), b.size()));
}

struct Figures {
  std::vector<double> startWallMs, startCpuMs, rssKiB, keyBytes, keyCells, transitionBytes, wakeups;
};

double Median(std::vector<double> v) {
  if (v.empty()) return -1;
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

struct Program {
  const char* name;
  std::function<std::vector<std::string>()> argv;
  std::function<bool(Terminal&, Figures&)> toForm;  // from the first paint to the input form
};

void RunOnce(const Program& p, Figures& f) {
  Terminal t(25, 80);
  auto start = std::chrono::steady_clock::now();
  t.Spawn(p.argv(), kEnv);
  // Wall time: until the program first waits for a key with output written.
  if (!t.WaitFor([&] { return t.BytesWritten() > 0 && Waiting(t.Pid()); }, 10000)) return;
  f.startWallMs.push_back(
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  if (!Settle(t)) return;
  f.startCpuMs.push_back(CpuMs(t.Pid()));
  f.rssKiB.push_back(Field("/proc/" + std::to_string(t.Pid()) + "/status", "VmRSS:"));
  if (!p.toForm(t, f) || !Settle(t)) return;
  for (int i = 0; i < 5; ++i) {
    std::string before = t.Screen();
    size_t bytes = t.BytesWritten();
    t.Type("a");
    if (!Settle(t)) return;
    f.keyBytes.push_back(static_cast<double>(t.BytesWritten() - bytes));
    f.keyCells.push_back(ChangedCells(before, t.Screen()));
  }
}

}  // namespace

int main() {
  KonuTest::SimHost host(KONU_HOSTSIM_BIN);
  const std::vector<Program> programs = {
      {"konu",
       [&] {
         return std::vector<std::string>{KONU_BIN, "--host-root", host.Root()};
       },
       [](Terminal& t, Figures& f) {
         size_t bytes = t.BytesWritten();
         t.Press("F2");
         if (!t.WaitForText("Authentication Required", 10000) || !Settle(t)) return false;
         f.transitionBytes.push_back(static_cast<double>(t.BytesWritten() - bytes));
         t.Press("Enter");  // to the password field, as an operator does
         return true;
       }},
      {"dialog",
       [] {
         return std::vector<std::string>{"/usr/bin/dialog", "--inputbox", "Login Name:", "10", "60", "root"};
       },
       [](Terminal&, Figures&) { return true; }},
      {"whiptail",
       [] {
         return std::vector<std::string>{
             "/usr/bin/whiptail", "--inputbox", "Login Name:", "10", "60", "root"};
       },
       [](Terminal&, Figures&) { return true; }},
  };
  std::vector<Figures> figures(programs.size());
  for (int run = 0; run < kRuns; ++run)
    for (size_t i = 0; i < programs.size(); ++i) RunOnce(programs[i], figures[i]);

  // Idle: one instance of each, side by side over the same 10 s.
  std::vector<std::unique_ptr<Terminal>> idle;
  std::vector<long long> before;
  for (const Program& p : programs) {
    idle.push_back(std::make_unique<Terminal>(25, 80));
    idle.back()->Spawn(p.argv(), kEnv);
    Settle(*idle.back());
  }
  for (auto& t : idle) before.push_back(Wakeups(t->Pid()));
  for (int i = 0; i < 100; ++i)
    for (auto& t : idle) t->Pump(100 / static_cast<int>(idle.size()));
  for (size_t i = 0; i < idle.size(); ++i)
    figures[i].wakeups.push_back(static_cast<double>(Wakeups(idle[i]->Pid()) - before[i]));

  std::printf("80x25, TERM=xterm-256color, median of %d runs (idle: one 10 s window, all side by side)\n",
              kRuns);
  std::printf("%-44s %10s %10s %10s\n", "", "konu", "dialog", "whiptail");
  auto row = [&](const char* label, std::vector<double> Figures::*field) {
    std::printf("%-44s", label);
    for (const Figures& f : figures) std::printf(" %10.1f", Median(f.*field));
    std::printf("\n");
  };
  row("wall ms to the first settled paint", &Figures::startWallMs);
  row("CPU ms to the first settled paint", &Figures::startCpuMs);
  row("resident memory KiB (first paint)", &Figures::rssKiB);
  row("bytes per typed key (login / inputbox)", &Figures::keyBytes);
  row("cells changed per typed key", &Figures::keyCells);
  row("bytes of F2 -> login form (konu only)", &Figures::transitionBytes);
  row("wake-ups in 10 s idle", &Figures::wakeups);
  std::printf("(-1: not measured)\n");
  return 0;
}
