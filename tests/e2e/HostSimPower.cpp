// poweroff, reboot and the card reader of a simulated host: they mark the host and signal the
// console of that host through its pid file, and no other process.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "host/sim/StateFile.h"
#include "tests/harness/SimHost.h"

namespace {

using Json = nlohmann::json;
using KonuTest::CommandResult;
using KonuTest::ReadFileText;
using KonuTest::SimHost;
using KonuTest::TempDir;

// A stand-in console: a shell started under the name "konu" with the host root among its
// arguments, as `konu --host-root DIR` would be. It notes each SIGUSR1 and exits 0 on SIGTERM.
class FakeConsole {
 public:
  FakeConsole(const std::string& name, const std::string& root) : notes_(dir_.Path() + "/notes") {
    std::string program = dir_.Path() + "/" + name;
    if (symlink("/bin/sh", program.c_str()) != 0) throw std::runtime_error("symlink failed");
    std::string script = "trap 'echo USR1 >> " + notes_ + "' USR1; trap 'echo TERM >> " + notes_ +
                         "; exit 0' TERM; echo ready > " + notes_ + "; while :; do sleep 0.02; done";
    std::string rootArg = "--host-root=" + root;
    char* argv[] = {program.data(), const_cast<char*>("-c"),
                    script.data(),  const_cast<char*>("konu"),
                    rootArg.data(), nullptr};
    char* envp[] = {const_cast<char*>("PATH=/usr/bin:/bin"), nullptr};
    if (posix_spawn(&pid_, program.c_str(), nullptr, nullptr, argv, envp) != 0)
      throw std::runtime_error("spawn failed");
    KonuTest::WaitFor([&] { return Notes().find("ready") != std::string::npos; });
  }
  ~FakeConsole() {
    if (pid_ > 0 && !reaped_) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
  }
  FakeConsole(const FakeConsole&) = delete;
  FakeConsole& operator=(const FakeConsole&) = delete;

  pid_t Pid() const { return pid_; }
  std::string Notes() const { return ReadFileText(notes_); }
  void WritePidFile(const SimHost& host) const {
    std::ofstream(host.File("/var/run/konu.pid"), std::ios::trunc) << pid_ << "\n";
  }
  // True when it exited 0 after a SIGTERM within the deadline.
  bool EndedBySigterm() {
    int status = 0;
    bool ended = KonuTest::WaitFor([&] { return waitpid(pid_, &status, WNOHANG) == pid_; });
    reaped_ = ended;
    return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
           Notes().find("TERM") != std::string::npos;
  }
  bool StillRunning() const { return kill(pid_, 0) == 0 && Notes().find("TERM") == std::string::npos; }

 private:
  TempDir dir_;
  std::string notes_;
  pid_t pid_ = 0;
  bool reaped_ = false;
};

class HostSimPower : public ::testing::Test {
 protected:
  SimHost host{KONU_HOSTSIM_BIN};
  Konu::Sim::StateFile state{host.Root()};

  // "poweroff" or "reboot" as the console starts them: /bin/sh -c with only the host's tool
  // folders on PATH.
  CommandResult Shell(const std::string& command) {
    return KonuTest::RunCommandLine(
        {host.File("/bin/sh"), "-c", command},
        {"PATH=" + host.Root() + "/bin:" + host.Root() + "/sbin", "PYTHONHOME=/"});
  }
  Json LastJournal() {
    std::string text = ReadFileText(host.File("/var/log/hostsim.log"));
    std::string last = text.substr(text.rfind('\n', text.size() - 2) + 1);
    return Json::parse(last);
  }
};

TEST_F(HostSimPower, PoweroffMarksTheHostOffAndEndsItsConsole) {
  // The command must resolve to the simulated tool, never the machine's own.
  ASSERT_EQ(access(host.File("/bin/poweroff").c_str(), X_OK), 0);
  FakeConsole console("konu", host.Root());
  console.WritePidFile(host);
  CommandResult r = Shell("poweroff");
  EXPECT_EQ(r.exitCode, 0) << r.err;
  EXPECT_EQ(state.Get("/power/state"), "off");
  EXPECT_EQ(state.Get("/power/history"), Json::parse(R"([{"action": "poweroff", "forced": false}])"));
  EXPECT_EQ(LastJournal()["argv"], Json({"poweroff"}));
  EXPECT_EQ(LastJournal()["exit"], 0);
  EXPECT_TRUE(console.EndedBySigterm()) << console.Notes();
}

TEST_F(HostSimPower, RebootAndForcedRebootAreToldApart) {
  state.Update([](Json& s) { s["network"]["ipv6EnabledAfterReboot"] = false; });
  EXPECT_EQ(state.Get("/network/ipv6Enabled"), true);
  EXPECT_EQ(Shell("reboot").exitCode, 0);
  EXPECT_EQ(state.Get("/power/state"), "rebooting");
  EXPECT_EQ(state.Get("/network/ipv6Enabled"), false) << "the host boots with the IPv6 setting chosen for it";
  EXPECT_EQ(Shell("reboot -f").exitCode, 0);
  EXPECT_EQ(state.Get("/power/history/1"), (Json{{"action", "reboot"}, {"forced", true}}));
  EXPECT_EQ(LastJournal()["argv"], Json({"reboot", "-f"}));
  EXPECT_NE(Shell("reboot --now").exitCode, 0);
}

TEST_F(HostSimPower, WithoutAConsoleTheHostStillGoesDown) {
  CommandResult r = Shell("poweroff");
  EXPECT_EQ(r.exitCode, 0);
  EXPECT_NE(r.err.find("konu.pid"), std::string::npos) << r.err;
  EXPECT_EQ(state.Get("/power/state"), "off");
}

// A stale pid file must never make poweroff kill an unrelated process.
TEST_F(HostSimPower, PidOfAnotherProgramIsNotSignalled) {
  FakeConsole other("not-konu", host.Root());
  other.WritePidFile(host);
  CommandResult r = Shell("poweroff");
  EXPECT_EQ(r.exitCode, 0);
  EXPECT_NE(r.err.find("not konu"), std::string::npos) << r.err;
  EXPECT_TRUE(other.StillRunning());
}

TEST_F(HostSimPower, ConsoleOfAnotherHostIsNotSignalled) {
  SimHost otherHost{KONU_HOSTSIM_BIN};
  FakeConsole console("konu", otherHost.Root());
  console.WritePidFile(host);
  EXPECT_EQ(Shell("reboot").exitCode, 0);
  EXPECT_EQ(state.Get("/power/state"), "rebooting");
  EXPECT_TRUE(console.StillRunning());
  Konu::Sim::StateFile otherState(otherHost.Root());
  EXPECT_EQ(otherState.Get("/power/state"), "on");
}

TEST_F(HostSimPower, CardInsertAndRemoveNotifyTheConsole) {
  FakeConsole console("konu", host.Root());
  console.WritePidFile(host);
  CommandResult in = host.Control({"card", "insert", "alice"});
  EXPECT_EQ(in.exitCode, 0) << in.err;
  EXPECT_EQ(state.Get("/smartCards/slots/0/token"), (Json{{"userId", "alice"}}));
  ASSERT_TRUE(KonuTest::WaitFor([&] { return console.Notes().find("USR1") != std::string::npos; }));
  EXPECT_EQ(host.Control({"card", "remove"}).exitCode, 0);
  EXPECT_TRUE(state.Get("/smartCards/slots/0/token").is_null());
  EXPECT_TRUE(KonuTest::WaitFor([&] {
    std::string notes = console.Notes();
    return notes.find("USR1") != notes.rfind("USR1");
  })) << console.Notes();
  EXPECT_TRUE(console.StillRunning());
  EXPECT_EQ(host.Control({"card", "insert"}).exitCode, 2);
  EXPECT_EQ(host.Control({"card", "eject"}).exitCode, 2);
}

}  // namespace
