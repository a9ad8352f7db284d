// The simulated host's state file: atomic locked updates, a missing file named, the fresh
// host's state, and fault matching.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "host/MacAddress.h"
#include "host/sim/DefaultState.h"
#include "host/sim/Faults.h"
#include "host/sim/SimState.h"
#include "host/sim/StateFile.h"
#include "tests/harness/SimHost.h"

namespace {

using Json = nlohmann::json;
using Konu::Sim::StateFile;
using Konu::Sim::StateFileError;
using KonuTest::ReadFileText;
using KonuTest::TempDir;

class HostSimState : public ::testing::Test {
 protected:
  TempDir dir;
  StateFile file{dir.Path()};
};

TEST_F(HostSimState, WriteCreatesTheFileAndUpdateChangesIt) {
  file.Write(Konu::Sim::DefaultHostState());
  EXPECT_EQ(file.Path(), dir.Path() + "/etc/konu-sim/host.json");
  file.Update([](Json& s) { s["power"]["state"] = "off"; });
  EXPECT_EQ(file.Read()["power"]["state"], "off");
  EXPECT_EQ(file.Get("/power/state"), "off");
}

// Asking again about an unchanged file costs no new parse; a change another process makes (by
// rename, as every writer does) is seen on the next read.
TEST_F(HostSimState, AnUnchangedFileIsParsedOnceAndAnotherProcesssChangeIsSeen) {
  file.Write(Konu::Sim::DefaultHostState());
  auto first = file.Snapshot();
  EXPECT_EQ(file.Snapshot().get(), first.get());
  KonuTest::CommandResult r =
      KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "--root", dir.Path(), "set", "/power/state", "\"off\""});
  ASSERT_EQ(r.exitCode, 0) << r.err;
  auto changed = file.Snapshot();
  EXPECT_EQ((*changed)["power"]["state"], "off");
  EXPECT_EQ(file.Snapshot().get(), changed.get());
}

TEST_F(HostSimState, ChangeThatThrowsWritesNothing) {
  file.Write(Konu::Sim::DefaultHostState());
  std::string before = ReadFileText(file.Path());
  EXPECT_THROW(file.Update([](Json& s) {
    s["power"]["state"] = "off";
    throw std::runtime_error("changed my mind");
  }),
               std::runtime_error);
  EXPECT_EQ(ReadFileText(file.Path()), before);
}

TEST_F(HostSimState, MissingFileNamesTheFile) {
  try {
    file.Read();
    FAIL() << "no error for a missing file";
  } catch (const StateFileError& e) {
    EXPECT_NE(std::string(e.what()).find(file.Path()), std::string::npos) << e.what();
  }
}

// (A hand-edited file with a syntax error, named with its place by a read and an update and
// never written over: e2e.HostSimTools.MalformedStateIsNamedByToolsAndControlAndKept.)
TEST_F(HostSimState, GetNamesAnAbsentPointer) {
  file.Write(Konu::Sim::DefaultHostState());
  try {
    file.Get("/network/pnics/nic9");
    FAIL();
  } catch (const StateFileError& e) {
    EXPECT_NE(std::string(e.what()).find("/network/pnics/nic9"), std::string::npos) << e.what();
  }
  EXPECT_THROW(file.Get("no-leading-slash"), StateFileError);
}

// konu-hostsim set in one process and StateFile::Update in this one, both in tight loops,
// with a reader that must never see a torn file: every update of both sides survives.
// The readers' one-walk look-up finds what json_pointer finds, escapes and array indexes
// included, and refuses a malformed pointer the same way.
TEST(HostSimPointer, FindAgreesWithJsonPointer) {
  const nlohmann::json state = nlohmann::json::parse(R"({"a": {"b/c": 1, "d~e": [10, 20, {"f": true}], "": 2},
                                                         "list": [], "n": null, "s": "x"})");
  for (const char* pointer :
       {"", "/a", "/a/b~1c", "/a/d~0e", "/a/d~0e/0", "/a/d~0e/1", "/a/d~0e/2/f", "/a/d~0e/3", "/a/d~0e/-",
        "/a/d~0e/01", "/a/d~0e/x", "/a/", "/a/b", "/list/0", "/n/x", "/s/0", "/missing", "/a/d~0e/2/f/g"}) {
    SCOPED_TRACE(pointer);
    const nlohmann::json::json_pointer reference{std::string(pointer)};
    const nlohmann::json* found = HostCtl::Sim::Find(state, pointer);
    ASSERT_EQ(found != nullptr, state.contains(reference));
    if (found) {
      EXPECT_EQ(found, &state.at(reference));
    }
  }
  for (const char* malformed : {"a", "/a~", "/a~2"})
    EXPECT_THROW(HostCtl::Sim::Find(state, malformed), nlohmann::json::parse_error) << malformed;
}

TEST_F(HostSimState, ConcurrentWritersLoseNoUpdateAndReadersNeverSeeATornFile) {
  Json fresh = Konu::Sim::DefaultHostState();
  fresh["counter"] = 0;
  fresh["fromShell"] = Json::array();
  file.Write(fresh);
  constexpr int kRounds = 150;
  std::string loop = "i=0; while [ $i -lt " + std::to_string(kRounds) + " ]; do '" + KONU_HOSTSIM_BIN +
                     "' --root '" + dir.Path() + "' set /fromShell/- $i || exit 1; i=$((i+1)); done";
  std::atomic<bool> stop{false};
  std::atomic<int> reads{0}, tornReads{0};
  std::thread reader([&] {
    while (!stop) {
      try {
        file.Read();
        ++reads;
      } catch (const StateFileError&) {
        ++tornReads;
      }
    }
  });
  std::thread shell([&] {
    KonuTest::CommandResult r = KonuTest::RunCommandLine({"/bin/sh", "-c", loop});
    EXPECT_EQ(r.exitCode, 0) << r.err;
  });
  for (int i = 0; i < kRounds; ++i) file.Update([](Json& s) { s["counter"] = s["counter"].get<int>() + 1; });
  shell.join();
  stop = true;
  reader.join();

  Json state = file.Read();
  EXPECT_EQ(state["counter"], kRounds);
  ASSERT_EQ(state["fromShell"].size(), static_cast<size_t>(kRounds));
  for (int i = 0; i < kRounds; ++i) EXPECT_EQ(state["fromShell"][i], i);
  EXPECT_EQ(tornReads, 0);
  EXPECT_GT(reads, 0);
}

// The layout written down in DefaultState.h, checked against the fresh state.
TEST(HostSimDefaultState, LayoutPointersExistWithTheirFreshValues) {
  Json s = Konu::Sim::DefaultHostState();
  struct Expect {
    const char* pointer;
    Json value;
  };
  const Expect expected[] = {
      {"/users/root/passwordHash", ""},
      {"/network/managementInterface", "nuk0"},
      {"/network/nukNics/nuk0/ipv4/dhcp", false},
      {"/network/nukNics/nuk0/ipv4/address", "10.0.0.5"},
      {"/network/nukNics/nuk0/ipv4/netmask", "255.255.255.0"},
      {"/network/routing/defaultTcpipStack/ipv4Gateway", "10.0.0.1"},
      {"/network/ipv6Enabled", true},
      {"/keyboard/current", "US Default"},
      {"/advancedOptions/~1UserVars~1KonuTimeOut/value", 600},
      {"/services/SSH/running", false},
      {"/services/OrinShell/running", false},
      {"/lockdown/enabled", false},
      {"/lockdown/possible", true},
      {"/power/state", "on"},
      {"/smartCards/slots/0/token", nullptr},
      {"/faults/tools", Json::object()},
      {"/faults/operations", Json::object()},
      {"/hardware/cpuPackages", 2},
  };
  for (const Expect& e : expected) {
    Json::json_pointer p(e.pointer);
    ASSERT_TRUE(s.contains(p)) << e.pointer;
    EXPECT_EQ(s.at(p), e.value) << e.pointer;
  }
  EXPECT_EQ(s["network"]["pnics"].size(), 4u);
  EXPECT_EQ(s["network"]["vswitches"]["vSwitch0"]["uplinks"].size(), 2u);
  EXPECT_EQ(s["network"]["dns"]["defaultTcpipStack"]["nameServers"].size(), 2u);
  EXPECT_GE(s["network"]["nukNics"]["nuk0"]["ipv6"]["addresses"].size(), 2u);
  EXPECT_EQ(s["vms"].size(), 2u);
  for (const Json& vm : s["vms"]) EXPECT_EQ(vm["powerState"], "poweredOn");
  EXPECT_TRUE(s["keyboard"]["layouts"].is_array());
  EXPECT_FALSE(s.contains("/userOptions/PXEBootEnabled"_json_pointer));
  // The version record's fields must fit their places in the 312-byte record.
  EXPECT_LT(s["version"]["product"].get<std::string>().size(), 32u);
  EXPECT_LT(s["version"]["version"].get<std::string>().size(), 64u);
  EXPECT_LT(s["version"]["kernelVersion"].get<std::string>().size(), 32u);
  EXPECT_LT(s["version"]["build"].get<std::string>().size(), 312u - 128u);

  // Neutral names only: every MAC address locally administered and unicast (first byte
  // x2, x6, xa or xe), so none is a vendor's, and the NICs on generic Linux drivers.
  std::vector<std::string> macs;
  std::function<void(const Json&)> collect = [&](const Json& node) {
    for (const auto& [key, value] : node.items()) {
      if (key == "mac") macs.push_back(value.get<std::string>());
      if (value.is_structured()) collect(value);
    }
  };
  collect(s);
  EXPECT_EQ(macs.size(), 5u);
  for (const std::string& mac : macs) {
    HostCtl::Network::MacAddress address;
    ASSERT_TRUE(address.SetAddress(mac)) << mac;
    EXPECT_EQ(address.GetBinaryAddress()[0] & 0x03, 0x02) << mac;
  }
  for (const auto& [name, nic] : s["network"]["pnics"].items())
    EXPECT_TRUE(nic["driver"] == "virtio_net" || nic["driver"] == "veth") << name << ": " << nic["driver"];
}

Json WithFaults(Json tools) {
  Json s = Konu::Sim::DefaultHostState();
  s["faults"]["tools"] = std::move(tools);
  return s;
}

TEST(HostSimFaults, WordsMatchInOrderAndTheEntryWithMostWordsWins) {
  Json s = WithFaults({{"qal-cmd", {{"exitCode", 1}}},
                       {"qal-cmd qalsvc/auth/lockdown_mode_enter", {{"exitCode", 2}}},
                       {"SSH status", {{"exitCode", 3}}}});
  using V = std::vector<std::string>;
  EXPECT_EQ(Konu::Sim::MatchingFaultKey(s, V{"qal-cmd", "-U", "root", "qalsvc/auth/lockdown_mode_enter"}),
            "qal-cmd qalsvc/auth/lockdown_mode_enter");
  EXPECT_EQ(Konu::Sim::MatchingFaultKey(s, V{"qal-cmd", "-U", "root", "hostsvc/start_ssh"}), "qal-cmd");
  EXPECT_EQ(Konu::Sim::MatchingFaultKey(s, V{"SSH", "status"}), "SSH status");
  EXPECT_FALSE(Konu::Sim::MatchingFaultKey(s, V{"SSH", "start"}));
  EXPECT_FALSE(Konu::Sim::MatchingFaultKey(s, V{"status", "SSH"}));
  EXPECT_FALSE(Konu::Sim::MatchingFaultKey(s, V{"OrinShell", "status"}));
}

}  // namespace
