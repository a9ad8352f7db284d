// konu-hostsim's control command: get, set, unset, journal and help, with clear refusals.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "tests/harness/SimHost.h"

namespace {

using Json = nlohmann::json;
using KonuTest::CommandResult;
using KonuTest::ReadFileText;
using KonuTest::SimHost;

class HostSimControl : public ::testing::Test {
 protected:
  SimHost host{KONU_HOSTSIM_BIN};
  Json Get(const std::string& pointer) {
    CommandResult r = host.Control({"get", pointer});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    return Json::parse(r.out);
  }
};

TEST_F(HostSimControl, SetReplacesAddsAndAppends) {
  EXPECT_EQ(host.Control({"set", "/host/hostname", "\"konu-lab-7\""}).exitCode, 0);
  EXPECT_EQ(Get("/host/hostname"), "konu-lab-7");
  EXPECT_EQ(host.Control({"set", "/userOptions/PXEBootEnabled", "true"}).exitCode, 0);
  struct stat file {};
  ASSERT_EQ(stat(host.File("/etc/konu-sim/host.json").c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777, 0600u) << "the state holds secrets: its owner's only";
  EXPECT_EQ(Get("/userOptions/PXEBootEnabled"), true);
  EXPECT_EQ(host.Control({"set", "/network/reachable/-", "\"192.0.2.1\""}).exitCode, 0);
  EXPECT_EQ(Get("/network/reachable").back(), "192.0.2.1");
  EXPECT_EQ(host.Control({"set", "/faults/tools/qal-cmd", R"({"exitCode": 1, "times": 2})"}).exitCode, 0);
  EXPECT_EQ(Get("/faults/tools/qal-cmd/times"), 2);
  EXPECT_EQ(host.Control({"unset", "/userOptions/PXEBootEnabled"}).exitCode, 0);
  EXPECT_EQ(host.Control({"get", "/userOptions/PXEBootEnabled"}).exitCode, 2);
  EXPECT_EQ(host.Control({"unset", "/vms/0"}).exitCode, 0);
  EXPECT_EQ(Get("/vms").size(), 1u);
}

TEST_F(HostSimControl, BadRequestsExitTwoAndChangeNothing) {
  std::string before = ReadFileText(host.File("/etc/konu-sim/host.json"));
  struct Case {
    std::vector<std::string> args;
    const char* message;
  };
  const Case cases[] = {
      {{"get", "/network/nukNics/nuk9"}, "/network/nukNics/nuk9"},
      {{"get", "network"}, "bad JSON pointer"},
      {{"set", "/host/hostname", "unquoted text"}, "not JSON"},
      {{"set", "/no/such/parent", "1"}, "/no/such"},
      {{"set", "/vms/7", "{}"}, "/vms/7"},
      {{"set", "", "{}"}, "whole state"},
      {{"unset", "/host/nothing"}, "/host/nothing"},
      {{"frobnicate"}, "unknown"},
      {{"get"}, "incomplete"},
  };
  for (const Case& c : cases) {
    CommandResult r = host.Control(c.args);
    EXPECT_EQ(r.exitCode, 2) << c.args[0];
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
  }
  EXPECT_EQ(ReadFileText(host.File("/etc/konu-sim/host.json")), before);
}

TEST_F(HostSimControl, MalformedStateIsNamedAndKept) {
  std::string path = host.File("/etc/konu-sim/host.json");
  { std::ofstream(path, std::ios::trunc) << "{\n\"power\": {\"state\": on}\n}\n"; }
  for (const auto& args : {std::vector<std::string>{"get", "/power/state"},
                           std::vector<std::string>{"set", "/power/state", "\"off\""}}) {
    CommandResult r = host.Control(args);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find(path), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("line 2"), std::string::npos) << r.err;
  }
  EXPECT_EQ(ReadFileText(path), "{\n\"power\": {\"state\": on}\n}\n");
}

TEST_F(HostSimControl, JournalListsToolRuns) {
  EXPECT_EQ(host.Control({"journal"}).out, "");
  host.Tool("/bin/qal-cmd", {"-U", "root", "qalsvc/auth/lockdown_is_enabled"});
  host.Tool("/sbin/backup.sh");
  CommandResult text = host.Control({"journal"});
  EXPECT_EQ(text.exitCode, 0);
  EXPECT_NE(text.out.find("qal-cmd -U root qalsvc/auth/lockdown_is_enabled  (user root, exit 0)"),
            std::string::npos)
      << text.out;
  CommandResult json = host.Control({"journal", "--json"});
  std::istringstream lines(json.out);
  std::string line;
  std::vector<Json> parsed;
  while (std::getline(lines, line)) parsed.push_back(Json::parse(line));
  ASSERT_EQ(parsed.size(), 2u);
  EXPECT_EQ(parsed[1]["argv"], Json({"backup.sh"}));
}

TEST(HostSimCommand, HelpAndUsageErrors) {
  CommandResult help = KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_NE(help.out.find("konu-hostsim create DIR"), std::string::npos);
  EXPECT_EQ(KonuTest::RunCommandLine({KONU_HOSTSIM_BIN}).exitCode, 2);
  EXPECT_EQ(KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "--bogus"}).exitCode, 2);
  EXPECT_EQ(KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "create"}).exitCode, 2);
  EXPECT_EQ(KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "--root"}).exitCode, 2);
  EXPECT_EQ(KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "--tool", "/tmp", "no-such-tool"}).exitCode, 127);
}

}  // namespace
