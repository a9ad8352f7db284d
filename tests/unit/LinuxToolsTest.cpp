// KONU's Linux host tools, each run with the machine's commands (systemctl, virsh, localectl,
// gcore, ping, ...) taken from a folder of recording stand-ins and every file under a
// temporary root: the argument vectors, the files written and the exit codes. Nothing here
// reaches the machine's services. Also the backend's options and keyboard over the same
// stand-ins, audit records with a stand-in kernel, and smart cards through a stand-in
// PC/SC library.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <syslog.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/linux/LinuxAuditLog.h"
#include "host/linux/LinuxHost.h"
#include "host/linux/LinuxSmartCardInfo.h"
#include "tests/QuietLog.h"
#include "tests/harness/SimHost.h"

namespace fs = std::filesystem;
using KonuTest::CommandResult;
using KonuTest::ReadFileText;

namespace {

const char* const kRecorded[] = {"systemctl", "systemd-run", "localectl", "loadkeys", "ping", "journalctl"};

class LinuxTools : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(Bin());
    fs::create_directories(Root());
    // Each recorded command writes its argument vector, then answers from NAME.out,
    // NAME.err and NAME.exit when the test put them there.
    for (const char* name : kRecorded)
      Script(name, "n=${0##*/}\necho \"$n $*\" >> " + Record() + "\n[ -f " + Bin() +
                       "/$n.err ] && /bin/cat " + Bin() + "/$n.err >&2\n[ -f " + Bin() +
                       "/$n.out ] && /bin/cat " + Bin() + "/$n.out\nexit $(/bin/cat " + Bin() +
                       "/$n.exit 2>/dev/null || echo 0)\n");
    // virsh keeps the running domains in a file; shutdown and destroy take one out.
    Script("virsh", "echo \"virsh $*\" >> " + Record() + "\ncase \"$1\" in\n  list) case \"$*\" in\n" +
                        "    *--autostart*) /bin/grep -xFf " + Bin() + "/autostart " + Bin() +
                        "/running ;;\n" + "    *) /bin/cat " + Bin() + "/running ;; esac ;;\n" +
                        "  shutdown|destroy) /bin/grep -vxF \"$2\" " + Bin() + "/running > " + Bin() +
                        "/running.new; /bin/mv " + Bin() + "/running.new " + Bin() +
                        "/running ;;\nesac\nexit 0\n");
    Script("gcore", "echo \"gcore $*\" >> " + Record() + "\n/bin/touch \"$2.$3\"\n");
    for (const char* real : {"tar", "gzip"})
      fs::create_symlink(std::string("/bin/") + real, Bin() + "/" + real);
  }

  std::string Bin() const { return dir_.Path() + "/bin"; }
  std::string Root() const { return dir_.Path() + "/root"; }
  std::string Record() const { return dir_.Path() + "/record"; }

  void Script(const std::string& name, const std::string& body) {
    std::ofstream(Bin() + "/" + name) << "#!/bin/sh\n" << body;
    chmod((Bin() + "/" + name).c_str(), 0755);
  }
  void Answer(const std::string& name, int exitCode, const std::string& err = "") {
    std::ofstream(Bin() + "/" + name + ".exit") << exitCode;
    std::ofstream(Bin() + "/" + name + ".err") << err;
  }
  void Write(const std::string& hostPath, const std::string& text) {
    fs::create_directories(fs::path(Root() + hostPath).parent_path());
    std::ofstream(Root() + hostPath) << text;
  }
  std::string Read(const std::string& hostPath) { return ReadFileText(Root() + hostPath); }

  CommandResult Tool(const std::string& name, std::vector<std::string> args = {}) {
    args.insert(args.begin(), {KonuTest::BuildDir() + "/konu-tools", name});
    // As the console runs them: KONU's tool folder is their whole PATH.
    return KonuTest::RunCommandLine(args, {"PATH=" + Root() + "/usr/libexec/konu", "KONU_TOOLS_PATH=" + Bin(),
                                           "KONU_TOOLS_ROOT=" + Root()});
  }
  // The commands run since the last call, one per line.
  std::string Taken() {
    std::string text = ReadFileText(Record());
    fs::remove(Record());
    return text;
  }

  KonuTest::TempDir dir_;
};

TEST_F(LinuxTools, ServiceToolsDriveSystemd) {
  struct Case {
    std::vector<std::string> argv;
    int systemctlExit;
    int exitCode;
    std::string commands;
    std::string out;
  } cases[] = {
      {{"OrinShell", "start"},
       0,
       0,
       "systemctl start getty@tty2.service\nsystemctl stop konu-shell-timeout.timer\n",
       "Started Orin Shell\n"},
      {{"SSH", "status"}, 0, 0, "systemctl is-active --quiet ssh.service\n", "SSH is running\n"},
      {{"SSH", "status"}, 3, 3, "systemctl is-active --quiet ssh.service\n", "SSH is not running\n"},
      {{"SSH", "reload"}, 0, 1, "", ""},
      {{"services.sh", "restart"},
       0,
       0,
       "systemctl restart libvirtd.service\n",
       "Restarted libvirtd.service\n"},
      {{"qal-cmd", "-U", "root", "hostsvc/enable_ssh"}, 0, 0, "systemctl enable ssh.service\n", ""},
      {{"qal-cmd", "-U", "konu", "hostsvc/stop_orin_shell"},
       0,
       0,
       "systemctl stop getty@tty2.service\n",
       "Stopped Orin Shell\n"},
      {{"qal-cmd", "-U", "konu", "qalsvc/auth/lockdown_is_possible"}, 0, 0, "", "false\n"},
      {{"qal-cmd", "-U", "konu", "qalsvc/auth/lockdown_mode_enter"}, 0, 1, "", ""},
      {{"qal-cmd", "-U", "no-such-user-here", "qalsvc/auth/lockdown_is_enabled"}, 0, 255, "", ""},
      {{"poweroff"}, 0, 0, "systemctl poweroff\n", ""},
      {{"reboot", "-f"}, 0, 0, "systemctl reboot --force\n", ""},
      {{"reboot", "now"}, 0, 1, "", ""},
  };
  for (const Case& c : cases) {
    Answer("systemctl", c.systemctlExit);
    std::vector<std::string> args(c.argv.begin() + 1, c.argv.end());
    CommandResult r = Tool(c.argv[0], args);
    std::string what = testing::PrintToString(c.argv);
    EXPECT_EQ(r.exitCode, c.exitCode) << what << r.err;
    EXPECT_EQ(Taken(), c.commands) << what;
    EXPECT_EQ(r.out, c.out) << what;
  }

  // A unit the machine does not have, and a machine without systemd: a clear error.
  Answer("systemctl", 5, "Failed to start ssh.service: Unit ssh.service not found.\n");
  CommandResult missingUnit = Tool("SSH", {"start"});
  EXPECT_EQ(missingUnit.exitCode, 1);
  EXPECT_EQ(missingUnit.err, "SSH: Failed to start ssh.service: Unit ssh.service not found.\n");
  fs::remove(Bin() + "/systemctl");
  CommandResult noSystemd = Tool("services.sh", {"stop"});
  EXPECT_EQ(noSystemd.exitCode, 1);
  EXPECT_EQ(noSystemd.err, "services.sh: systemctl not found\n");
}

TEST_F(LinuxTools, OptionsAndTheShellTimeouts) {
  EXPECT_EQ(Tool("orincfg-advcfg", {"-q", "-g", "/UserVars/KonuTimeOut"}).out, "600\n");
  EXPECT_EQ(Tool("orincli",
                 {"system", "settings", "advanced", "set", "-o", "/UserVars/OrinShellTimeOut", "-i", "900"})
                .exitCode,
            0);
  EXPECT_EQ(Read("/etc/konu/options"),
            "# KONU's advanced options; only values that differ from the defaults.\n"
            "/UserVars/OrinShellTimeOut=900\n");
  CommandResult refused = Tool("localcli", {"system", "settings", "advanced", "set", "-o",
                                            "/UserVars/OrinShellTimeOut", "-i", "99999"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.err.find("must be between 0 and 86400"), std::string::npos) << refused.err;
  EXPECT_EQ(Tool("orincfg-advcfg", {"-q", "-g", "/UserVars/OrinShellTimeOut"}).out, "900\n");
  EXPECT_EQ(Tool("orincfg-advcfg", {"-q", "-g", "/No/Such"}).exitCode, 1);

  // Starting the shell arms a transient timer that turns shell and SSH off again.
  Taken();
  EXPECT_EQ(Tool("SSH", {"restart"}).exitCode, 0);
  EXPECT_EQ(Taken(),
            "systemctl restart ssh.service\nsystemctl stop konu-shell-timeout.timer\n"
            "systemd-run --unit=konu-shell-timeout --on-active=900s --timer-property=AccuracySec=1s "
            "systemctl stop getty@tty2.service ssh.service\n");

  // The idle timeout is TMOUT for every later login shell.
  const std::vector<std::string> idle = {"system", "settings", "advanced",
                                         "set",    "-o",       "/UserVars/OrinShellInteractiveTimeOut"};
  auto withValue = [&](std::vector<std::string> extra) {
    std::vector<std::string> args = idle;
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
  };
  EXPECT_EQ(Tool("orincli", withValue({"-i", "300"})).exitCode, 0);
  EXPECT_NE(Read("/etc/profile.d/konu-shell-timeout.sh").find("TMOUT=300\nreadonly TMOUT\nexport TMOUT\n"),
            std::string::npos);
  EXPECT_EQ(Tool("orincli", withValue({"-d"})).exitCode, 0);
  EXPECT_FALSE(fs::exists(Root() + "/etc/profile.d/konu-shell-timeout.sh"));
}

TEST_F(LinuxTools, VirtualMachinesThroughVirsh) {
  std::ofstream(Bin() + "/running") << "web\ndb\n";
  std::ofstream(Bin() + "/autostart") << "db\n";
  EXPECT_EQ(Tool("qal-cmd", {"-U", "konu", "hostsvc/autostartmanager/autostop"}).exitCode, 0);
  EXPECT_EQ(Taken(),
            "virsh list --name --state-running --autostart\nvirsh shutdown db\n"
            "virsh list --name --state-running --autostart\n");
  EXPECT_EQ(ReadFileText(Bin() + "/running"), "web\n");

  std::ofstream(Bin() + "/running") << "web\ndb\n";
  CommandResult shutdown = Tool("powerOffVms");
  EXPECT_EQ(shutdown.exitCode, 0) << shutdown.err;
  EXPECT_EQ(shutdown.out, "Powered off web\nPowered off db\n");
  EXPECT_EQ(Taken(),
            "virsh list --name --state-running\nvirsh shutdown web\nvirsh shutdown db\n"
            "virsh list --name --state-running\n");

  std::ofstream(Bin() + "/running") << "web\n";
  EXPECT_EQ(Tool("powerOffVms", {"--terminate"}).out, "Terminated web\n");
  EXPECT_EQ(Taken(), "virsh list --name --state-running\nvirsh destroy web\n");
  EXPECT_EQ(Tool("powerOffVms", {"--now"}).exitCode, 1);

  // No libvirt on the machine: no machines, not an error.
  fs::remove(Bin() + "/virsh");
  CommandResult none = Tool("powerOffVms", {"--terminate"});
  EXPECT_EQ(none.exitCode, 0);
  EXPECT_EQ(none.out, "No libvirt on this host: no virtual machines to power off\n");
}

TEST_F(LinuxTools, LiveCoreResetBackupAndPing) {
  // A process of its own name stands in for the management agent.
  std::string agent = dir_.Path() + "/konuagentx";
  fs::copy_file("/bin/sleep", agent);
  pid_t pid = fork();
  if (pid == 0) {
    execl(agent.c_str(), "konuagentx", "30", nullptr);
    _exit(127);
  }
  ASSERT_GT(pid, 0);
  for (int i = 0; i < 500 && ReadFileText("/proc/" + std::to_string(pid) + "/comm") != "konuagentx\n"; ++i)
    usleep(10000);
  Write("/etc/konu/konu.conf", "agent-process=konuagentx\n");
  fs::create_directories(Root() + "/var/log");
  CommandResult core = Tool("nukbacktrace", {"-w", "-n", "mgmtd", "-o", "mgmtd-restart%", "-d", "/var/log/"});
  std::string prefix = Root() + "/var/log/mgmtd-restart" + std::to_string(pid);
  EXPECT_EQ(core.exitCode, 0) << core.err;
  EXPECT_EQ(Taken(), "gcore -o " + prefix + " " + std::to_string(pid) + "\n");
  EXPECT_TRUE(fs::exists(prefix + "." + std::to_string(pid)));
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
  CommandResult gone = Tool("nukbacktrace", {"-n", "mgmtd", "-d", "/var/log/"});
  EXPECT_EQ(gone.exitCode, 1);
  EXPECT_EQ(gone.err, "nukbacktrace: process konuagentx not found\n");

  // The backup holds KONU's configuration; the reset removes only what KONU wrote.
  Write("/etc/konu/options", "/UserVars/KonuTimeOut=120\n");
  Write("/etc/konu/keyboard.orig", "de\n");
  Write("/etc/profile.d/other.sh", "kept\n");
  CommandResult backup = Tool("backup.sh");
  ASSERT_EQ(backup.exitCode, 0) << backup.err;
  std::string archive = backup.out.substr(backup.out.rfind(' ') + 1);
  archive.pop_back();
  EXPECT_EQ(archive.rfind(Root() + "/var/backups/konu/konu-config-", 0), 0u) << archive;
  CommandResult listed = KonuTest::RunCommandLine({"/bin/tar", "-tzf", archive});
  EXPECT_NE(listed.out.find("etc/konu/options"), std::string::npos) << listed.out;

  EXPECT_EQ(Tool("firmwareConfig.py").exitCode, 2);
  EXPECT_EQ(Tool("firmwareConfig.py", {"--reset-only"}).exitCode, 0);
  EXPECT_EQ(Taken(), "localectl set-keymap de\nsystemctl stop konu-shell-timeout.timer\n");
  EXPECT_FALSE(fs::exists(Root() + "/etc/konu/options"));
  EXPECT_FALSE(fs::exists(Root() + "/etc/konu/keyboard.orig"));
  EXPECT_EQ(Read("/etc/konu/konu.conf"), "agent-process=konuagentx\n");
  EXPECT_EQ(Read("/etc/profile.d/other.sh"), "kept\n");

  Answer("ping", 1);
  EXPECT_EQ(Tool("nukping", {"-c", "1", "-I", "nuk0", "192.0.2.1"}).exitCode, 1);
  EXPECT_EQ(Taken(), "ping -c 1 -w 6 -I nuk0 192.0.2.1\n");
}

// The console's backend on a temporary root: options from the same file, the keyboard
// through localectl, else loadkeys.
TEST_F(LinuxTools, BackendOptionsAndKeyboard) {
  HostCtl::Linux::LinuxHost host(Root());
  auto options = host.CreateAdvancedOptions();
  auto timeout = options->FindOption("/UserVars/KonuTimeOut");
  auto* integer = dynamic_cast<HostCtl::Adv::AdvancedIntegerOption*>(timeout.get());
  ASSERT_NE(integer, nullptr);
  EXPECT_EQ(integer->GetValue(), 600);
  options->SetIntegerValue("/UserVars/KonuTimeOut", 300);
  EXPECT_EQ(Tool("orincfg-advcfg", {"-q", "-g", "/UserVars/KonuTimeOut"}).out, "300\n");
  EXPECT_THROW(options->SetIntegerValue("/UserVars/KonuTimeOut", -1), HostCtl::Lib::HostCtlException);
  EXPECT_EQ(options->FindOption("/No/Such"), nullptr);

  std::string savedPath = getenv("PATH") ? getenv("PATH") : "";
  setenv("PATH", Bin().c_str(), 1);
  Write("/etc/vconsole.conf", "KEYMAP=us\n");
  auto system = host.CreateSystemInfo();
  system->SetKeyboardLayout("fr");
  EXPECT_EQ(Taken(), "localectl set-keymap fr\n");
  EXPECT_EQ(Read("/etc/konu/keyboard.orig"), "us\n");
  fs::remove(Bin() + "/localectl");
  system->SetKeyboardLayout("de");
  EXPECT_EQ(Taken(), "loadkeys de\n");
  EXPECT_EQ(Read("/etc/konu/keyboard.orig"), "us\n");
  fs::remove(Bin() + "/loadkeys");
  EXPECT_THROW(system->LoadKeyboardMappings("de"), HostCtl::Lib::HostCtlException);
  setenv("PATH", savedPath.c_str(), 1);
}

TEST_F(LinuxTools, BackendEventsReachTheJournalWithTheirId) {
  std::string socketPath = Root() + "/run/systemd/journal/socket";
  fs::create_directories(fs::path(socketPath).parent_path());
  int journal = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(socketPath.size(), sizeof address.sun_path);
  strcpy(address.sun_path, socketPath.c_str());
  ASSERT_EQ(bind(journal, reinterpret_cast<sockaddr*>(&address), sizeof address), 0) << strerror(errno);

  HostCtl::Linux::LinuxHost host(Root());
  auto events = host.CreateEventLib();
  EXPECT_EQ(events->ZebUserLib_AddZeb("@&!*@*@(zeb.user.konu.reboot.host)Rebooting host"), 2) << "not opened";
  ASSERT_EQ(events->ZebUserLib_Init(), 0);
  EXPECT_EQ(events->ZebUserLib_AddZeb("@&!*@*@(zeb.user.konu.reboot.host)Rebooting host"), 0);
  char entry[512] = {};
  ssize_t n = recv(journal, entry, sizeof entry - 1, MSG_DONTWAIT);
  close(journal);
  ASSERT_GT(n, 0);
  EXPECT_EQ(std::string(entry, static_cast<size_t>(n)),
            "MESSAGE=Rebooting "
            "host\nPRIORITY=6\nSYSLOG_IDENTIFIER=KONU\nKONU_EVENT_ID=zeb.user.konu.reboot.host\n");
}

// The kernel's audit subsystem as the tests want it: whether it opens, what a send answers,
// and what it was sent.
struct StandInKernel {
  static inline int openResult, sendResult, opened, closed;
  static inline std::string sent;
  static int Open() { return opened += openResult >= 0, openResult; }
  static int Send(int, int type, const char* message, const char*, const char* address, const char*,
                  int result) {
    sent = std::to_string(type) + " " + message + " addr=" + (address ? address : "-") +
           " res=" + std::to_string(result);
    return sendResult;
  }
  static void Close(int) { ++closed; }
};

class Lines : public Konu::LogSink {
 public:
  explicit Lines(std::string* to) : to_(to) {}
  void Write(int priority, const std::string& text) override {
    *to_ += std::to_string(priority) + " " + text + "\n";
  }

 private:
  std::string* to_;
};

TEST(LinuxBackend, AuditRecordsGoToTheKernelElseTheJournal) {
  const HostCtl::Linux::AuditApi kernel{StandInKernel::Open, StandInKernel::Send, StandInKernel::Close};
  const std::string journalLine = std::to_string(LOG_AUTH | LOG_INFO) +
                                  " audit: login.connect user=\"a b\" origin=\"\" success=0 "
                                  "reason=\"Invalid Login\"\n";
  const struct {
    const char* name;
    int openResult, sendResult;
    bool toKernel;
  } kCases[] = {
      {"no audit subsystem (or a container)", -1, 0, false},
      {"nobody listens", 5, 0, false},
      {"refused", 5, -1, false},
      {"taken", 5, 120, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    StandInKernel::openResult = c.openResult;
    StandInKernel::sendResult = c.sendResult;
    StandInKernel::opened = StandInKernel::closed = 0;
    StandInKernel::sent.clear();
    std::string logged;
    Konu::SetLogSink(std::make_unique<Lines>(&logged));
    HostCtl::Linux::LinuxAuditLog(kernel).CblAudit_VLog("login.connect", "a b", "", 0,
                                                        {{"reason", "Invalid Login"}});
    KonuTest::UseQuietLog();
    EXPECT_EQ(logged, c.toKernel ? "" : journalLine);
    EXPECT_EQ(StandInKernel::closed, StandInKernel::opened) << "every descriptor closed";
    // A login is USER_LOGIN; values with blanks (a typed name is untrusted) go hex-encoded.
    const std::string sent =
        c.openResult >= 0 ? "1112 op=login.connect acct=612062 reason=496E76616C6964204C6F67696E addr=- res=0"
                          : "";
    EXPECT_EQ(StandInKernel::sent, sent);
  }
  HostCtl::Linux::LinuxAuditLog(kernel).CblAudit_VLog("login.disconnect", "root", "192.0.2.7", 1, {});
  EXPECT_EQ(StandInKernel::sent, "1113 op=login.disconnect acct=\"root\" addr=192.0.2.7 res=1");
}

TEST(LinuxBackend, SmartCardReadersThroughPcscElseNone) {
  const std::string standIn = KonuTest::BuildDir() + "/tests/libkonu-pcsc-standin.so";
  auto slots = HostCtl::Linux::LinuxSmartCardInfo(standIn).GetSlots();
  ASSERT_EQ(slots.size(), 2u);
  EXPECT_EQ(slots[0].name, "Reader A");
  ASSERT_TRUE(slots[0].token.has_value()) << "a card in the first reader";
  EXPECT_EQ(slots[0].token->userId, "") << "whose card it is, is not read";
  EXPECT_EQ(slots[1].name, "Reader B");
  EXPECT_FALSE(slots[1].token.has_value());

  for (const char* machine : {"no-service", "no-readers"}) {
    setenv("KONU_PCSC_STANDIN", machine, 1);
    EXPECT_TRUE(HostCtl::Linux::LinuxSmartCardInfo(standIn).GetSlots().empty()) << machine;
  }
  unsetenv("KONU_PCSC_STANDIN");
  EXPECT_TRUE(HostCtl::Linux::LinuxSmartCardInfo("/nonexistent/libpcsclite.so.1").GetSlots().empty());
}

}  // namespace
