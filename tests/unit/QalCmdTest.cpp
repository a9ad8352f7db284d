// qal-cmd calls through a fake tool in a temporary simulated root: the one fallback to the
// service account and boolean queries.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/Runtime.h"
#include "ops/QalCmd.h"
#include "tests/unit/OpsTestSupport.h"

namespace Konu {
namespace {

using OpsTest::CapturedLog;
using OpsTest::LogLine;
using OpsTest::SimulatedRoot;
using Lines = std::vector<std::string>;

// A root whose qal-cmd appends "[tool][arg]..." to calls.log. qal-cmd knows
// the users "konu" and "root" and refuses anyone else with 255, as the host's tool does.
// The tools' PATH is the root's own, so they use builtins and absolute paths only.
class QalCmdTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string record =
        "printf '[%s]' \"$(/usr/bin/basename \"$0\")\" \"$@\" >> " + Calls() + "; echo >> " + Calls() + "\n";
    root_.AddScript("/bin/qal-cmd",
                    record +
                        "case \"$3\" in always/refuse) echo refused; exit 255;; esac\n"
                        "case \"$2\" in konu|root) ;; *) echo \"no user $2\"; exit 255;; esac\n"
                        "case \"$3\" in\n"
                        "  q/true) printf 'true\\n';;\n"
                        "  q/true-failing) printf 'true\\n'; exit 3;;\n"
                        "  q/false) printf 'false\\n';;\n"
                        "  q/capital) printf 'True\\n';;\n"
                        "  q/empty) ;;\n"
                        "  q/digit) printf '1\\n';;\n"
                        "  q/truthy) printf 'trueish';;\n"
                        "  *) printf 'ran %s as %s\\n' \"$3\" \"$2\"; exit 0;;\n"
                        "esac\n");
    Runtime::Get().session.user = "root";
  }
  void TearDown() override { Runtime::Get().session.user.clear(); }

  std::string Calls() const { return root_ / "/calls.log"; }
  Lines CallLines() const { return OpsTest::ReadLines(Calls()); }

  SimulatedRoot root_;
  CapturedLog log_;
};

TEST_F(QalCmdTest, KnownUserRunsOnceWithItsOutput) {
  const char* argv[] = {"qal-cmd", "-U", "root", "hostsvc/start_ssh", nullptr};
  char out[300];
  int length = 100;
  EXPECT_EQ(RunQalCmd("/bin/qal-cmd", argv, out, &length), 0);
  EXPECT_EQ(std::string(out, length), "ran hostsvc/start_ssh as root\n");
  EXPECT_EQ(CallLines(), (Lines{"[qal-cmd][-U][root][hostsvc/start_ssh]"}));
  EXPECT_TRUE(log_.Lines().empty());
}

TEST_F(QalCmdTest, RefusedUserRunsTwiceAndLogsOnce) {
  const char* argv[] = {"qal-cmd", "-U", "mallory", "hostsvc/start_ssh", "--now", nullptr};
  char out[300];
  char err[300];
  int outLength = 10;
  int errLength = 10;
  EXPECT_EQ(RunQalCmd("/bin/qal-cmd", argv, out, &outLength, err, &errLength), 0);
  EXPECT_EQ(CallLines(), (Lines{"[qal-cmd][-U][mallory][hostsvc/start_ssh][--now]",
                                "[qal-cmd][-U][konu][hostsvc/start_ssh][--now]"}));
  EXPECT_EQ(
      log_.Lines(),
      (std::vector<LogLine>{
          {LOG_INFO,
           "Unable to execute command qal-cmd hostsvc/start_ssh using user mallory. Using user konu"}}));
  // The retry reads with the capacity set back to 256, past the caller's first 10.
  EXPECT_EQ(std::string(out, outLength), "ran hostsvc/start_ssh as konu\n");
  EXPECT_EQ(errLength, 0);
  // The caller's vector is left as it was.
  EXPECT_STREQ(argv[2], "mallory");
}

TEST_F(QalCmdTest, RefusedTwiceGivesTwoFiftyFiveAfterExactlyTwoRuns) {
  const char* argv[] = {"qal-cmd", "-U", "root", "always/refuse", nullptr};
  EXPECT_EQ(RunQalCmd("/bin/qal-cmd", argv), 255);
  EXPECT_EQ(CallLines(), (Lines{"[qal-cmd][-U][root][always/refuse]", "[qal-cmd][-U][konu][always/refuse]"}));
  EXPECT_EQ(log_.Count(LOG_INFO,
                       "Unable to execute command qal-cmd always/refuse using user root. Using user konu"),
            1);
  EXPECT_EQ(log_.Lines().size(), 1u);
}

TEST_F(QalCmdTest, MissingToolGivesMinusOneWithoutRetry) {
  std::filesystem::remove(root_ / "/bin/qal-cmd");
  const char* argv[] = {"qal-cmd", "-U", "root", "hostsvc/start_ssh", nullptr};
  EXPECT_EQ(RunQalCmd("/bin/qal-cmd", argv), -1);
  EXPECT_TRUE(log_.Lines().empty());
}

TEST_F(QalCmdTest, RefreshAsTheSessionUser) {
  RefreshHostServices();
  EXPECT_EQ(CallLines(), (Lines{"[qal-cmd][-U][root][internalsvc/refresh]"}));
}

TEST_F(QalCmdTest, RefreshBeforeAnyLoginPassesAnEmptyUserAndFallsBack) {
  Runtime::Get().session.user.clear();
  RefreshHostServices();
  EXPECT_EQ(CallLines(),
            (Lines{"[qal-cmd][-U][][internalsvc/refresh]", "[qal-cmd][-U][konu][internalsvc/refresh]"}));
  EXPECT_EQ(log_.Count(LOG_INFO,
                       "Unable to execute command qal-cmd internalsvc/refresh using user . Using user konu"),
            1);
}

TEST_F(QalCmdTest, GetBoolIsTrueOnlyForOutputBeginningWithTrue) {
  struct Case {
    const char* query;
    bool answer;
  };
  const Case cases[] = {
      {"q/true", true},     {"q/truthy", true}, {"q/false", false},
      {"q/capital", false}, {"q/empty", false}, {"q/digit", false},
  };
  for (const Case& c : cases) EXPECT_EQ(QalCmdGetBool(c.query), c.answer) << c.query;
  // Always as the service account, once each, whoever is logged in.
  Lines expected;
  for (const Case& c : cases) expected.push_back(std::string("[qal-cmd][-U][konu][") + c.query + "]");
  EXPECT_EQ(CallLines(), expected);
  for (const Case& c : cases)
    EXPECT_EQ(log_.Count(LOG_INFO, std::string("qal-cmd invocation: get ") + c.query), 1);
  EXPECT_EQ(log_.Lines().size(), std::size(cases));
}

TEST_F(QalCmdTest, GetBoolIgnoresTheExitCodeButLogsIt) {
  EXPECT_TRUE(QalCmdGetBool("q/true-failing"));
  std::vector<LogLine> lines = log_.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], (LogLine{LOG_INFO, "qal-cmd invocation: get q/true-failing"}));
  EXPECT_EQ(lines[1].priority, LOG_ERR);
  EXPECT_EQ(lines[1].text.rfind("qal-cmd invocation failure: ", 0), 0u) << lines[1].text;
}

TEST_F(QalCmdTest, GetBoolNeverFallsBack) {
  // "konu" refused: one run only, and a refusal's text is not an answer.
  EXPECT_FALSE(QalCmdGetBool("always/refuse"));
  EXPECT_EQ(CallLines(), (Lines{"[qal-cmd][-U][konu][always/refuse]"}));
}

}  // namespace
}  // namespace Konu
