// Power of a Linux host: virtual machines through libvirt's virsh, poweroff and reboot
// through systemd, and the reset of what KONU itself wrote.
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "host/linux/LinuxOptions.h"
#include "linuxtools/ToolRun.h"

namespace Konu::LinuxTools {
namespace {

constexpr int kVirshSeconds = 30;

// The running domains ("virsh list --name --state-running [--autostart]"). False when virsh
// is missing (no libvirt: no machines) or failed (reported).
bool RunningDomains(ToolRun& run, bool autostartOnly, std::vector<std::string>* names, bool* noLibvirt) {
  std::vector<std::string> argv = {"virsh", "list", "--name", "--state-running"};
  if (autostartOnly) argv.push_back("--autostart");
  HostCtl::Linux::CommandResult list = run.Run(argv, kVirshSeconds);
  *noLibvirt = list.missing;
  if (!list.Ok()) {
    if (!list.missing) run.Fail(HostCtl::Linux::DescribeFailure("virsh", list));
    return false;
  }
  std::istringstream lines(list.out);
  for (std::string name; std::getline(lines, name);)
    if (!name.empty()) names->push_back(name);
  return true;
}

void Pause(int seconds) {
  timespec pause{seconds, 0};
  nanosleep(&pause, nullptr);
}

// Shuts the domains down and waits, a bounded time, until libvirt no longer runs them.
int ShutDown(ToolRun& run, const std::vector<std::string>& names, bool autostartOnly) {
  int failed = 0;
  for (const std::string& name : names)
    if (!run.RunOrReport({"virsh", "shutdown", name}, kVirshSeconds)) ++failed;
  int waitSeconds = std::atoi(run.Config("vm-shutdown-seconds", "120").c_str());
  std::vector<std::string> still = names;
  for (int waited = 0;; ++waited) {
    std::vector<std::string> running;
    bool noLibvirt = false;
    if (!RunningDomains(run, autostartOnly, &running, &noLibvirt)) return 1;
    std::vector<std::string> left;
    for (const std::string& name : names)
      for (const std::string& r : running)
        if (r == name) left.push_back(name);
    still = left;
    if (still.empty() || waited >= waitSeconds) break;
    Pause(1);
  }
  for (const std::string& name : names) {
    bool down = true;
    for (const std::string& s : still) down = down && s != name;
    printf(down ? "Powered off %s\n" : "%s did not shut down\n", name.c_str());
  }
  return failed ? 1 : 0;
}

}  // namespace

int ShutDownAutostartedVms(ToolRun& run) {
  std::vector<std::string> names;
  bool noLibvirt = false;
  if (!RunningDomains(run, true, &names, &noLibvirt)) return noLibvirt ? 0 : 1;
  return ShutDown(run, names, true);
}

int PowerOffVms(ToolRun& run) {
  bool terminate = false;
  for (const std::string& arg : run.Args()) {
    if (arg != "--terminate") return run.Usage("powerOffVms [--terminate]");
    terminate = true;
  }
  std::vector<std::string> names;
  bool noLibvirt = false;
  if (!RunningDomains(run, false, &names, &noLibvirt)) {
    if (!noLibvirt) return 1;
    puts("No libvirt on this host: no virtual machines to power off");
    return 0;
  }
  if (!terminate) return ShutDown(run, names, false);
  int failed = 0;
  for (const std::string& name : names) {
    if (run.RunOrReport({"virsh", "destroy", name}, kVirshSeconds))
      printf("Terminated %s\n", name.c_str());
    else
      ++failed;
  }
  return failed ? 1 : 0;
}

int PowerOff(ToolRun& run) {
  if (!run.Args().empty()) return run.Usage("poweroff");
  return run.RunOrReport({"systemctl", "poweroff"}) ? 0 : 1;
}

int Reboot(ToolRun& run) {
  bool forced = false;
  for (const std::string& arg : run.Args()) {
    if (arg != "-f") return run.Usage("reboot [-f]");
    forced = true;
  }
  std::vector<std::string> argv = {"systemctl", "reboot"};
  if (forced) argv.push_back("--force");
  return run.RunOrReport(argv) ? 0 : 1;
}

// Back to how the machine was before KONU: KONU's options, the shell idle timeout it wrote,
// its shell timer and the keyboard layout it changed. Nothing else of the machine is touched.
int FirmwareConfig(ToolRun& run) {
  if (run.Args() != std::vector<std::string>{"--reset-only"})
    return run.Usage("firmwareConfig.py --reset-only", 2);
  puts("Resetting system configuration to factory defaults");
  int failed = 0;
  std::string keyboard = run.File(HostCtl::Linux::kKeyboardOriginalFile);
  std::string layout;
  if (std::ifstream(keyboard) >> layout) {
    HostCtl::Linux::CommandResult set = run.Run({"localectl", "set-keymap", layout}, 30);
    if (set.missing) set = run.Run({"loadkeys", layout}, 30);
    if (set.Ok()) {
      unlink(keyboard.c_str());
    } else {
      run.Fail("keyboard layout not restored: " + HostCtl::Linux::DescribeFailure("localectl", set));
      ++failed;
    }
  }
  for (const char* file : {HostCtl::Linux::kOptionsFile, "/etc/profile.d/konu-shell-timeout.sh"})
    unlink(run.File(file).c_str());
  run.Run({"systemctl", "stop", "konu-shell-timeout.timer"}, 30);  // none armed is fine
  return failed ? 1 : 0;
}

}  // namespace Konu::LinuxTools
