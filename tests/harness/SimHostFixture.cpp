// A fresh simulated host per test, and the console started on it.
#include "tests/harness/SimHostFixture.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/sim/StateFile.h"

namespace KonuTest {

void SimHostFixture::SetUp() {
  std::string tmpl = (std::filesystem::temp_directory_path() / "konu-host-XXXXXX").string();
  ASSERT_NE(nullptr, mkdtemp(tmpl.data()));
  root_ = tmpl;
  const char* argv[] = {KONU_HOSTSIM_BIN, "create", root_.c_str(), nullptr};
  pid_t pid = 0;
  ASSERT_EQ(0, posix_spawn(&pid, KONU_HOSTSIM_BIN, nullptr, nullptr, const_cast<char**>(argv), environ));
  int status = 0;
  ASSERT_EQ(pid, waitpid(pid, &status, 0));
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "konu-hostsim create " << root_;
}

void SimHostFixture::TearDown() {
  if (!root_.empty() && !HasFailure()) std::filesystem::remove_all(root_);
}

std::string SimHostFixture::ReadFile(const std::string& relative) const {
  std::ifstream in(HostFile(relative));
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

void SimHostFixture::WriteFile(const std::string& relative, const std::string& text) const {
  std::filesystem::create_directories(std::filesystem::path(HostFile(relative)).parent_path());
  std::ofstream(HostFile(relative), std::ios::trunc) << text;
}

nlohmann::json SimHostFixture::State(const std::string& pointer) const {
  return Konu::Sim::StateFile(root_).Get(pointer);
}

void SimHostFixture::SetState(const std::string& pointer, const nlohmann::json& value) const {
  Konu::Sim::StateFile(root_).Update(
      [&](nlohmann::json& state) { state[nlohmann::json::json_pointer(pointer)] = value; });
}

std::string SimHostFixture::ProductLine() const {
  nlohmann::json v = State("/version");
  return v["product"].get<std::string>() + " " + v["version"].get<std::string>() + " (NuKernel " +
         v["kernelVersion"].get<std::string>() + " Build " + v["build"].get<std::string>() + ")";
}

void SimHostFixture::StartKonu(Terminal& term, const std::vector<std::string>& args, double clockSpeed) const {
  std::vector<std::string> argv = {KONU_BIN, "--host-root", root_};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<std::string> env = {"TERM=xterm-256color", "ESCDELAY=25", "LANG=C.UTF-8"};
  if (clockSpeed > 0) env.push_back("KONU_CLOCK_SPEED=" + std::to_string(clockSpeed));
  term.Spawn(argv, env);
}

bool SimHostFixture::WaitUntilWaitingForKey(Terminal& term, int timeoutMs) {
  return term.WaitUntilPolling(timeoutMs);
}

void SimHostFixture::FinishDialogChild(Terminal& term, int expected) {
  ASSERT_TRUE(term.WaitForText("RESULT=" + std::to_string(expected))) << term.Screen();
  ASSERT_TRUE(WaitUntilWaitingForKey(term));
  term.Press("q");
  int status = -1;
  ASSERT_TRUE(term.WaitForExit(5000, &status));
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(expected, WEXITSTATUS(status));
}

bool SimHostFixture::TerminalRestored(const Terminal& term) { return !term.AltScreen() && term.CursorVisible(); }

}  // namespace KonuTest
