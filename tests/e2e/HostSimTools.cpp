// konu-hostsim and the simulated host's tools as the console runs them: each tool acts on the
// host state and leaves its journal line; injected faults make them fail or hang; the control
// command reads and edits the state with clear refusals; poweroff, reboot and the card reader
// signal only the console of their own host.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "host/sim/StateFile.h"
#include "tests/harness/SimHost.h"

namespace {

using Json = nlohmann::json;
using KonuTest::CommandResult;
using KonuTest::ReadFileText;
using KonuTest::SimHost;
using KonuTest::TempDir;

class HostSim : public ::testing::Test {
 protected:
  SimHost host{KONU_HOSTSIM_BIN};
  Konu::Sim::StateFile state{host.Root()};
  Json Get(const std::string& pointer) { return state.Get(pointer); }
  void Set(const std::string& pointer, const Json& value) {
    state.Update([&](Json& s) { s[Json::json_pointer(pointer)] = value; });
  }
  // What `konu-hostsim get` prints, parsed back.
  Json Printed(const std::string& pointer) {
    CommandResult r = host.Control({"get", pointer});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    return Json::parse(r.out);
  }
  // A command line as the console starts it: the host's /bin/sh -c with only the host's tool
  // folders on PATH.
  CommandResult Shell(const std::string& command) {
    return KonuTest::RunCommandLine(
        {host.File("/bin/sh"), "-c", command},
        {"PATH=" + host.Root() + "/bin:" + host.Root() + "/sbin", "PYTHONHOME=/"});
  }
  std::vector<Json> Journal() const {
    std::vector<Json> lines;
    std::istringstream in(ReadFileText(host.File("/var/log/hostsim.log")));
    std::string line;
    while (std::getline(in, line)) lines.push_back(Json::parse(line));
    return lines;
  }
  // The journal's last line must be this run: argument vector, user and exit.
  void ExpectLastRun(const std::vector<std::string>& argv, const std::string& user, const Json& exit) {
    std::vector<Json> lines = Journal();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back()["argv"], Json(argv));
    EXPECT_EQ(lines.back()["user"], user);
    EXPECT_EQ(lines.back()["exit"], exit);
  }
  static std::string ProcessUser() {
    CommandResult r = KonuTest::RunCommandLine({"/usr/bin/id", "-un"});
    return r.out.substr(0, r.out.find('\n'));
  }
};
using HostSimTools = HostSim;
using HostSimControl = HostSim;
using HostSimPower = HostSim;

TEST_F(HostSimTools, CreateMakesEveryFile) {
  for (const char* tool :
       {"/bin/qal-cmd", "/etc/init.d/OrinShell", "/etc/init.d/SSH", "/sbin/orincfg-advcfg", "/sbin/orincli",
        "/sbin/localcli", "/bin/powerOffVms", "/sbin/services.sh", "/sbin/nukbacktrace",
        "/sbin/firmwareConfig.py", "/sbin/backup.sh", "/bin/nukping", "/bin/poweroff", "/bin/reboot"}) {
    std::string text = ReadFileText(host.File(tool));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << tool;
    EXPECT_NE(text.find("'" + host.Root() + "'"), std::string::npos) << tool;
    EXPECT_EQ(access(host.File(tool).c_str(), X_OK), 0) << tool;
  }
  for (const char* link : {"/bin/sh", "/bin/less", "/usr/lib/corbel/openssh/bin/ssh-keygen"}) {
    struct stat info;
    ASSERT_EQ(lstat(host.File(link).c_str(), &info), 0) << link;
    EXPECT_TRUE(S_ISLNK(info.st_mode)) << link;
    EXPECT_EQ(access(host.File(link).c_str(), X_OK), 0) << link;
  }
  for (const char* file : {"/etc/konu-sim/host.json", "/etc/pam.d/konu", "/usr/lib/konu-sim/pam_konusim.so",
                           "/var/run/corbel/show-konu-login", "/etc/hosts", "/var/log/hostsim.log",
                           "/var/log/audit.log", "/etc/ssh/ssh_host_rsa_key"})
    EXPECT_EQ(access(host.File(file).c_str(), R_OK), 0) << file;
  for (const char* log :
       {"/var/log/syslog.log", "/var/log/nukernel.log", "/var/log/sysboot.log", "/var/log/mgmtd.log",
        "/var/log/tmga.log", "/var/log/aam.log", "/var/log/zebd.log"}) {
    std::string text = ReadFileText(host.File(log));
    EXPECT_GE(std::count(text.begin(), text.end(), '\n'), 2) << log;
  }
  EXPECT_NE(access(host.File("/var/run/konu.pid").c_str(), F_OK), 0);
  EXPECT_EQ(ReadFileText(host.File("/var/log/hostsim.log")), "");
  EXPECT_EQ(Get("/power/state"), "on");

  // The certificate and the host key are real: the console's fingerprint commands read them,
  // the certificate's in the host's "SHA1 Fingerprint=%255s" form.
  CommandResult cert = host.Tool("/bin/openssl", {"x509", "-noout", "-sha1", "-fingerprint", "-in",
                                                  host.File("/etc/corbel/ssl/rui.crt")});
  EXPECT_EQ(cert.exitCode, 0) << cert.err;
  char fingerprint[256] = "";
  EXPECT_EQ(sscanf(cert.out.c_str(), "SHA1 Fingerprint=%255s", fingerprint), 1) << cert.out;
  EXPECT_EQ(strlen(fingerprint), 59u) << fingerprint;
  EXPECT_NE(host.Tool("/bin/openssl", {"x509", "-noout", "-in", host.File("/nonexistent")}).exitCode, 0);
  CommandResult key = host.Tool("/usr/lib/corbel/openssh/bin/ssh-keygen",
                                {"-l", "-f", host.File("/etc/ssh/ssh_host_rsa_key")});
  EXPECT_EQ(key.exitCode, 0) << key.err;
  EXPECT_NE(key.out.find("(RSA)"), std::string::npos) << key.out;

  std::string pam = ReadFileText(host.File("/etc/pam.d/konu"));
  EXPECT_NE(pam.find(host.Root() + "/usr/lib/konu-sim/pam_konusim.so"), std::string::npos);
  // root's factory password is kept as a hash only.
  EXPECT_EQ(Get("/users/root/passwordHash").get<std::string>().rfind("$6$", 0), 0u);
  EXPECT_FALSE(Get("/users/root").contains("password"));
  EXPECT_TRUE(host.PasswordIs("root", "konu"));
  EXPECT_FALSE(host.PasswordIs("root", "konu "));
}

TEST_F(HostSimTools, CreateRefusesADirectoryInUseAndTheMachineRoot) {
  std::string before = ReadFileText(host.File("/etc/konu-sim/host.json"));
  CommandResult again = KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "create", host.Root()});
  EXPECT_EQ(again.exitCode, 1);
  EXPECT_NE(again.err.find("not an empty directory"), std::string::npos) << again.err;
  EXPECT_EQ(ReadFileText(host.File("/etc/konu-sim/host.json")), before);
  CommandResult slash = KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "create", "/"});
  EXPECT_EQ(slash.exitCode, 1);
  EXPECT_NE(slash.err.find("refusing"), std::string::npos) << slash.err;
  KonuTest::TempDir spaced;
  CommandResult blank = KonuTest::RunCommandLine({KONU_HOSTSIM_BIN, "create", spaced.Path() + "/my host"});
  EXPECT_EQ(blank.exitCode, 1);
  EXPECT_NE(blank.err.find("blanks"), std::string::npos) << blank.err;
}

TEST_F(HostSimTools, QalCmdRefusesUnknownUsersWith255) {
  CommandResult r = host.Tool("/bin/qal-cmd", {"-U", "mallory", "hostsvc/start_ssh"});
  EXPECT_EQ(r.exitCode, 255);
  EXPECT_NE(r.err.find("mallory"), std::string::npos);
  EXPECT_EQ(Get("/services/SSH/running"), false);
  ExpectLastRun({"qal-cmd", "-U", "mallory", "hostsvc/start_ssh"}, "mallory", 255);
  EXPECT_EQ(host.Tool("/bin/qal-cmd", {"-U", "", "internalsvc/refresh"}).exitCode, 255);
  EXPECT_EQ(host.Tool("/bin/qal-cmd", {"-U", "konu", "internalsvc/refresh"}).exitCode, 0);
}

// (The queries and lockdown_mode_enter as the console runs them, a counted fault included:
// e2e.Lockdown.EnterWithoutAChangeRunsNothingAFailureIsLoggedAndASuccessShows.)
TEST_F(HostSimTools, QalCmdLockdownExitAndRefusals) {
  auto query = [&](const char* q) { return host.Tool("/bin/qal-cmd", {"-U", "konu", q}); };
  Set("/lockdown/enabled", true);
  EXPECT_EQ(query("qalsvc/auth/lockdown_mode_exit").exitCode, 0);
  EXPECT_EQ(Get("/lockdown/enabled"), false);

  Set("/lockdown/possible", false);
  EXPECT_EQ(query("qalsvc/auth/lockdown_is_possible").out, "false\n");
  CommandResult refused = query("qalsvc/auth/lockdown_mode_enter");
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_FALSE(refused.err.empty());
  EXPECT_EQ(Get("/lockdown/enabled"), false);
  EXPECT_EQ(query("qalsvc/auth/no_such_thing").exitCode, 1);
}

TEST_F(HostSimTools, QalCmdSshServiceAndItsFirewallRules) {
  // Starting and enabling the shell: e2e.Troubleshooting.TogglesRunTheirCommandsInOrder...
  auto qal = [&](const char* c) { return host.Tool("/bin/qal-cmd", {"-U", "root", c}).exitCode; };
  EXPECT_EQ(qal("hostsvc/start_ssh"), 0);
  EXPECT_EQ(Get("/services/SSH/running"), true);
  EXPECT_EQ(Get("/firewall/sshServer/enabled"), true);
  EXPECT_EQ(qal("hostsvc/stop_ssh"), 0);
  EXPECT_EQ(qal("hostsvc/disable_ssh"), 0);
  EXPECT_EQ(Get("/services/SSH"), (Json{{"running", false}, {"enabled", false}}));
  EXPECT_EQ(Get("/firewall/sshServer/enabled"), false);
}

TEST_F(HostSimTools, AutostopStopsOnlyAutostartMachines) {
  EXPECT_EQ(host.Tool("/bin/qal-cmd", {"-U", "root", "hostsvc/autostartmanager/autostop"}).exitCode, 0);
  EXPECT_EQ(Get("/vms/0/powerState"), "poweredOff");
  EXPECT_EQ(Get("/vms/1/powerState"), "poweredOn");
}

// The console runs the init scripts through the host's sh: {"sh", script, action}.
TEST_F(HostSimTools, InitScriptsStartStopAndAnswerStatus) {
  auto script = [&](const char* name, const char* action) {
    return KonuTest::RunCommandLine(
        {host.File("/bin/sh"), host.File(std::string("/etc/init.d/") + name), action}, {"PYTHONHOME=/"});
  };
  EXPECT_EQ(script("SSH", "status").exitCode, 3);
  ExpectLastRun({"SSH", "status"}, ProcessUser(), 3);
  EXPECT_EQ(script("SSH", "start").exitCode, 0);
  EXPECT_EQ(script("SSH", "status").exitCode, 0);
  EXPECT_EQ(script("OrinShell", "status").exitCode, 3);
  EXPECT_EQ(script("OrinShell", "restart").exitCode, 0);
  EXPECT_EQ(Get("/services/OrinShell/running"), true);
  EXPECT_EQ(script("SSH", "stop").exitCode, 0);
  EXPECT_EQ(script("SSH", "status").exitCode, 3);
  EXPECT_EQ(script("SSH", "bogus").exitCode, 1);
}

TEST_F(HostSimTools, AdvancedOptionsReadAndSet) {
  CommandResult read = host.Tool("/sbin/orincfg-advcfg", {"-q", "-g", "/UserVars/OrinShellTimeOut"});
  EXPECT_EQ(read.exitCode, 0);
  EXPECT_EQ(read.out, "0\n");
  ExpectLastRun({"orincfg-advcfg", "-q", "-g", "/UserVars/OrinShellTimeOut"}, ProcessUser(), 0);

  std::vector<std::string> set = {"system", "settings", "advanced", "set", "-o", "/UserVars/OrinShellTimeOut",
                                  "-i",     "900"};
  EXPECT_EQ(host.Tool("/sbin/orincli", set).exitCode, 0);
  EXPECT_EQ(host.Tool("/sbin/orincfg-advcfg", {"-q", "-g", "/UserVars/OrinShellTimeOut"}).out, "900\n");
  set[7] = "1200";
  EXPECT_EQ(host.Tool("/sbin/localcli", set).exitCode, 0);
  EXPECT_EQ(Get("/advancedOptions/~1UserVars~1OrinShellTimeOut/value"), 1200);

  set[7] = "86401";
  CommandResult tooBig = host.Tool("/sbin/orincli", set);
  EXPECT_EQ(tooBig.exitCode, 1);
  EXPECT_NE(tooBig.err.find("86400"), std::string::npos) << tooBig.err;
  set[7] = "ten";
  EXPECT_EQ(host.Tool("/sbin/orincli", set).exitCode, 1);
  EXPECT_EQ(Get("/advancedOptions/~1UserVars~1OrinShellTimeOut/value"), 1200);

  EXPECT_EQ(host.Tool("/sbin/orincfg-advcfg", {"-q", "-g", "/UserVars/NoSuchOption"}).exitCode, 1);
  EXPECT_EQ(host.Tool("/sbin/orincli",
                      {"system", "settings", "advanced", "set", "-o", "/UserVars/NoSuchOption", "-i", "1"})
                .exitCode,
            1);
  EXPECT_EQ(host.Tool("/sbin/orincli",
                      {"system", "settings", "advanced", "set", "-o", "/UserVars/OrinShellTimeOut", "-d"})
                .exitCode,
            0);
  EXPECT_EQ(Get("/advancedOptions/~1UserVars~1OrinShellTimeOut/value"), 0);
}

TEST_F(HostSimTools, PowerOffVmsTerminatesOnlyWhenAsked) {
  Set("/vms/1/ignoresShutdown", true);
  EXPECT_EQ(host.Tool("/bin/powerOffVms").exitCode, 0);
  EXPECT_EQ(Get("/vms/0/powerState"), "poweredOff");
  EXPECT_EQ(Get("/vms/1/powerState"), "poweredOn");
  EXPECT_EQ(host.Tool("/bin/powerOffVms", {"--terminate"}).exitCode, 0);
  EXPECT_EQ(Get("/vms/1/powerState"), "poweredOff");
  ExpectLastRun({"powerOffVms", "--terminate"}, ProcessUser(), 0);
}

TEST_F(HostSimTools, ServicesRestartAndLiveCore) {
  auto services = [&](const char* action) {
    return KonuTest::RunCommandLine({host.File("/bin/sh"), host.File("/sbin/services.sh"), action}).exitCode;
  };
  EXPECT_EQ(services("restart"), 0);
  EXPECT_EQ(Get("/agents/restarts"), 1);
  EXPECT_EQ(services("stop"), 0);
  EXPECT_EQ(Get("/services/mgmtd/running"), false);
  std::vector<std::string> backtrace = {"-w", "-n", "mgmtd", "-o", "mgmtd-restart%", "-d", "/var/log/"};
  EXPECT_EQ(host.Tool("/sbin/nukbacktrace", backtrace).exitCode, 1);  // nothing to dump while down
  EXPECT_EQ(services("start"), 0);
  EXPECT_EQ(Get("/services/mgmtd/running"), true);
  EXPECT_EQ(Get("/agents/restarts"), 2);

  EXPECT_EQ(host.Tool("/sbin/nukbacktrace", backtrace).exitCode, 0);
  Json core = Get("/coreDumps/0");
  EXPECT_EQ(core["process"], "mgmtd");
  std::string path = core["path"];
  EXPECT_EQ(path.rfind("/var/log/mgmtd-restart", 0), 0u) << path;
  EXPECT_EQ(path.find('%'), std::string::npos);
  EXPECT_FALSE(ReadFileText(host.File(path)).empty());
  EXPECT_EQ(host.Tool("/sbin/nukbacktrace", {"-n", "mgmtd", "-d", "/var/../../x/"}).exitCode, 1);
}

TEST_F(HostSimTools, FactoryResetRestoresConfigurationButKeepsFaultsAndMachines) {
  Set("/host/hostname", "renamed");
  Set("/advancedOptions/~1UserVars~1KonuTimeOut/value", 120);
  host.SetPassword("root", "changed");
  Set("/vms/0/powerState", "poweredOff");
  Set("/faults/operations/DnsConfig.SaveConfig", "disk full");
  CommandResult r = host.Tool("/sbin/firmwareConfig.py", {"--reset-only"});
  EXPECT_EQ(r.exitCode, 0) << r.err;
  EXPECT_EQ(Get("/host/hostname"), "konu-host");
  EXPECT_EQ(Get("/advancedOptions/~1UserVars~1KonuTimeOut/value"), 600);
  EXPECT_TRUE(host.PasswordIs("root", "konu"));
  EXPECT_EQ(Get("/vms/0/powerState"), "poweredOff");
  EXPECT_EQ(Get("/faults/operations/DnsConfig.SaveConfig"), "disk full");
  EXPECT_EQ(Get("/factoryResets"), 1);
  ExpectLastRun({"firmwareConfig.py", "--reset-only"}, ProcessUser(), 0);
  EXPECT_EQ(host.Tool("/sbin/firmwareConfig.py").exitCode, 2);
}

TEST_F(HostSimTools, PingAnswersForReachableAddressesThroughAnUpInterface) {
  EXPECT_EQ(host.Tool("/bin/nukping", {"-c", "3", "10.0.0.1"}).exitCode, 0);
  EXPECT_EQ(host.Tool("/bin/nukping", {"-c", "3", "-I", "nuk0", "10.0.0.2"}).exitCode, 0);
  CommandResult lost = host.Tool("/bin/nukping", {"-c", "3", "192.0.2.99"});
  EXPECT_EQ(lost.exitCode, 1);
  EXPECT_NE(lost.out.find("100% packet loss"), std::string::npos);
  EXPECT_EQ(host.Tool("/bin/nukping", {"-c", "3", "-I", "nuk7", "10.0.0.1"}).exitCode, 1);
  Set("/network/nukNics/nuk0/up", false);
  EXPECT_EQ(host.Tool("/bin/nukping", {"-c", "3", "10.0.0.1"}).exitCode, 1);
  ExpectLastRun({"nukping", "-c", "3", "10.0.0.1"}, ProcessUser(), 1);
}

// A fault gives its exit and output in place of the tool's, and the tool does nothing;
// other commands of the same tool still work.
TEST_F(HostSimTools, FaultMakesAToolFailWithoutActing) {
  Set("/faults/tools/qal-cmd hostsvc~1start_ssh", Json{{"exitCode", 3}, {"stderr", "Connection refused\n"}});
  Set("/faults/tools/qal-cmd qalsvc~1auth~1lockdown_is_enabled", Json{{"exitCode", 0}, {"stdout", "True\n"}});
  CommandResult r = host.Tool("/bin/qal-cmd", {"-U", "root", "hostsvc/start_ssh"});
  EXPECT_EQ(r.exitCode, 3);
  EXPECT_EQ(r.err, "Connection refused\n");
  EXPECT_EQ(Get("/services/SSH/running"), false);
  ExpectLastRun({"qal-cmd", "-U", "root", "hostsvc/start_ssh"}, ProcessUser(), 3);
  CommandResult answer = host.Tool("/bin/qal-cmd", {"-U", "konu", "qalsvc/auth/lockdown_is_enabled"});
  EXPECT_EQ(answer.exitCode, 0);
  EXPECT_EQ(answer.out, "True\n");
  EXPECT_EQ(host.Tool("/bin/qal-cmd", {"-U", "root", "hostsvc/start_orin_shell"}).exitCode, 0);
}

// A counted fault fails that many runs, then is gone and the tool works.
TEST_F(HostSimTools, CountedFaultFailsThenTheToolWorks) {
  Set("/faults/tools/backup.sh", Json{{"exitCode", 4}, {"stderr", "disk full\n"}, {"times", 2}});
  for (int run = 0; run < 2; ++run) {
    CommandResult r = host.Tool("/sbin/backup.sh");
    EXPECT_EQ(r.exitCode, 4);
    EXPECT_EQ(r.err, "disk full\n");
  }
  EXPECT_EQ(Get("/backups").size(), 0u);
  EXPECT_TRUE(Get("/faults/tools").empty());
  EXPECT_EQ(host.Tool("/sbin/backup.sh").exitCode, 0);
  EXPECT_EQ(Get("/backups").size(), 1u);
}

TEST_F(HostSimTools, HangingToolRunsUntilKilled) {
  Set("/faults/tools/SSH status", Json{{"hang", true}});
  std::string script = host.File("/etc/init.d/SSH");
  char* argv[] = {const_cast<char*>("/bin/sh"), script.data(), const_cast<char*>("status"), nullptr};
  char* envp[] = {nullptr};
  pid_t pid = 0;
  ASSERT_EQ(posix_spawn(&pid, "/bin/sh", nullptr, nullptr, argv, envp), 0);
  ASSERT_TRUE(KonuTest::WaitFor([&] {
    std::vector<Json> lines = Journal();
    return !lines.empty() && lines.back()["exit"] == "hang";
  }));
  int status = 0;
  EXPECT_EQ(waitpid(pid, &status, WNOHANG), 0) << "the hanging tool ended by itself";
  kill(pid, SIGKILL);
  ASSERT_EQ(waitpid(pid, &status, 0), pid);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  ExpectLastRun({"SSH", "status"}, ProcessUser(), "hang");
}

// A hand-edited state with a syntax error: tools and the control command fail with the file
// and line named, and nobody writes over it.
TEST_F(HostSimTools, MalformedStateIsNamedByToolsAndControlAndKept) {
  std::string path = host.File("/etc/konu-sim/host.json");
  const std::string broken = "{\n\"users\": [1, 2,]}";
  { std::ofstream(path, std::ios::trunc) << broken; }
  CommandResult r = host.Tool("/bin/qal-cmd", {"-U", "root", "hostsvc/start_ssh"});
  EXPECT_EQ(r.exitCode, 2);
  EXPECT_NE(r.err.find(path), std::string::npos) << r.err;
  ExpectLastRun({"qal-cmd", "-U", "root", "hostsvc/start_ssh"}, "root", 2);
  for (const auto& args : {std::vector<std::string>{"get", "/power/state"},
                           std::vector<std::string>{"set", "/power/state", "\"off\""}}) {
    CommandResult c = host.Control(args);
    EXPECT_EQ(c.exitCode, 2);
    EXPECT_NE(c.err.find(path), std::string::npos) << c.err;
    EXPECT_NE(c.err.find("line 2, column 16"), std::string::npos) << c.err;
  }
  EXPECT_EQ(ReadFileText(path), broken);
}

TEST_F(HostSimControl, SetReplacesAddsAndAppends) {
  EXPECT_EQ(host.Control({"set", "/host/hostname", "\"konu-lab-7\""}).exitCode, 0);
  EXPECT_EQ(Printed("/host/hostname"), "konu-lab-7");
  EXPECT_EQ(host.Control({"set", "/userOptions/PXEBootEnabled", "true"}).exitCode, 0);
  struct stat file {};
  ASSERT_EQ(stat(host.File("/etc/konu-sim/host.json").c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777, 0600u) << "the state holds secrets: its owner's only";
  EXPECT_EQ(Printed("/userOptions/PXEBootEnabled"), true);
  EXPECT_EQ(host.Control({"set", "/network/reachable/-", "\"192.0.2.1\""}).exitCode, 0);
  EXPECT_EQ(Printed("/network/reachable").back(), "192.0.2.1");
  EXPECT_EQ(host.Control({"set", "/faults/tools/qal-cmd", R"({"exitCode": 1, "times": 2})"}).exitCode, 0);
  EXPECT_EQ(Printed("/faults/tools/qal-cmd/times"), 2);
  EXPECT_EQ(host.Control({"unset", "/userOptions/PXEBootEnabled"}).exitCode, 0);
  EXPECT_EQ(host.Control({"get", "/userOptions/PXEBootEnabled"}).exitCode, 2);
  EXPECT_EQ(host.Control({"unset", "/vms/0"}).exitCode, 0);
  EXPECT_EQ(Printed("/vms").size(), 1u);
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

// A stand-in console: a shell started under the name "konu" with the host root among its
// arguments, as `konu --host-root DIR` would be. It notes each SIGUSR1 and SIGTERM.
class FakeConsole {
 public:
  FakeConsole(const std::string& name, const std::string& root) : notes_(dir_.Path() + "/notes") {
    std::string program = dir_.Path() + "/" + name;
    if (symlink("/bin/sh", program.c_str()) != 0) throw std::runtime_error("symlink failed");
    std::string script = "trap 'echo USR1 >> " + notes_ + "' USR1; trap 'echo TERM >> " + notes_ +
                         "; exit 0' TERM; echo ready > " + notes_ + "; while :; do sleep 0.02; done";
    std::string rootArg = "--host-root=" + root;
    char* argv[] = {program.data(), const_cast<char*>("-c"),
                    script.data(),  const_cast<char*>("konu"),
                    rootArg.data(), nullptr};
    char* envp[] = {const_cast<char*>("PATH=/usr/bin:/bin"), nullptr};
    if (posix_spawn(&pid_, program.c_str(), nullptr, nullptr, argv, envp) != 0)
      throw std::runtime_error("spawn failed");
    KonuTest::WaitFor([&] { return Notes().find("ready") != std::string::npos; });
  }
  ~FakeConsole() {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
  }
  FakeConsole(const FakeConsole&) = delete;
  FakeConsole& operator=(const FakeConsole&) = delete;

  std::string Notes() const { return ReadFileText(notes_); }
  void WritePidFile(const SimHost& host) const {
    std::ofstream(host.File("/var/run/konu.pid"), std::ios::trunc) << pid_ << "\n";
  }
  bool StillRunning() const { return kill(pid_, 0) == 0 && Notes().find("TERM") == std::string::npos; }

 private:
  TempDir dir_;
  std::string notes_;
  pid_t pid_ = 0;
};

// (poweroff marking the host off and ending its console: e2e.Shutdown.EachKeyPostsItsEvent...)
TEST_F(HostSimPower, RebootAndForcedRebootAreToldApart) {
  state.Update([](Json& s) { s["network"]["ipv6EnabledAfterReboot"] = false; });
  EXPECT_EQ(state.Get("/network/ipv6Enabled"), true);
  EXPECT_EQ(Shell("reboot").exitCode, 0);
  EXPECT_EQ(state.Get("/power/state"), "rebooting");
  EXPECT_EQ(state.Get("/network/ipv6Enabled"), false) << "the host boots with the IPv6 setting chosen for it";
  EXPECT_EQ(Shell("reboot -f").exitCode, 0);
  EXPECT_EQ(state.Get("/power/history"), Json::parse(R"([{"action": "reboot", "forced": false},
                                                         {"action": "reboot", "forced": true}])"));
  EXPECT_EQ(Journal().back()["argv"], Json({"reboot", "-f"}));
  EXPECT_NE(Shell("reboot --now").exitCode, 0);
}

TEST_F(HostSimPower, WithoutAConsoleTheHostStillGoesDown) {
  CommandResult r = Shell("poweroff");
  EXPECT_EQ(r.exitCode, 0);
  EXPECT_NE(r.err.find("konu.pid"), std::string::npos) << r.err;
  EXPECT_EQ(state.Get("/power/state"), "off");
}

// A stale pid file must never make poweroff kill an unrelated process.
TEST_F(HostSimPower, PidOfAnotherProgramIsNotSignalled) {
  FakeConsole other("not-konu", host.Root());
  other.WritePidFile(host);
  CommandResult r = Shell("poweroff");
  EXPECT_EQ(r.exitCode, 0);
  EXPECT_NE(r.err.find("not konu"), std::string::npos) << r.err;
  EXPECT_TRUE(other.StillRunning());
}

TEST_F(HostSimPower, ConsoleOfAnotherHostIsNotSignalled) {
  SimHost otherHost{KONU_HOSTSIM_BIN};
  FakeConsole console("konu", otherHost.Root());
  console.WritePidFile(host);
  EXPECT_EQ(Shell("reboot").exitCode, 0);
  EXPECT_EQ(state.Get("/power/state"), "rebooting");
  EXPECT_TRUE(console.StillRunning());
  Konu::Sim::StateFile otherState(otherHost.Root());
  EXPECT_EQ(otherState.Get("/power/state"), "on");
}

TEST_F(HostSimPower, CardInsertAndRemoveNotifyTheConsole) {
  FakeConsole console("konu", host.Root());
  console.WritePidFile(host);
  CommandResult in = host.Control({"card", "insert", "alice"});
  EXPECT_EQ(in.exitCode, 0) << in.err;
  EXPECT_EQ(state.Get("/smartCards/slots/0/token"), (Json{{"userId", "alice"}}));
  ASSERT_TRUE(KonuTest::WaitFor([&] { return console.Notes().find("USR1") != std::string::npos; }));
  EXPECT_EQ(host.Control({"card", "remove"}).exitCode, 0);
  EXPECT_TRUE(state.Get("/smartCards/slots/0/token").is_null());
  EXPECT_TRUE(KonuTest::WaitFor([&] {
    std::string notes = console.Notes();
    return notes.find("USR1") != notes.rfind("USR1");
  })) << console.Notes();
  EXPECT_TRUE(console.StillRunning());
  EXPECT_EQ(host.Control({"card", "insert"}).exitCode, 2);
  EXPECT_EQ(host.Control({"card", "eject"}).exitCode, 2);
}

}  // namespace
