// konu on this very machine, without a host root, in a pseudo-terminal: the welcome screen
// shows the machine's own facts, and an operator logs in through the real PAM service the
// package installs. It runs in a private mount namespace (unshare -m): /run is a fresh tmpfs
// holding the login marker and the pid file, and the accounts and PAM stacks are a test
// account's, bound over the machine's; nothing of the machine's /run or /etc changes.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "tests/harness/SimHost.h"
#include "tests/harness/TemporaryAccounts.h"
#include "tests/harness/Terminal.h"

namespace {

using KonuTest::ReadFileText;
using KonuTest::TemporaryAccounts;

std::string FirstLine(const std::string& path) {
  std::string line;
  std::getline(std::ifstream(path), line);
  return line;
}

std::string OsRelease(const std::string& key) {
  std::ifstream in("/etc/os-release");
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(key + "=", 0) != 0) continue;
    std::string value = line.substr(key.size() + 1);
    if (value.size() >= 2 && value.front() == '"') value = value.substr(1, value.size() - 2);
    return value;
  }
  return "";
}

TEST(LinuxConsole, ShowsTheMachinesFactsAndLogsInWithItsPam) {
  const std::vector<std::string> path = {"PATH=/usr/sbin:/usr/bin:/sbin:/bin"};
  if (KonuTest::RunCommandLine({"unshare", "-m", "true"}, path).exitCode != 0)
    GTEST_SKIP() << "unshare -m is not permitted here: no private mount namespace for the console";
  KonuTest::TempDir dir;
  TemporaryAccounts accounts(dir.Path());
  const std::string machineRun = ReadFileText("/proc/self/mountinfo");
  const std::string etc = accounts.Etc();
  std::string setup =
      "mount --make-rprivate / && mount -t tmpfs -o mode=0755 konu-test-run /run && "
      "mkdir /run/konu && touch /run/konu/show-konu-login && "
      "mount --bind " +
      etc + "/pam.d /etc/pam.d";
  for (const char* file : {"passwd", "group", "shadow"})
    setup += std::string(" && mount --bind ") + etc + "/" + file + " /etc/" + file;
  setup += " && exec " + KonuTest::KonuBin();

  KonuTest::Terminal term(24, 80);
  term.Spawn({"/usr/bin/unshare", "-m", "/bin/sh", "-c", setup}, {"ESCDELAY=25", "LANG=C.UTF-8", path[0]});

  // The product line from the machine's os-release and kernel; its name in the address.
  std::string product = OsRelease("NAME") + " " + OsRelease("VERSION_ID");
  ASSERT_TRUE(term.WaitForText(product, 10000)) << term.Screen();
  EXPECT_TRUE(term.WaitForText(FirstLine("/proc/sys/kernel/osrelease"), 0)) << term.Screen();
  EXPECT_TRUE(term.WaitForText("https://" + FirstLine("/proc/sys/kernel/hostname"), 0)) << term.Screen();
  EXPECT_TRUE(term.WaitForText("Memory", 0)) << term.Screen();

  // F2: the marker is there, so the login form; a wrong password is refused by pam_unix.
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("F2");
  ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Type(TemporaryAccounts::kUser);
  term.Press("Enter");
  term.Type("not-the-password");
  term.Press("Enter");
  // pam_unix delays a refusal by about two seconds.
  ASSERT_TRUE(term.WaitForText("Invalid login or password.", 15000)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText("Invalid login or password.")) << term.Screen();

  // Esc leaves the form; the right password opens the System Customization menu, and Esc
  // there logs out to the welcome screen.
  ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForNoText("Authentication Required")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("F2");
  ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Type(TemporaryAccounts::kUser);
  term.Press("Enter");
  term.Type(TemporaryAccounts::kPassword);
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("System Customization", 15000)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText(product)) << term.Screen();

  term.Signal(SIGTERM);
  int status = -1;
  ASSERT_TRUE(term.WaitForExit(5000, &status));
  EXPECT_EQ(ReadFileText("/proc/self/mountinfo"), machineRun) << "the namespace's mounts leaked";
}

}  // namespace
