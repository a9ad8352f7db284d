// The Linux path map on a temporary root: every kind of home, the configured certificate,
// and a journal-only log exported through a stand-in journalctl.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "host/HostRoot.h"
#include "host/ShellExec.h"
#include "host/linux/LinuxHost.h"
#include "host/linux/LinuxPathMap.h"
#include "ops/CommandRunner.h"
#include "tests/harness/Files.h"

namespace fs = std::filesystem;
using HostCtl::Linux::LinuxPathMap;

namespace {

class LinuxPathMapTest : public ::testing::Test {
 protected:
  void Write(const std::string& path, const std::string& text, bool executable = false) {
    KonuTest::WriteFileText(root_ + path, text, executable ? 0755 : 0644);
  }
  static std::string Read(const std::string& path) { return KonuTest::ReadFileText(path); }
  KonuTest::TempDir dir_;
  std::string root_ = dir_.Path();
};

TEST_F(LinuxPathMapTest, EveryHostPathHasItsLinuxHome) {
  Write("/var/log/syslog", "a line\n");
  LinuxPathMap map(root_);
  struct Case {
    const char* hostPath;
    const char* home;
  } cases[] = {
      {"/bin/qal-cmd", "/usr/libexec/konu/qal-cmd"},
      {"/etc/init.d/OrinShell", "/usr/libexec/konu/OrinShell"},
      {"/sbin/firmwareConfig.py", "/usr/libexec/konu/firmwareConfig.py"},
      {"/bin/reboot", "/usr/libexec/konu/reboot"},
      {"/var/run/corbel/show-konu-login", "/run/konu/show-konu-login"},
      {"/var/run/konu.pid", "/run/konu.pid"},
      {"/etc/corbel/support", "/etc/konu/support"},
      {"/etc/corbel/support/contract", "/etc/konu/support/contract"},
      {"/etc/corbel/supportx", "/etc/corbel/supportx"},
      {"/etc/corbel/ssl/rui.crt", "/etc/ssl/certs/ssl-cert-snakeoil.pem"},
      {"/bin/less", "/usr/bin/less"},
      {"/var/log/syslog.log", "/var/log/syslog"},
      {"/bin/sh", "/bin/sh"},
      {"/dev/console", "/dev/console"},
  };
  for (const Case& c : cases) EXPECT_EQ(map.Resolve(c.hostPath), root_ + c.home) << c.hostPath;

  Write("/etc/konu/konu.conf", "# KONU\ncertificate=/etc/konu/host.crt\n");
  EXPECT_EQ(LinuxPathMap(root_).Resolve("/etc/corbel/ssl/rui.crt"), root_ + "/etc/konu/host.crt");
}

TEST_F(LinuxPathMapTest, AJournalOnlyLogIsExportedWhenOpened) {
  Write("/stand-in/journalctl", "#!/bin/sh\necho \"journal $*\"\n", true);
  LinuxPathMap map(root_, root_ + "/stand-in/journalctl");
  std::string kernel = map.Resolve("/var/log/nukernel.log");
  EXPECT_EQ(kernel, root_ + "/run/konu/logs/nukernel.log");
  EXPECT_EQ(Read(kernel), "journal --no-pager -q -n 5000 -k\n");
  EXPECT_FALSE(fs::exists(kernel + ".new"));

  // A journal that fails leaves no log to offer.
  LinuxPathMap broken(root_, root_ + "/stand-in/none");
  EXPECT_FALSE(fs::exists(broken.Resolve("/var/log/sysboot.log")));
}

// A tool KONU has not installed fails; the machine's command of the same name is never
// reached, neither by the runner nor by the backend's shell.
TEST_F(LinuxPathMapTest, ChildrenFindOnlyKonusOwnTools) {
  fs::create_directories(root_ + "/bin");
  ASSERT_EQ(0, symlink("/bin/sh", (root_ + "/bin/sh").c_str()));
  const std::string ran = root_ + "/ran";
  const std::string standIn = "#!/bin/sh\necho \"$0 $*\" >> " + ran + "\n";
  for (const char* folder : {"/usr/sbin", "/usr/bin", "/sbin", "/bin"})
    Write(std::string(folder) + "/poweroff", standIn, true);
  LinuxPathMap map(root_);
  Konu::SetHostPathMap(&map);
  EXPECT_EQ(map.ToolSearchPath(), root_ + "/usr/libexec/konu");
  auto shell = HostCtl::Linux::LinuxHost(root_).CreateShellExec();
  EXPECT_EQ(Konu::RunShell("poweroff -f"), 127);
  EXPECT_EQ(shell->NukCtl_Exec("poweroff -f", false, true, false), 127);
  EXPECT_FALSE(fs::exists(ran)) << Read(ran);

  Write("/usr/libexec/konu/poweroff", standIn, true);
  EXPECT_EQ(Konu::RunShell("poweroff -f"), 0);
  EXPECT_EQ(shell->NukCtl_Exec("poweroff", false, true, false), 0);
  EXPECT_EQ(Read(ran), root_ + "/usr/libexec/konu/poweroff -f\n" + root_ + "/usr/libexec/konu/poweroff \n");
  Konu::SetHostPathMap(nullptr);
}

TEST(HostPathTest, TheRealHostUsesTheMapAndASimulatedHostItsRoot) {
  LinuxPathMap map("/");
  Konu::SetHostPathMap(&map);
  Konu::SetHostRoot("/");
  EXPECT_EQ(Konu::HostPath("/bin/qal-cmd"), "/usr/libexec/konu/qal-cmd");
  EXPECT_EQ(Konu::HostToolSearchPath(), "/usr/libexec/konu");
  Konu::SetHostRoot("/tmp/sim");
  EXPECT_EQ(Konu::HostPath("/bin/qal-cmd"), "/tmp/sim/bin/qal-cmd");
  EXPECT_EQ(Konu::HostToolSearchPath(), "/tmp/sim/bin:/tmp/sim/sbin:/tmp/sim/usr/bin:/tmp/sim/usr/sbin");
  Konu::SetHostRoot("/");
  Konu::SetHostPathMap(nullptr);
}

}  // namespace
