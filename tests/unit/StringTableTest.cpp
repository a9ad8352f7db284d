// The string table: ids, aliases, empty ids, the factory accessor and the product line.
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "app/Runtime.h"
#include "host/HostCtlException.h"
#include "host/sim/SimHost.h"
#include "tests/harness/SimHostFixture.h"
#include "ui/strings/ProductLine.h"
#include "ui/strings/StringFactory.h"
#include "ui/strings/StringTable.h"

namespace Konu {
namespace {

// Restores the built-in reader (and forgets the line) when a test ends.
class ReaderGuard {
 public:
  explicit ReaderGuard(VersionRecordReader reader) { SetVersionRecordReader(std::move(reader)); }
  ~ReaderGuard() { SetVersionRecordReader({}); }
  ReaderGuard(const ReaderGuard&) = delete;
  ReaderGuard& operator=(const ReaderGuard&) = delete;
};

VersionRecord Record(const char* name, const char* version, const char* kernel, const char* build) {
  VersionRecord record{};
  std::strcpy(record.data(), name);
  std::strcpy(record.data() + 32, version);
  std::strcpy(record.data() + 96, kernel);
  std::strcpy(record.data() + 128, build);
  return record;
}

// Must stay the first test to touch the accessor: the factory is created once per process.
TEST(StringFactoryAccess, OtherLocaleBeforeEnglishGivesNullThenEnglishForAny) {
  EXPECT_EQ(StringFactory::Get("de_DE"), nullptr);
  EXPECT_EQ(StringFactory::Get("en_US.UTF-8"), nullptr);
  const StringFactory* english = StringFactory::Get("en_US");
  ASSERT_NE(english, nullptr);
  EXPECT_STREQ(english->GetString(4), "System Customization");
  EXPECT_EQ(StringFactory::Get("en_US"), english);
  EXPECT_EQ(StringFactory::Get("de_DE"), english);
  EXPECT_EQ(StringFactory::Get(nullptr), english);
}

TEST(StringLookup, IdsPastTheEndAndIdThreeAreEmpty) {
  en_US_Factory factory;
  for (uint32_t id : {267u, 268u, 1000u, 0x80000000u, 4294967295u, 3u}) {
    const char* text = factory.GetString(id);
    ASSERT_NE(text, nullptr) << id;
    EXPECT_STREQ(text, "") << id;
  }
  EXPECT_STRNE(factory.GetString(266), "");
}

TEST(StringLookup, EveryIdButThreeHasText) {
  ReaderGuard guard([] { return Record("KONU-Orin", "8.0.3", "8.0.3", "24414501"); });
  en_US_Factory factory;
  for (uint32_t id = 0; id <= 266; ++id) {
    const char* text = factory.GetString(id);
    ASSERT_NE(text, nullptr) << id;
    if (id != 3) {
      EXPECT_GT(std::strlen(text), 0u) << id;
    }
  }
}

TEST(StringLookup, SampleTextsAsWritten) {
  en_US_Factory factory;
  struct Sample {
    uint32_t id;
    const char* text;
  };
  const Sample samples[] = {
      {0, "Customize System/View Logs"},
      {7, "Configure Management Network"},
      {44, "Configure Management Network"},
      {23, "To view or modify this host's management network settings in detail, press <Enter>."},
      {27, "Press the corresponding key to view a log.\nPress <Q> to return to this screen."},
      {129, "IP address is "},
      {137, "Enter an authorized login name and password for "},
      {148, "Password has expired.\nYou will be prompted to set a new password and then login again."},
      {185, "Restore to default blocked setting (unblocked) "},
      {238,
       "{color:red}Warning! Restarting the management agents will disconnect all remote management "
       "software. This will affect all running services.\nCollection of extra troubleshooting "
       "information can take a noticeable amount of time.{/color}"},
      {259,
       "Set the number of minutes that can elapse before you must log in after Orin Shell is enabled "
       "(the availability timeout) and the timeout for idle interactive sessions.\n\nAfter the "
       "availability timeout expires any running shell instances will remain, but new sessions will "
       "not be allowed.  Changes to idle timeout will apply on next login, but will not affect any "
       "existing sessions.\n\nValues are in minutes. Use zero to disable timeouts. Maximum value is "
       "1440 minutes."},
      {266, "KONU idle timeout"},
  };
  for (const Sample& sample : samples) EXPECT_STREQ(factory.GetString(sample.id), sample.text) << sample.id;
  // The line breaks are real newlines, not a backslash and an n.
  EXPECT_EQ(std::strchr(factory.GetString(24), '\\'), nullptr);
  EXPECT_NE(std::strstr(factory.GetString(24), "lease.\n\nRestarting"), nullptr);
}

TEST(StringLookup, AliasesShowTheSameTextAsTheirId) {
  en_US_Factory factory;
  const std::pair<uint32_t, uint32_t> aliases[] = {
      {44, 7},  {62, 10}, {69, 45},  {93, 47},  {98, 48},  {116, 51}, {125, 8}, {130, 64},
      {149, 5}, {161, 1}, {173, 14}, {188, 65}, {200, 63}, {208, 9},  {245, 6},
  };
  for (auto [alias, id] : aliases) {
    EXPECT_STREQ(factory.GetString(alias), factory.GetString(id)) << alias << " / " << id;
    EXPECT_EQ(factory.GetString(alias), factory.GetString(id)) << alias << " shares the storage of " << id;
  }
  int aliasRows = 0;
  for (const StringEntry& row : StringTable()) aliasRows += row.sameAs >= 0;
  EXPECT_EQ(aliasRows, 15);
  EXPECT_STREQ(factory.GetString(149), "Configure Password");
  EXPECT_STREQ(factory.GetString(245), "Configure Lockdown Mode");
}

TEST(ProductLine, OtherExceptionsPassToTheCaller) {
  ReaderGuard guard([]() -> VersionRecord { throw std::logic_error("not a host failure"); });
  en_US_Factory factory;
  EXPECT_THROW(factory.GetString(2), std::logic_error);
}

TEST(ProductLine, FieldsEndAtTheirTerminatorOrWidth) {
  VersionRecord record{};
  std::memset(record.data(), 'N', 32);               // product name fills its field, no terminator
  std::memset(record.data() + 32, 'V', 64);          // so does the version
  std::memset(record.data() + 96, 'K', 32);          // and the kernel version
  std::memset(record.data() + 128, 'B', 312 - 128);  // the build number runs to the end
  EXPECT_EQ(FormatProductLine(record), std::string(32, 'N') + " " + std::string(64, 'V') + " (NuKernel " +
                                           std::string(32, 'K') + " Build " + std::string(184, 'B') + ")");
  record = Record("", "", "", "");
  EXPECT_EQ(FormatProductLine(record), "  (NuKernel  Build )");
}

// The reader the console uses: the version record of the runtime's host backend, read once;
// a host failure gives an empty line and the next call reads again.
class ProductLineFromHost : public KonuTest::SimHostFixture {
 protected:
  void SetUp() override {
    KonuTest::SimHostFixture::SetUp();
    host_ = std::make_unique<HostCtl::Sim::SimHost>(Root());
    Runtime::Get().SetHost(host_.get());
    SetVersionRecordReader({});
  }
  void TearDown() override {
    SetVersionRecordReader({});
    Runtime::Get().SetHost(nullptr);
    KonuTest::SimHostFixture::TearDown();
  }

 private:
  std::unique_ptr<HostCtl::Sim::SimHost> host_;
};

TEST_F(ProductLineFromHost, ReadOnceFromTheVersionRecord) {
  SetState("/version/product", "KONU-Orin");
  SetState("/version/version", "8.0.3");
  SetState("/version/kernelVersion", "8.0.3");
  SetState("/version/build", "24414501");
  en_US_Factory factory;
  EXPECT_STREQ(factory.GetString(2), "KONU-Orin 8.0.3 (NuKernel 8.0.3 Build 24414501)");
  EXPECT_EQ(std::string(factory.GetString(2)), ProductLine());  // as the test fixture reads the record
  SetState("/version/build", "99999999");  // an update while running shows after a restart
  EXPECT_STREQ(factory.GetString(2), "KONU-Orin 8.0.3 (NuKernel 8.0.3 Build 24414501)");
}

TEST_F(ProductLineFromHost, HostFailureShowsEmptyUntilARetrySucceeds) {
  std::string expected = ProductLine();  // the fixture's line for this host's state
  SetState("/faults/operations/SysinfoUtil.SysinfoGet", "Unable to read node system.version");
  en_US_Factory factory;
  EXPECT_STREQ(factory.GetString(2), "");
  EXPECT_STREQ(factory.GetString(2), "");
  SetState("/faults/operations/SysinfoUtil.SysinfoGet", nullptr);
  EXPECT_EQ(factory.GetString(2), expected);
}

}  // namespace
}  // namespace Konu
