// The pager run against a stand-in "/bin/less": its arguments, LESSSECURE while it runs and
// afterwards, and a pager that cannot start.
#include <gtest/gtest.h>
#include <syslog.h>

#include <cstdlib>
#include <optional>

#include "ops/Pager.h"
#include "tests/unit/OpsTestSupport.h"

namespace Konu {
namespace {

using OpsTest::CapturedLog;
using OpsTest::ReadFile;
using OpsTest::SimulatedRoot;

std::optional<std::string> SecureVariable() {
  const char* value = getenv("LESSSECURE");
  return value ? std::optional<std::string>(value) : std::nullopt;
}

TEST(Pager, RunsLessSecurelyAndPutsLessSecureBackAsItWas) {
  struct Case {
    std::optional<std::string> before;
    std::string after;
  };
  for (const Case& c : {Case{std::nullopt, ""}, Case{"0", "0"}}) {
    SimulatedRoot root;
    root.AddScript("/bin/less",
                   "printf '%s|' \"${LESSSECURE-unset}\" \"$@\" > '" + root.Path() + "/args'\nexit 3\n");
    if (c.before) {
      setenv("LESSSECURE", c.before->c_str(), 1);
    } else {
      unsetenv("LESSSECURE");
    }
    EXPECT_EQ(ViewInPager("/var/log/syslog.log"), 3);
    EXPECT_EQ(ReadFile(root.Path() + "/args"),
              "1|-cfP|<Q> Quit </> RegExp Search <H> Help|" + root.Path() + "/var/log/syslog.log|");
    EXPECT_EQ(SecureVariable(), std::optional<std::string>(c.after)) << "unset before: set and empty after";
  }
  unsetenv("LESSSECURE");
}

TEST(Pager, APagerThatCannotStartReturnsAtOnceAndIsLogged) {
  SimulatedRoot root;  // no /bin/less
  CapturedLog log;
  unsetenv("LESSSECURE");
  EXPECT_EQ(ViewInPager("/var/log/syslog.log"), -1);
  EXPECT_EQ(SecureVariable(), std::optional<std::string>(""));
  ASSERT_EQ(log.Lines().size(), 1u);
  EXPECT_EQ(log.Lines()[0].priority, LOG_ERR);
  EXPECT_NE(log.Lines()[0].text.find("Cannot start the pager /bin/less"), std::string::npos);
  unsetenv("LESSSECURE");
}

}  // namespace
}  // namespace Konu
