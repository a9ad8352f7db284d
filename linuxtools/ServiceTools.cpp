// Services of a Linux host through systemd: qal-cmd's subset, the shell and SSH service
// scripts with the shell availability timeout, and the management agents (services.sh).
#include <pwd.h>

#include <cstdio>
#include <functional>
#include <sstream>

#include "host/linux/LinuxOptions.h"
#include "linuxtools/ToolRun.h"

namespace Konu::LinuxTools {
namespace {

constexpr const char kShellTimer[] = "konu-shell-timeout";

// After the shell or SSH is started: a transient timer turns both off again when the
// availability timeout ("/UserVars/OrinShellTimeOut") is set. A new start re-arms it.
bool ArmShellTimeout(ToolRun& run) {
  auto seconds = HostCtl::Linux::LinuxOptions(run.Root().empty() ? "/" : run.Root())
                     .GetInteger("/UserVars/OrinShellTimeOut");
  run.Run({"systemctl", "stop", std::string(kShellTimer) + ".timer"}, 30);  // none armed is fine
  if (!seconds || *seconds <= 0) return true;
  return run.RunOrReport({"systemd-run", "--unit=" + std::string(kShellTimer),
                          "--on-active=" + std::to_string(*seconds) + "s", "--timer-property=AccuracySec=1s",
                          "systemctl", "stop", ShellUnit(run), SshUnit(run)});
}

// start|stop|restart|status of one unit; status exits 0 exactly when it is running.
int ServiceAction(ToolRun& run, const std::string& label, const std::string& unit,
                  const std::string& action) {
  if (action == "status") {
    HostCtl::Linux::CommandResult state = run.Run({"systemctl", "is-active", "--quiet", unit}, 30);
    if (state.missing || state.timedOut)
      return run.Fail(HostCtl::Linux::DescribeFailure("systemctl", state), 4);
    printf("%s is %s\n", label.c_str(), state.Ok() ? "running" : "not running");
    return state.Ok() ? 0 : 3;
  }
  if (action != "start" && action != "stop" && action != "restart") return -1;
  if (!run.RunOrReport({"systemctl", action, unit})) return 1;
  printf("%s %s\n",
         action == "stop"    ? "Stopped"
         : action == "start" ? "Started"
                             : "Restarted",
         label.c_str());
  if (action != "stop" && !ArmShellTimeout(run)) return 1;
  return 0;
}

int EnableUnit(ToolRun& run, const std::string& unit, bool on) {
  return run.RunOrReport({"systemctl", on ? "enable" : "disable", unit}) ? 0 : 1;
}

struct QalCommand {
  const char* name;
  std::function<int(ToolRun&)> act;
};

const std::vector<QalCommand>& Commands() {
  static const std::vector<QalCommand> kCommands = {
      // Lockdown needs a central management server that takes the host over; a plain Linux
      // host has none, so lockdown is honestly never possible here.
      {"qalsvc/auth/lockdown_is_enabled", [](ToolRun&) { return puts("false"), 0; }},
      {"qalsvc/auth/lockdown_is_possible", [](ToolRun&) { return puts("false"), 0; }},
      {"qalsvc/auth/lockdown_mode_enter",
       [](ToolRun& r) {
         return r.Fail(
             "Lockdown mode cannot be entered: this host is not managed by a central management server");
       }},
      {"qalsvc/auth/lockdown_mode_exit", [](ToolRun&) { return 0; }},
      {"hostsvc/start_orin_shell",
       [](ToolRun& r) { return ServiceAction(r, "Orin Shell", ShellUnit(r), "start"); }},
      {"hostsvc/stop_orin_shell",
       [](ToolRun& r) { return ServiceAction(r, "Orin Shell", ShellUnit(r), "stop"); }},
      {"hostsvc/enable_orin_shell", [](ToolRun& r) { return EnableUnit(r, ShellUnit(r), true); }},
      {"hostsvc/disable_orin_shell", [](ToolRun& r) { return EnableUnit(r, ShellUnit(r), false); }},
      {"hostsvc/start_ssh", [](ToolRun& r) { return ServiceAction(r, "SSH", SshUnit(r), "start"); }},
      {"hostsvc/stop_ssh", [](ToolRun& r) { return ServiceAction(r, "SSH", SshUnit(r), "stop"); }},
      {"hostsvc/enable_ssh", [](ToolRun& r) { return EnableUnit(r, SshUnit(r), true); }},
      {"hostsvc/disable_ssh", [](ToolRun& r) { return EnableUnit(r, SshUnit(r), false); }},
      {"hostsvc/autostartmanager/autostop", ShutDownAutostartedVms},
      {"internalsvc/refresh", [](ToolRun&) { return 0; }},
  };
  return kCommands;
}

}  // namespace

int QalCmd(ToolRun& run) {
  const std::vector<std::string>& args = run.Args();
  if (args.size() < 3 || args[0] != "-U") return run.Usage("qal-cmd -U USER COMMAND [ARGUMENTS...]");
  // The console's own service user need not be an account of the machine.
  if (args[1] != "konu" && !getpwnam(args[1].c_str())) {
    fprintf(stderr, "Failed to login as user '%s': unknown user\n", args[1].c_str());
    return 255;
  }
  for (const QalCommand& command : Commands())
    if (args[2] == command.name) return command.act(run);
  return run.Fail("Unknown command '" + args[2] + "'");
}

int InitScript(ToolRun& run) {
  bool shell = run.Name() == "OrinShell";
  const std::string action = run.Args().size() == 1 ? run.Args()[0] : "";
  int code = ServiceAction(run, shell ? "Orin Shell" : "SSH", shell ? ShellUnit(run) : SshUnit(run), action);
  return code >= 0 ? code : run.Usage(run.Name() + " {start|stop|restart|status}");
}

int ServicesSh(ToolRun& run) {
  const std::string action = run.Args().size() == 1 ? run.Args()[0] : "";
  if (action != "start" && action != "stop" && action != "restart")
    return run.Usage("services.sh {start|stop|restart}");
  std::vector<std::string> argv = {"systemctl", action};
  std::istringstream units(run.Config("agents", "libvirtd.service"));
  for (std::string unit; units >> unit;) argv.push_back(unit);
  if (argv.size() == 2) return run.Fail("no management agents configured (agents= in /etc/konu/konu.conf)");
  if (!run.RunOrReport(argv, 120)) return 1;
  for (size_t i = 2; i < argv.size(); ++i)
    printf("%s %s\n",
           action == "stop"    ? "Stopped"
           : action == "start" ? "Started"
                               : "Restarted",
           argv[i].c_str());
  return 0;
}

}  // namespace Konu::LinuxTools
