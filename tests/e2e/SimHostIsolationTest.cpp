// What the console runs on a simulated host stays in it: the shell's power commands, run the
// way the shutdown screens run them, only mark the simulated host.
#include <gtest/gtest.h>

#include "host/HostRoot.h"
#include "ops/CommandRunner.h"
#include "tests/harness/SimHostFixture.h"

namespace {

class SimHostIsolation : public KonuTest::SimHostFixture {
 protected:
  void SetUp() override {
    SimHostFixture::SetUp();
    Konu::SetHostRoot(Root());
  }
  void TearDown() override {
    Konu::SetHostRoot("/");
    SimHostFixture::TearDown();
  }
};

TEST_F(SimHostIsolation, PoweroffThroughTheShellOnlyMarksTheSimulatedHostOff) {
  ASSERT_EQ("on", State("/power/state"));
  EXPECT_EQ(0, Konu::RunShell("poweroff"));
  EXPECT_EQ("off", State("/power/state"));
  EXPECT_NE(std::string::npos, Journal().find("poweroff")) << Journal();
}

TEST_F(SimHostIsolation, RebootThroughTheShellOnlyMarksTheSimulatedHost) {
  EXPECT_EQ(0, Konu::RunShell("reboot -f"));
  EXPECT_EQ("rebooting", State("/power/state"));
  nlohmann::json history = State("/power/history");
  ASSERT_EQ(1u, history.size());
  EXPECT_EQ("reboot", history[0]["action"]);
  EXPECT_EQ(true, history[0]["forced"]);
}

TEST_F(SimHostIsolation, TheShellFindsNoProgramOutsideTheSimulatedHost) {
  // A command that exists on every real machine but not among the host's tools.
  EXPECT_EQ(127, Konu::RunShell("uname -a"));
  EXPECT_EQ(127, Konu::RunShell("shutdown -h now"));
  EXPECT_EQ("on", State("/power/state"));
}

}  // namespace
