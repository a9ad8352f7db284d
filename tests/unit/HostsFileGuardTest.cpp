// The hosts file set aside by the network test: the host's names taken out line by line,
// and the file put back byte for byte, or left alone when no backup could be made.
#include <gtest/gtest.h>

#include "network/HostsFileGuard.h"
#include "tests/unit/OpsTestSupport.h"

namespace Konu {
namespace {

TEST(HostsFileGuard, TakesOutTheNamesAndLinesLeftWithoutOne) {
  const std::vector<std::string> names = {"konu-host", "Konu-Host.example.test"};
  struct Case {
    const char* text;
    const char* expected;
  } cases[] = {
      {"127.0.0.1\tlocalhost\n", "127.0.0.1\tlocalhost\n"},
      {"10.0.0.5\tkonu-host.example.test\tkonu-host\n", ""},
      {"10.0.0.5 konu-host other # note\n", "10.0.0.5\tother # note\n"},
      {"# konu-host\n::1 localhost\n10.0.0.5 KONU-HOST", "# konu-host\n::1 localhost"},
  };
  for (const Case& c : cases) EXPECT_EQ(HostsFileGuard::WithoutNames(c.text, names), c.expected) << c.text;
}

TEST(HostsFileGuard, PutsTheFileBackOrLeavesItAloneWithoutABackup) {
  OpsTest::CapturedLog log;
  OpsTest::SimulatedRoot root;
  std::filesystem::create_directories(root / "/etc");
  const std::string original = "127.0.0.1 localhost\n10.0.0.5 konu-host.example.test konu-host\n";
  std::ofstream(root / "/etc/hosts") << original;
  {
    HostsFileGuard guard({"konu-host.example.test", "konu-host"});
    EXPECT_EQ(OpsTest::ReadFile(root / "/etc/hosts"), "127.0.0.1 localhost\n");
  }
  EXPECT_EQ(OpsTest::ReadFile(root / "/etc/hosts"), original);
  EXPECT_EQ(OpsTest::ReadFile(root / "/etc/hosts.backup"), original);

  std::filesystem::remove(root / "/etc/hosts");
  { HostsFileGuard guard({"konu-host"}); }
  EXPECT_FALSE(std::filesystem::exists(root / "/etc/hosts"));
  EXPECT_EQ(log.Count(LOG_ERR, "failed to backup /etc/hosts: No such file or directory"), 1)
      << log.Lines().size();
  EXPECT_EQ(log.Count(LOG_ERR, "failed to restore /etc/hosts: No such file or directory"), 0);
}

}  // namespace
}  // namespace Konu
