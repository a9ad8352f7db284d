// Start-up pieces that need no terminal: options, the VT argument, the clocks and the idle
// time-out read. (The pid file: e2e.Startup.StalePidFileIsOverwrittenAndALiveOneLeftAlone.)
#include <gtest/gtest.h>
#include <signal.h>
#include <syslog.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

#include "app/Clock.h"
#include "app/Console.h"
#include "app/Runtime.h"
#include "app/Session.h"
#include "host/Log.h"
#include "host/sim/DefaultState.h"
#include "host/sim/SimHost.h"
#include "host/sim/StateFile.h"
#include "tests/unit/OpsTestSupport.h"

namespace {

using LogCapture = Konu::OpsTest::CapturedLog;

TEST(ConsoleOptions, HostRootFromOptionOrEnvironmentAndTheFirstFreeArgumentIsTheVt) {
  char prog[] = "konu", opt[] = "--host-root", dir[] = "/tmp/h", vt[] = "7", extra[] = "9";
  char* argv[] = {prog, opt, dir, vt, extra};
  auto o = Konu::ParseConsoleOptions(5, argv, nullptr);
  EXPECT_EQ("/tmp/h", o.hostRoot);
  ASSERT_NE(nullptr, o.vtArgument);
  EXPECT_STREQ("7", o.vtArgument);
  EXPECT_TRUE(o.error.empty());

  char* argv2[] = {prog};
  EXPECT_EQ("/srv/sim", Konu::ParseConsoleOptions(1, argv2, "/srv/sim").hostRoot);
  EXPECT_EQ("/", Konu::ParseConsoleOptions(1, argv2, nullptr).hostRoot);
  EXPECT_EQ("/", Konu::ParseConsoleOptions(1, argv2, "").hostRoot);

  char* argv3[] = {prog, opt, dir};
  EXPECT_EQ("/tmp/h", Konu::ParseConsoleOptions(3, argv3, "/srv/sim").hostRoot) << "the option wins";
}

TEST(ConsoleOptions, BadOptionsAreReportedNotIgnored) {
  char prog[] = "konu", opt[] = "--host-root", bogus[] = "--verbose", help[] = "--help", empty[] = "",
       emptyJoined[] = "--host-root=";
  char* missing[] = {prog, opt};
  char* emptyValue[] = {prog, opt, empty};
  char* emptyAfterEquals[] = {prog, emptyJoined};
  for (char** argv : {missing, emptyValue, emptyAfterEquals}) {
    int argc = argv == emptyValue ? 3 : 2;
    EXPECT_NE(std::string::npos, Konu::ParseConsoleOptions(argc, argv, nullptr).error.find("--host-root"))
        << argc;
  }
  char* unknown[] = {prog, bogus};
  EXPECT_NE(std::string::npos, Konu::ParseConsoleOptions(2, unknown, nullptr).error.find("'--verbose'"));
  char* h[] = {prog, help};
  EXPECT_TRUE(Konu::ParseConsoleOptions(2, h, nullptr).help);
}

TEST(VirtualTerminalArgument, OneToSixtyThreeSelectAndEverythingElseIsLogged) {
  LogCapture log;
  EXPECT_EQ(0, Konu::ParseVirtualTerminal(nullptr));
  EXPECT_TRUE(log.Lines().empty());
  EXPECT_EQ(1, Konu::ParseVirtualTerminal("1"));
  EXPECT_EQ(63, Konu::ParseVirtualTerminal("63"));
  EXPECT_TRUE(log.Lines().empty());
  for (const char* bad : {"0", "64", "abc", "-3"}) {
    EXPECT_EQ(0, Konu::ParseVirtualTerminal(bad)) << bad;
    EXPECT_TRUE(log.Has(std::string("Invalid VT specified for KONU: ") + bad)) << bad;
  }
}

TEST(Clock, ScaledClockRunsFasterAndShortensRealWaits) {
  Konu::SystemClock real;
  Konu::ScaledClock fast(1000);
  timeval minute{60, 0};
  EXPECT_EQ(60000, real.RealMilliseconds(minute));
  EXPECT_EQ(60, fast.RealMilliseconds(minute));
  EXPECT_EQ(1, real.RealMilliseconds(timeval{0, 1})) << "rounded up, never a busy zero";
  EXPECT_EQ(0, real.RealMilliseconds(timeval{-1, 0}));

  timeval a = fast.Now();
  usleep(20000);
  timeval b = fast.Now();
  double elapsed = (b.tv_sec - a.tv_sec) + (b.tv_usec - a.tv_usec) / 1e6;
  EXPECT_GT(elapsed, 15.0) << "20 ms of real time is about 20 s of the scaled clock";
}

class IdleTimeout : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = dir_.Path();
    Konu::Sim::StateFile(root_).Write(Konu::Sim::DefaultHostState());
    host_ = std::make_unique<HostCtl::Sim::SimHost>(root_);
    Konu::Runtime::Get().SetHost(host_.get());
  }
  void TearDown() override {
    Konu::Runtime::Get().SetHost(nullptr);
    Konu::Runtime::Get().session = Konu::Session{};
  }
  void Set(const std::string& pointer, const nlohmann::json& value) {
    Konu::Sim::StateFile(root_).Update(
        [&](nlohmann::json& s) { s[nlohmann::json::json_pointer(pointer)] = value; });
  }
  KonuTest::TempDir dir_;
  std::string root_;
  std::unique_ptr<HostCtl::Sim::SimHost> host_;
};

TEST_F(IdleTimeout, ReadFromTheAdvancedOptionWithSixHundredAsTheFallback) {
  const std::string option = "/advancedOptions/~1UserVars~1KonuTimeOut";
  Set(option + "/value", 30);
  EXPECT_EQ(30u, Konu::GetKonuTimeout());
  Set(option + "/value", 0);
  EXPECT_EQ(0u, Konu::GetKonuTimeout());

  Set(option, {{"type", "string"}, {"value", "30"}, {"default", "600"}});
  EXPECT_EQ(600u, Konu::GetKonuTimeout()) << "not an integer option";

  Konu::Sim::StateFile(root_).Update(
      [&](nlohmann::json& s) { s["advancedOptions"].erase("/UserVars/KonuTimeOut"); });
  EXPECT_EQ(600u, Konu::GetKonuTimeout()) << "missing option";
}

TEST_F(IdleTimeout, ANewLoginReadsTheOptionAgain) {
  const std::string value = "/advancedOptions/~1UserVars~1KonuTimeOut/value";
  Set(value, 120);
  Konu::SetSessionActive(true);
  EXPECT_EQ(120u, Konu::Runtime::Get().session.idleTimeout);
  Konu::SetSessionActive(false);
  Set(value, 300);
  EXPECT_EQ(120u, Konu::Runtime::Get().session.idleTimeout) << "read only at login";
  Konu::SetSessionActive(true);
  EXPECT_EQ(300u, Konu::Runtime::Get().session.idleTimeout);
  EXPECT_TRUE(Konu::Runtime::Get().session.active);
}

}  // namespace
