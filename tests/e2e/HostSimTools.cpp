// The simulated host's tools as the console runs them: each acts on the host state and leaves
// its journal line; injected faults make them fail or hang; poweroff and reboot end only the
// console of their own host.
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

std::vector<Json> Journal(const SimHost& host) {
  std::vector<Json> lines;
  std::istringstream in(ReadFileText(host.File("/var/log/hostsim.log")));
  std::string line;
  while (std::getline(in, line)) lines.push_back(Json::parse(line));
  return lines;
}

// The journal's last line must be this run: argument vector, user and exit.
void ExpectLastRun(const SimHost& host, const std::vector<std::string>& argv, const std::string& user,
                   const Json& exit) {
  std::vector<Json> lines = Journal(host);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back()["argv"], Json(argv));
  EXPECT_EQ(lines.back()["user"], user);
  EXPECT_EQ(lines.back()["exit"], exit);
}

class HostSimTools : public ::testing::Test {
 protected:
  SimHost host{KONU_HOSTSIM_BIN};
  Konu::Sim::StateFile state{host.Root()};
  Json Get(const std::string& pointer) { return state.Get(pointer); }
  void Set(const std::string& pointer, const Json& value) {
    state.Update([&](Json& s) { s[Json::json_pointer(pointer)] = value; });
  }
  std::string ProcessUser() {
    CommandResult r = KonuTest::RunCommandLine({"/usr/bin/id", "-un"});
    return r.out.substr(0, r.out.find('\n'));
  }
};

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
  ExpectLastRun(host, {"qal-cmd", "-U", "mallory", "hostsvc/start_ssh"}, "mallory", 255);
  EXPECT_EQ(host.Tool("/bin/qal-cmd", {"-U", "", "internalsvc/refresh"}).exitCode, 255);
  EXPECT_EQ(host.Tool("/bin/qal-cmd", {"-U", "konu", "internalsvc/refresh"}).exitCode, 0);
}

TEST_F(HostSimTools, QalCmdLockdownQueriesAndSwitches) {
  auto query = [&](const char* q) { return host.Tool("/bin/qal-cmd", {"-U", "konu", q}); };
  EXPECT_EQ(query("qalsvc/auth/lockdown_is_enabled").out, "false\n");
  EXPECT_EQ(query("qalsvc/auth/lockdown_is_possible").out, "true\n");
  ExpectLastRun(host, {"qal-cmd", "-U", "konu", "qalsvc/auth/lockdown_is_possible"}, "konu", 0);

  EXPECT_EQ(query("qalsvc/auth/lockdown_mode_enter").exitCode, 0);
  EXPECT_EQ(Get("/lockdown/enabled"), true);
  EXPECT_EQ(query("qalsvc/auth/lockdown_is_enabled").out, "true\n");
  EXPECT_EQ(query("qalsvc/auth/lockdown_mode_exit").exitCode, 0);
  EXPECT_EQ(Get("/lockdown/enabled"), false);

  Set("/lockdown/possible", false);
  CommandResult refused = query("qalsvc/auth/lockdown_mode_enter");
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_FALSE(refused.err.empty());
  EXPECT_EQ(Get("/lockdown/enabled"), false);
  EXPECT_EQ(query("qalsvc/auth/no_such_thing").exitCode, 1);
}

TEST_F(HostSimTools, QalCmdShellAndSshServices) {
  auto qal = [&](const char* c) { return host.Tool("/bin/qal-cmd", {"-U", "root", c}).exitCode; };
  EXPECT_EQ(qal("hostsvc/start_orin_shell"), 0);
  EXPECT_EQ(qal("hostsvc/enable_orin_shell"), 0);
  EXPECT_EQ(Get("/services/OrinShell"), (Json{{"running", true}, {"enabled", true}}));
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
  ExpectLastRun(host, {"SSH", "status"}, ProcessUser(), 3);
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
  ExpectLastRun(host, {"orincfg-advcfg", "-q", "-g", "/UserVars/OrinShellTimeOut"}, ProcessUser(), 0);

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
  ExpectLastRun(host, {"powerOffVms", "--terminate"}, ProcessUser(), 0);
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
  CommandResult r = KonuTest::RunCommandLine(
      {host.File("/bin/sh"), "-c", "/sbin/firmwareConfig.py --reset-only > /dev/null 2>&1"},
      {"PATH=" + host.Root() + "/bin:" + host.Root() + "/sbin"});
  // The console's command line names the host path; on a simulated host the runner maps it.
  if (r.exitCode != 0) r = host.Tool("/sbin/firmwareConfig.py", {"--reset-only"});
  EXPECT_EQ(r.exitCode, 0) << r.err;
  EXPECT_EQ(Get("/host/hostname"), "konu-host");
  EXPECT_EQ(Get("/advancedOptions/~1UserVars~1KonuTimeOut/value"), 600);
  EXPECT_TRUE(host.PasswordIs("root", "konu"));
  EXPECT_EQ(Get("/vms/0/powerState"), "poweredOff");
  EXPECT_EQ(Get("/faults/operations/DnsConfig.SaveConfig"), "disk full");
  EXPECT_EQ(Get("/factoryResets"), 1);
  ExpectLastRun(host, {"firmwareConfig.py", "--reset-only"}, ProcessUser(), 0);
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
  ExpectLastRun(host, {"nukping", "-c", "3", "10.0.0.1"}, ProcessUser(), 1);
}

TEST_F(HostSimTools, FaultMakesAToolFailWithoutActing) {
  Set("/faults/tools/qal-cmd hostsvc~1start_ssh", Json{{"exitCode", 3}, {"stderr", "Connection refused\n"}});
  CommandResult r = host.Tool("/bin/qal-cmd", {"-U", "root", "hostsvc/start_ssh"});
  EXPECT_EQ(r.exitCode, 3);
  EXPECT_EQ(r.err, "Connection refused\n");
  EXPECT_EQ(Get("/services/SSH/running"), false);
  ExpectLastRun(host, {"qal-cmd", "-U", "root", "hostsvc/start_ssh"}, ProcessUser(), 3);
  // Other commands of the same tool still work.
  EXPECT_EQ(host.Tool("/bin/qal-cmd", {"-U", "root", "hostsvc/start_orin_shell"}).exitCode, 0);
}

TEST_F(HostSimTools, CountedFaultFailsOnceThenTheToolWorks) {
  Set("/faults/tools/backup.sh", Json{{"exitCode", 1}, {"times", 1}});
  EXPECT_EQ(host.Tool("/sbin/backup.sh").exitCode, 1);
  EXPECT_EQ(Get("/backups").size(), 0u);
  EXPECT_EQ(host.Tool("/sbin/backup.sh").exitCode, 0);
  EXPECT_EQ(Get("/backups").size(), 1u);
}

TEST_F(HostSimTools, FaultOutputStandsInForTheAnswer) {
  Set("/faults/tools/qal-cmd qalsvc~1auth~1lockdown_is_enabled", Json{{"exitCode", 0}, {"stdout", "True\n"}});
  CommandResult r = host.Tool("/bin/qal-cmd", {"-U", "konu", "qalsvc/auth/lockdown_is_enabled"});
  EXPECT_EQ(r.exitCode, 0);
  EXPECT_EQ(r.out, "True\n");
}

TEST_F(HostSimTools, HangingToolRunsUntilKilled) {
  Set("/faults/tools/SSH status", Json{{"hang", true}});
  std::string script = host.File("/etc/init.d/SSH");
  char* argv[] = {const_cast<char*>("/bin/sh"), script.data(), const_cast<char*>("status"), nullptr};
  char* envp[] = {nullptr};
  pid_t pid = 0;
  ASSERT_EQ(posix_spawn(&pid, "/bin/sh", nullptr, nullptr, argv, envp), 0);
  ASSERT_TRUE(KonuTest::WaitFor([&] {
    std::vector<Json> lines = Journal(host);
    return !lines.empty() && lines.back()["exit"] == "hang";
  }));
  int status = 0;
  EXPECT_EQ(waitpid(pid, &status, WNOHANG), 0) << "the hanging tool ended by itself";
  kill(pid, SIGKILL);
  ASSERT_EQ(waitpid(pid, &status, 0), pid);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  ExpectLastRun(host, {"SSH", "status"}, ProcessUser(), "hang");
}

TEST_F(HostSimTools, MalformedStateMakesToolsFailWithTheFileNamed) {
  std::string path = host.File("/etc/konu-sim/host.json");
  { std::ofstream(path, std::ios::trunc) << "{\"users\": [1, 2,]}"; }
  CommandResult r = host.Tool("/bin/qal-cmd", {"-U", "root", "hostsvc/start_ssh"});
  EXPECT_EQ(r.exitCode, 2);
  EXPECT_NE(r.err.find(path), std::string::npos) << r.err;
  EXPECT_EQ(ReadFileText(path), "{\"users\": [1, 2,]}");
  ExpectLastRun(host, {"qal-cmd", "-U", "root", "hostsvc/start_ssh"}, "root", 2);
}

}  // namespace
