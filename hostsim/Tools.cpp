// The tools of a simulated host: one table of name, host path and action.
#include "hostsim/Tools.h"

namespace Konu::Sim {

const std::vector<ToolEntry>& ToolTable() {
  static const std::vector<ToolEntry> kTools = {
      {"qal-cmd", "/bin/qal-cmd", QalCmd, "management service commands and queries (-U USER COMMAND)"},
      {"OrinShell", "/etc/init.d/OrinShell", InitScript, "host shell service {start|stop|restart|status}"},
      {"SSH", "/etc/init.d/SSH", InitScript, "SSH service {start|stop|restart|status}"},
      {"orincfg-advcfg", "/sbin/orincfg-advcfg", AdvCfg, "read or set an advanced option (-q -g OPTION)"},
      {"orincli", "/sbin/orincli", OptionCli, "system settings advanced set -o OPTION -i VALUE"},
      {"localcli", "/sbin/localcli", OptionCli, "the same as orincli, without the management service"},
      {"powerOffVms", "/bin/powerOffVms", PowerOffVms, "power off running virtual machines [--terminate]"},
      {"services.sh", "/sbin/services.sh", ServicesSh, "management agents {start|stop|restart}"},
      {"nukbacktrace", "/sbin/nukbacktrace", NukBacktrace,
       "live core of a process (-n NAME -o PATTERN -d DIR)"},
      {"firmwareConfig.py", "/sbin/firmwareConfig.py", FirmwareConfig, "--reset-only: factory reset"},
      {"backup.sh", "/sbin/backup.sh", BackupSh, "save the host configuration"},
      {"nukping", "/bin/nukping", NukPing, "ping (-c COUNT [-I INTERFACE] ADDRESS)"},
      {"poweroff", "/bin/poweroff", PowerOff, "power the host off"},
      {"reboot", "/bin/reboot", Reboot, "restart the host [-f]"},
  };
  return kTools;
}

const ToolEntry* FindTool(const std::string& name) {
  for (const ToolEntry& tool : ToolTable())
    if (name == tool.name) return &tool;
  return nullptr;
}

}  // namespace Konu::Sim
