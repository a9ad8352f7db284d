// Side-by-side figures for konu, dialog and whiptail at 80x25 with xterm-256color, each the
// median of several runs: CPU and wall time to the first settled paint, resident memory,
// bytes and cells per key typed into a login or input form and per Up/Down on a menu (with
// the minimal update a terminal model computes), konu's F2 -> login form and login -> menu
// (bytes, most writes of one cell), and wake-ups in 10 s idle. Figures only: nothing here
// passes or fails.
#include <dirent.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

#include "tests/harness/SimHost.h"
#include "tests/harness/Terminal.h"

using KonuTest::Terminal;

namespace {

constexpr int kRuns = 10;  // BENCH_RUNS=N overrides
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

// One cell as the emulator shows it: its text and its colours.
struct Cell {
  std::string text;
  KonuTest::CellColors colors;
  bool operator==(const Cell& o) const {
    return text == o.text && colors.foreground == o.colors.foreground &&
           colors.background == o.colors.background && colors.reverse == o.colors.reverse &&
           colors.bold == o.colors.bold;
  }
};

std::vector<Cell> Cells(const Terminal& t) {
  std::vector<Cell> cells;
  for (int row = 0; row < t.Rows(); ++row)
    for (int col = 0; col < t.Cols(); ++col) cells.push_back({t.Region(row, col, 1, 1), t.Colors(row, col)});
  return cells;
}

// The bytes of one SGR switching to these colours on xterm-256color.
size_t ColourSwitchBytes(const KonuTest::CellColors& c) {
  auto part = [](int colour, const char* base, const char* bright, const char* indexed, const char* dflt) {
    if (colour < 0) return std::string(dflt);
    if (colour < 8) return base + std::to_string(colour);
    if (colour < 16) return bright + std::to_string(colour - 8);
    return indexed + std::to_string(colour);
  };
  std::string sgr = "\x1b[" + part(c.foreground, "3", "9", "38;5;", "39") + ";" +
                    part(c.background, "4", "10", "48;5;", "49") + (c.reverse ? ";7" : "") +
                    (c.bold ? ";1" : "") + "m";
  return sgr.size();
}

// The least a terminal must be sent to go from `before` to `after`: the changed cells, and
// per run of changed cells on a row one cursor move and one colour switch.
struct Change {
  int cells = 0;
  size_t minimalBytes = 0;
};

Change Diff(const std::vector<Cell>& before, const std::vector<Cell>& after, int cols) {
  Change change;
  bool inRun = false;
  for (size_t i = 0; i < after.size(); ++i) {
    if (i % static_cast<size_t>(cols) == 0) inRun = false;
    if (i < before.size() && before[i] == after[i]) {
      inRun = false;
      continue;
    }
    ++change.cells;
    change.minimalBytes += after[i].text.size();
    if (!inRun) {
      const int row = static_cast<int>(i) / cols + 1;
      const int col = static_cast<int>(i) % cols + 1;
      change.minimalBytes += ("\x1b[" + std::to_string(row) + ";" + std::to_string(col) + "H").size();
      change.minimalBytes += ColourSwitchBytes(after[i].colors);
    }
    inRun = true;
  }
  return change;
}

struct Writes {
  int total = 0;
  int most = 0;  // the most any one cell was written
};

Writes CellWrites(const Terminal& t) {
  Writes w;
  for (int row = 0; row < t.Rows(); ++row) {
    for (int col = 0; col < t.Cols(); ++col) {
      w.total += t.CellWrites(row, col);
      w.most = std::max(w.most, t.CellWrites(row, col));
    }
  }
  return w;
}

struct Figures {
  std::vector<double> startWallMs, startCpuMs, rssKiB;
  std::vector<double> typedBytes, backspaceBytes, formCellsWritten, formCellsChanged;
  std::vector<double> listBytes, listCellsWritten, listCellsChanged, listMinimalBytes, listRatio;
  std::vector<double> f2Bytes, f2MostWrites, loginBytes, loginMostWrites;
  std::vector<double> wakeups;
};

double Median(std::vector<double> v) {
  if (v.empty()) return -1;
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

// What one key costs: bytes, cells written, cells changed and the minimal update.
struct KeyCost {
  double bytes = 0;
  Writes writes;
  Change change;
};

bool Measure(Terminal& t, std::string_view key, KeyCost* cost) {
  std::vector<Cell> before = Cells(t);
  size_t bytes = t.BytesWritten();
  t.ResetCellWrites();
  t.Press(key);
  if (!Settle(t)) return false;
  cost->bytes = static_cast<double>(t.BytesWritten() - bytes);
  cost->writes = CellWrites(t);
  cost->change = Diff(before, Cells(t), t.Cols());
  return true;
}

// A transition: bytes and the most writes of one cell, until `text` shows and all settles.
bool Transition(Terminal& t, std::string_view key, const char* text, std::vector<double>& bytes,
                std::vector<double>& mostWrites) {
  size_t start = t.BytesWritten();
  t.ResetCellWrites();
  t.Press(key);
  if (!t.WaitForText(text, 10000) || !Settle(t)) return false;
  bytes.push_back(static_cast<double>(t.BytesWritten() - start));
  mostWrites.push_back(CellWrites(t).most);
  if (std::getenv("BENCH_DUMP")) {
    for (int r = 0; r < t.Rows(); ++r) {
      std::string line;
      for (int c = 0; c < t.Cols(); ++c) line += static_cast<char>('0' + std::min(t.CellWrites(r, c), 9));
      std::printf("%2d %s | %s\n", r, line.c_str(), t.Row(r).c_str());
    }
  }
  return true;
}

void TypeAndErase(Terminal& t, Figures& f) {
  KeyCost cost;
  for (int i = 0; i < 5; ++i) {
    if (!Measure(t, "a", &cost)) return;
    f.typedBytes.push_back(cost.bytes);
    f.formCellsWritten.push_back(cost.writes.total);
    f.formCellsChanged.push_back(cost.change.cells);
  }
  for (int i = 0; i < 5; ++i) {
    if (!Measure(t, "Backspace", &cost)) return;
    f.backspaceBytes.push_back(cost.bytes);
  }
}

void MoveThroughList(Terminal& t, Figures& f) {
  KeyCost cost;
  for (const char* key : {"Down", "Down", "Down", "Down", "Up", "Up", "Up", "Up"}) {
    if (!Measure(t, key, &cost)) return;
    f.listBytes.push_back(cost.bytes);
    f.listCellsWritten.push_back(cost.writes.total);
    f.listCellsChanged.push_back(cost.change.cells);
    f.listMinimalBytes.push_back(static_cast<double>(cost.change.minimalBytes));
    if (cost.change.minimalBytes > 0)
      f.listRatio.push_back(cost.bytes / static_cast<double>(cost.change.minimalBytes));
  }
}

struct Program {
  const char* name;
  std::vector<std::string> formArgv;  // an input form (konu: the console itself)
  std::vector<std::string> listArgv;  // a menu (empty: the form run goes on to the menu)
};

// Starts `argv`; records the start-up figures when `startup` is given.
bool Start(Terminal& t, const std::vector<std::string>& argv, Figures* startup) {
  auto start = std::chrono::steady_clock::now();
  t.Spawn(argv, kEnv);
  // Wall time: until the program first waits for a key with output written.
  if (!t.WaitFor([&] { return t.BytesWritten() > 0 && Waiting(t.Pid()); }, 10000)) return false;
  const double wallMs =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  if (!Settle(t)) return false;
  if (startup) {
    startup->startWallMs.push_back(wallMs);
    startup->startCpuMs.push_back(CpuMs(t.Pid()));
    startup->rssKiB.push_back(Field("/proc/" + std::to_string(t.Pid()) + "/status", "VmRSS:"));
  }
  return true;
}

void RunOnce(const Program& p, Figures& f) {
  {
    Terminal t(25, 80);
    if (!Start(t, p.formArgv, &f)) return;
    if (p.listArgv.empty()) {
      // konu: F2 to the login form, Enter to the password field as an operator does, type
      // and erase, then log in and move through the menu.
      if (!Transition(t, "F2", "Authentication Required", f.f2Bytes, f.f2MostWrites)) return;
      t.Press("Enter");
      if (!Settle(t)) return;
      TypeAndErase(t, f);
      t.Type("konu");
      if (!Settle(t) || !Transition(t, "Enter", "System Customization", f.loginBytes, f.loginMostWrites))
        return;
      MoveThroughList(t, f);
      return;
    }
    TypeAndErase(t, f);
  }
  Terminal t(25, 80);
  if (Start(t, p.listArgv, nullptr)) MoveThroughList(t, f);
}

std::vector<std::string> MenuArgv(const char* program) {
  std::vector<std::string> argv = {program, "--menu", "System Customization", "20", "60", "12"};
  const char* entries[] = {
      "Configure Password",         "Configure Lockdown Mode",   "Configure Management Network",
      "Restart Management Network", "Test Management Network",   "Network Restore Options",
      "Configure Keyboard",         "Troubleshooting Options",   "View System Logs",
      "View Support Information",   "Reset System Configuration"};
  int tag = 1;
  for (const char* entry : entries) {
    argv.push_back(std::to_string(tag++));
    argv.push_back(entry);
  }
  return argv;
}

}  // namespace

int main() {
  KonuTest::SimHost host(KONU_HOSTSIM_BIN);
  const std::vector<Program> programs = {
      {"konu", {KONU_BIN, "--host-root", host.Root()}, {}},
      {"dialog",
       {"/usr/bin/dialog", "--inputbox", "Login Name:", "10", "60", "root"},
       MenuArgv("/usr/bin/dialog")},
      {"whiptail",
       {"/usr/bin/whiptail", "--inputbox", "Login Name:", "10", "60", "root"},
       MenuArgv("/usr/bin/whiptail")},
  };
  const char* runsEnv = std::getenv("BENCH_RUNS");
  const int runs = runsEnv && std::atoi(runsEnv) > 0 ? std::atoi(runsEnv) : kRuns;
  std::vector<Figures> figures(programs.size());
  for (int run = 0; run < runs; ++run)
    for (size_t i = 0; i < programs.size(); ++i) RunOnce(programs[i], figures[i]);

  // Idle: one instance of each, side by side over the same 10 s.
  std::vector<std::unique_ptr<Terminal>> idle;
  std::vector<long long> before;
  for (const Program& p : programs) {
    idle.push_back(std::make_unique<Terminal>(25, 80));
    idle.back()->Spawn(p.formArgv, kEnv);
    Settle(*idle.back());
  }
  for (auto& t : idle) before.push_back(Wakeups(t->Pid()));
  for (int i = 0; i < 100; ++i)
    for (auto& t : idle) t->Pump(100 / static_cast<int>(idle.size()));
  for (size_t i = 0; i < idle.size(); ++i)
    figures[i].wakeups.push_back(static_cast<double>(Wakeups(idle[i]->Pid()) - before[i]));

  std::printf("80x25, TERM=xterm-256color, median of %d runs (idle: one 10 s window, all side by side)\n",
              runs);
  std::printf("%-50s %10s %10s %10s\n", "", "konu", "dialog", "whiptail");
  auto row = [&](const char* label, std::vector<double> Figures::*field) {
    std::printf("%-50s", label);
    for (const Figures& f : figures) std::printf(" %10.2f", Median(f.*field));
    std::printf("\n");
  };
  row("wall ms to the first settled paint", &Figures::startWallMs);
  row("CPU ms to the first settled paint", &Figures::startCpuMs);
  row("resident memory KiB (first paint)", &Figures::rssKiB);
  row("bytes per typed key (login / inputbox)", &Figures::typedBytes);
  row("bytes per Backspace (login / inputbox)", &Figures::backspaceBytes);
  row("cells written per typed key", &Figures::formCellsWritten);
  row("cells changed per typed key", &Figures::formCellsChanged);
  row("bytes per Up/Down (menu)", &Figures::listBytes);
  row("minimal bytes per Up/Down (terminal model)", &Figures::listMinimalBytes);
  row("bytes / minimal per Up/Down", &Figures::listRatio);
  row("cells written per Up/Down", &Figures::listCellsWritten);
  row("cells changed per Up/Down", &Figures::listCellsChanged);
  row("bytes of F2 -> login form (konu only)", &Figures::f2Bytes);
  row("most writes of one cell, F2 -> login form", &Figures::f2MostWrites);
  row("bytes of login -> menu (konu only)", &Figures::loginBytes);
  row("most writes of one cell, login -> menu", &Figures::loginMostWrites);
  row("wake-ups in 10 s idle", &Figures::wakeups);
  std::printf("(-1: not measured)\n");
  return 0;
}
