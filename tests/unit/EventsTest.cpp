// Events, audit records and the management interface's name, through a recording host
// backend: the open / add / close round of each event and the messages posted.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/sim/DefaultState.h"
#include "host/sim/SimHost.h"
#include "host/sim/StateFile.h"
#include "ops/Events.h"
#include "ops/HostFacts.h"
#include "tests/unit/OpsTestSupport.h"

namespace Konu {
namespace {

using HostCtl::Lib::HostCtlException;
using OpsTest::CapturedLog;
using OpsTest::LogLine;
using Calls = std::vector<std::string>;

// What the recording host's services were asked, in order, and how they answer.
struct Record {
  Calls calls;
  int initResult = 0;
  bool initThrows = false;
  bool addThrows = false;
  bool auditThrows = false;
  std::string managementName = "nuk0";
  bool updateThrows = false;
  int liveNetworkInfos = 0;
};

class RecordingEventLib : public HostCtl::EventLib {
 public:
  explicit RecordingEventLib(Record& r) : r_(r) {}
  ~RecordingEventLib() override { r_.calls.push_back("destroy"); }
  int ZebUserLib_Init() override {
    r_.calls.push_back("init");
    if (r_.initThrows) throw HostCtlException("observation service unreachable");
    return r_.initResult;
  }
  int ZebUserLib_AddZeb(const std::string& message) override {
    r_.calls.push_back("add " + message);
    if (r_.addThrows) throw HostCtlException("queue full");
    return 0;
  }
  void ZebUserLib_Close() override { r_.calls.push_back("close"); }

 private:
  Record& r_;
};

class RecordingAuditLog : public HostCtl::AuditLog {
 public:
  explicit RecordingAuditLog(Record& r) : r_(r) {}
  void CblAudit_VLog(const std::string& record, const std::string& user, const std::string& origin,
                     int success,
                     const std::vector<std::pair<std::string, std::string>>& attributes) override {
    if (r_.auditThrows) throw HostCtlException("audit log full");
    std::string line =
        "audit " + record + " user=" + user + " origin=[" + origin + "] success=" + std::to_string(success);
    for (const auto& [key, value] : attributes) line += " " + key + "=" + value;
    r_.calls.push_back(line);
  }

 private:
  Record& r_;
};

class RecordingNetworkInfo : public HostCtl::Network::NetworkInfo {
 public:
  explicit RecordingNetworkInfo(Record& r) : r_(r) { ++r_.liveNetworkInfos; }
  ~RecordingNetworkInfo() override { --r_.liveNetworkInfos; }
  void UpdateManagementInterface() override {
    r_.calls.push_back("update");
    if (r_.updateThrows) throw HostCtlException("Unable to get management interface");
    updated_ = true;
  }
  std::string GetManagementInterfaceName() const override { return updated_ ? r_.managementName : ""; }
  std::unique_ptr<HostCtl::Network::NukNic> GetManagementInterface() override { return nullptr; }
  bool IsNukIpv6Enabled() const override { return true; }
  void SetNukIpv6Enabled(bool) override {}
  std::vector<HostCtl::Network::Pnic> GetPnics() const override { return {}; }
  HostCtl::Network::Pnic GetPnic(const std::string&) const override { throw HostCtlException("no such NIC"); }
  void RestoreFactoryNetwork() override {}
  bool CanRestoreFactoryNetwork() const override { return true; }

 private:
  Record& r_;
  bool updated_ = false;
};

// A fresh simulated host whose three services these functions use are recording ones.
struct FreshRoot {
  FreshRoot() { Sim::StateFile(dir.Path()).Write(Sim::DefaultHostState()); }
  KonuTest::TempDir dir;
};

class RecordingHost : private FreshRoot, public HostCtl::Sim::SimHost {
 public:
  RecordingHost() : SimHost(dir.Path()) {}
  std::unique_ptr<HostCtl::Network::NetworkInfo> CreateNetworkInfo() const override {
    return std::make_unique<RecordingNetworkInfo>(record);
  }
  std::unique_ptr<HostCtl::EventLib> CreateEventLib() const override {
    return std::make_unique<RecordingEventLib>(record);
  }
  std::unique_ptr<HostCtl::AuditLog> CreateAuditLog() const override {
    return std::make_unique<RecordingAuditLog>(record);
  }

  mutable Record record;
};

class EventsTest : public ::testing::Test {
 protected:
  void SetUp() override { Runtime::Get().SetHost(&host_); }
  void TearDown() override { Runtime::Get().SetHost(nullptr); }

  Record& R() { return host_.record; }

  RecordingHost host_;
  CapturedLog log_;
};

const LogLine kInitializing{LOG_INFO, "Initializing zebuser library"};

TEST_F(EventsTest, EachEventHasItsOwnOpenAddClose) {
  PostEvent(KonuEvent::RebootHost);
  PostEvent(KonuEvent::LoginFailed, "alice");
  EXPECT_EQ(R().calls,
            (Calls{"init", "add @&!*@*@(zeb.user.konu.reboot.host)Rebooting host", "close", "destroy", "init",
                   "add @&!*@*@(zeb.user.konu.login.failed)Authentication of user alice failed", "close",
                   "destroy"}));
  EXPECT_EQ(log_.Lines(), (std::vector<LogLine>{kInitializing, kInitializing}));
}

TEST_F(EventsTest, EventThatCannotBeOpenedIsSkippedWithItsErrorCode) {
  R().initResult = 7;
  PostEvent(KonuEvent::ShutdownHost);
  EXPECT_EQ(R().calls, (Calls{"init", "destroy"}));
  EXPECT_EQ(log_.Lines(),
            (std::vector<LogLine>{
                kInitializing, {LOG_ERR, "Unable to initialize zebuser library from KONU. Error code: 7"}}));
}

TEST_F(EventsTest, InitReturnsTheLibraryStatus) {
  RecordingEventLib library(R());
  EXPECT_EQ(InitEventLibrary(library), 0);
  R().initResult = -3;
  EXPECT_EQ(InitEventLibrary(library), -3);
  EXPECT_EQ(log_.Count(LOG_ERR, "Unable to initialize zebuser library from KONU. Error code: -3"), 1);
}

TEST_F(EventsTest, FailingLibraryNeverStopsTheOperation) {
  R().initThrows = true;
  EXPECT_NO_THROW(PostEvent(KonuEvent::RestartingHostAgents));
  EXPECT_EQ(R().calls, (Calls{"init", "destroy"}));
  EXPECT_EQ(log_.Count(LOG_ERR, "Unable to initialize zebuser library from KONU. Error code: -1"), 1);

  R() = Record{};
  R().addThrows = true;
  EXPECT_NO_THROW(PostEvent(KonuEvent::RestartingHostAgents));
  EXPECT_EQ(R().calls,
            (Calls{"init", "add @&!*@*@(zeb.user.konu.restarting.hostagents)Restarting host agents", "close",
                   "destroy"}));
}

TEST_F(EventsTest, ArgumentFillsTheTextAndIsNeverAFormat) {
  PostEvent(KonuEvent::NetworkRestart, "nuk0");
  PostEvent(KonuEvent::LoginAccessDenied, "%s%n%x");
  PostEvent(KonuEvent::RestoreFactoryDefaults, "ignored");
  EXPECT_EQ(
      R().calls,
      (Calls{"init", "add @&!*@*@(zeb.user.konu.network.restart)Restarting nuk0", "close", "destroy", "init",
             "add @&!*@*@(zeb.user.konu.login.failed)Access denied for user %s%n%x", "close", "destroy",
             "init", "add @&!*@*@(zeb.user.konu.restore.factory.defaults)Restoring factory defaults", "close",
             "destroy"}));
}

TEST_F(EventsTest, FormatPostsAWholeMessage) {
  PostEvent("@&!*@*@(zeb.user.konu.login.passwd.changed)Login password for user %s changed", "root");
  EXPECT_EQ(
      R().calls,
      (Calls{"init", "add @&!*@*@(zeb.user.konu.login.passwd.changed)Login password for user root changed",
             "close", "destroy"}));
}

TEST(EventTable, EveryEventFollowsTheMarkerConvention) {
  std::set<std::string> texts;
  for (const KonuEventEntry& entry : kKonuEvents) {
    std::string format = EventFormat(entry.name);
    EXPECT_EQ(format, std::string("@&!*@*@(") + entry.id + ")" + entry.text);
    EXPECT_EQ(std::string(entry.id).rfind("zeb.user.konu.", 0), 0u) << entry.id;
    EXPECT_TRUE(texts.insert(entry.text).second) << "text listed twice: " << entry.text;
  }
  EXPECT_EQ(EventFormat(KonuEvent::FactoryNetworkRestored),
            "@&!*@*@(zeb.user.konu.factory.network.restored)Restoring factory network settings");
  EXPECT_EQ(EventFormat(KonuEvent::LoginPasswdChanged),
            "@&!*@*@(zeb.user.konu.login.passwd.changed)Login password for user %s changed");
}

TEST_F(EventsTest, FailedAuditIsLoggedNotThrown) {
  R().auditThrows = true;
  EXPECT_NO_THROW(WriteAudit("login.connect", "root", 1));
  EXPECT_EQ(log_.Count(LOG_ERR, "Unable to write audit record login.connect: audit log full"), 1);
}

TEST_F(EventsTest, ManagementInterfaceNameAsksAFreshObject) {
  EXPECT_EQ(ManagementInterfaceName(), "nuk0");
  R().managementName = "nuk3";
  EXPECT_EQ(ManagementInterfaceName(), "nuk3");
  EXPECT_EQ(R().calls, (Calls{"update", "update"}));
  EXPECT_EQ(R().liveNetworkInfos, 0);
}

TEST_F(EventsTest, ManagementInterfaceNameLetsTheHostErrorThroughAndCleansUp) {
  R().updateThrows = true;
  try {
    ManagementInterfaceName();
    ADD_FAILURE() << "no exception";
  } catch (const HostCtlException& e) {
    EXPECT_STREQ(e.what(), "Unable to get management interface");
  }
  EXPECT_EQ(R().liveNetworkInfos, 0);
}

}  // namespace
}  // namespace Konu
