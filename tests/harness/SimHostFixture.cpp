// A fresh simulated host per test, and the console started on it.
#include "tests/harness/SimHostFixture.h"

#include <dirent.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "host/sim/StateFile.h"

namespace KonuTest {

void SimHostFixture::SetUp() { host_ = std::make_unique<SimHost>(KONU_HOSTSIM_BIN); }

std::string SimHostFixture::ReadFile(const std::string& relative) const {
  return ReadFileText(HostFile(relative));
}

std::vector<std::string> SimHostFixture::JournalCommands() const {
  std::vector<std::string> commands;
  std::istringstream lines(Journal());
  std::string text;
  while (std::getline(lines, text)) {
    nlohmann::json line = nlohmann::json::parse(text, nullptr, false);
    if (line.is_discarded() || !line.contains("argv")) continue;
    std::string command;
    for (const auto& word : line["argv"]) command += (command.empty() ? "" : " ") + word.get<std::string>();
    if (line.value("exit", nlohmann::json()) == "hang") command += " (hang)";
    commands.push_back(command);
  }
  return commands;
}

void SimHostFixture::WriteFile(const std::string& relative, const std::string& text) const {
  WriteFileText(HostFile(relative), text);
}

nlohmann::json SimHostFixture::State(const std::string& pointer) const {
  return Konu::Sim::StateFile(Root()).Get(pointer);
}

void SimHostFixture::SetState(const std::string& pointer, const nlohmann::json& value) const {
  Konu::Sim::StateFile(Root()).Update(
      [&](nlohmann::json& state) { state[nlohmann::json::json_pointer(pointer)] = value; });
}

std::string SimHostFixture::ProductLine() const {
  nlohmann::json v = State("/version");
  return v["product"].get<std::string>() + " " + v["version"].get<std::string>() + " (NuKernel " +
         v["kernelVersion"].get<std::string>() + " Build " + v["build"].get<std::string>() + ")";
}

void SimHostFixture::StartKonu(Terminal& term, const std::vector<std::string>& args,
                               double clockSpeed) const {
  std::vector<std::string> argv = {KONU_BIN, "--host-root", Root()};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<std::string> env = {"TERM=xterm-256color", "ESCDELAY=25", "LANG=C.UTF-8"};
  if (clockSpeed > 0) env.push_back("KONU_CLOCK_SPEED=" + std::to_string(clockSpeed));
  term.Spawn(argv, env);
}

void SimHostFixture::StartOnWelcome(Terminal& term, const std::vector<std::string>& args,
                                    double clockSpeed) const {
  StartKonu(term, args, clockSpeed);
  ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
}

void SimHostFixture::OpenFromMenu(Terminal& term, const std::string& entryPane, const std::string& shown,
                                  double clockSpeed) const {
  ASSERT_NO_FATAL_FAILURE(StartOnWelcome(term, {}, clockSpeed));
  ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2"));
  ASSERT_NO_FATAL_FAILURE(MenuDownTo(term, entryPane));
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText(shown)) << shown << "\n" << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
}

void SimHostFixture::Ready(Terminal& term, const std::string& text) {
  ASSERT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
}

void SimHostFixture::ReadyWithout(Terminal& term, const std::string& text) {
  ASSERT_TRUE(term.WaitForNoText(text)) << text << "\n" << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
}

void SimHostFixture::PressUntil(Terminal& term, const std::string& key, const std::string& text) {
  if (key.size() > 1)
    term.Press(key);
  else
    term.Type(key);
  ASSERT_NO_FATAL_FAILURE(Ready(term, text));
}

bool SimHostFixture::Ran(const std::string& command) const {
  const std::vector<std::string> all = JournalCommands();
  return std::find(all.begin(), all.end(), command) != all.end();
}

int SimHostFixture::Foreground(const Terminal& term, const std::string& text) {
  int row = 0, col = 0;
  return term.Find(text, &row, &col) ? term.Colors(row, col).foreground : -100;
}

void SimHostFixture::FinishDialogChild(Terminal& term, int expected) {
  ASSERT_TRUE(term.WaitForText("RESULT=" + std::to_string(expected))) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("q");
  int status = -1;
  ASSERT_TRUE(term.WaitForExit(5000, &status));
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(expected, WEXITSTATUS(status));
}

void SimHostFixture::LogIn(Terminal& term, const char* key, const char* secret) {
  term.Press(key);
  ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  term.Type(secret);
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText("Authentication Required")) << term.Screen();
}

void SimHostFixture::MenuDownTo(Terminal& term, const std::string& footer) {
  // Each move is judged on the whole pane: the list changes before the pane is drawn, so
  // the check waits until the console reads keys again.
  for (int moves = 0; moves < 20; ++moves) {
    ASSERT_TRUE(term.WaitUntilPolling());
    if (term.WaitForText(footer, 0)) break;
    const std::string before = term.Screen();
    term.Press("Down");
    term.WaitFor([&] { return term.Screen() != before; }, 1000);
  }
  ASSERT_TRUE(term.WaitForText(footer)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
}

void SimHostFixture::Acknowledge(Terminal& term, const std::string& text) {
  ASSERT_TRUE(term.WaitForText(text)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ReadyWithout(term, text);
}

void SimHostFixture::Card(const std::vector<std::string>& words) const {
  std::vector<std::string> argv = {KONU_HOSTSIM_BIN, "--root", Root(), "card"};
  argv.insert(argv.end(), words.begin(), words.end());
  ASSERT_EQ(0, RunCommandLine(argv).exitCode);
}

void SimHostFixture::AddUser(const std::string& name, const std::string& password, bool denied,
                             bool expired) const {
  SetState("/users/" + name, {{"passwordHash", ""},
                              {"uid", 600},
                              {"denied", denied},
                              {"expired", expired},
                              {"serviceAccount", false},
                              {"qal", true}});
  host_->SetPassword(name, password);
}

bool SimHostFixture::TerminalRestored(const Terminal& term) {
  return !term.AltScreen() && term.CursorVisible();
}

std::vector<int> SimHostFixture::ChildrenOf(int pid) {
  std::vector<int> children;
  std::unique_ptr<DIR, int (*)(DIR*)> proc(opendir("/proc"), closedir);
  while (dirent* entry = readdir(proc.get())) {
    std::ifstream stat(std::string("/proc/") + entry->d_name + "/stat");
    std::string text;
    if (!std::getline(stat, text)) continue;
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string state;
    int parent = 0;
    fields >> state >> parent;
    if (parent == pid) children.push_back(std::atoi(entry->d_name));
  }
  return children;
}

}  // namespace KonuTest
