// One run of a Linux host tool: its name, arguments, root, KONU's configuration and the
// machine's commands it calls, each with a time limit.
#pragma once

#include <string>
#include <vector>

#include "host/linux/LinuxCommand.h"

namespace Konu::LinuxTools {

class ToolRun {
 public:
  ToolRun(std::string name, std::vector<std::string> args);

  const std::string& Name() const { return name_; }
  const std::vector<std::string>& Args() const { return args_; }
  // The tools act on "/"; KONU_TOOLS_ROOT moves every file they write (tests).
  const std::string& Root() const { return root_; }
  std::string File(const std::string& absolutePath) const;

  // A setting of /etc/konu/konu.conf ("agents=libvirtd.service"), or `fallback`.
  std::string Config(const std::string& key, const std::string& fallback) const;

  // Runs a machine command (found on PATH) for at most `seconds`.
  HostCtl::Linux::CommandResult Run(const std::vector<std::string>& argv, int seconds = 60) const;
  // Runs it and, when it fails, prints why ("NAME: systemctl not found") and returns false.
  bool RunOrReport(const std::vector<std::string>& argv, int seconds = 60) const;

  // "NAME: message" on standard error; returns `code`.
  int Fail(const std::string& message, int code = 1) const;
  int Usage(const std::string& usage, int code = 1) const;

 private:
  std::string name_;
  std::vector<std::string> args_;
  std::string root_;
};

// The systemd units KONU's tools control, from the configuration.
std::string ShellUnit(const ToolRun& run);
std::string SshUnit(const ToolRun& run);

// Tool actions, grouped by file.
int QalCmd(ToolRun& run);          // ServiceTools.cpp
int InitScript(ToolRun& run);      // ServiceTools.cpp: OrinShell, SSH
int ServicesSh(ToolRun& run);      // ServiceTools.cpp
int AdvCfg(ToolRun& run);          // OptionTools.cpp: orincfg-advcfg
int OptionCli(ToolRun& run);       // OptionTools.cpp: orincli, localcli
int PowerOffVms(ToolRun& run);     // PowerTools.cpp
int PowerOff(ToolRun& run);        // PowerTools.cpp: poweroff
int Reboot(ToolRun& run);          // PowerTools.cpp: reboot [-f]
int FirmwareConfig(ToolRun& run);  // PowerTools.cpp: firmwareConfig.py
int NukBacktrace(ToolRun& run);    // SupportTools.cpp
int BackupSh(ToolRun& run);        // SupportTools.cpp
int NukPing(ToolRun& run);         // SupportTools.cpp

// Shared between the tools.
int ShutDownAutostartedVms(ToolRun& run);  // PowerTools.cpp: qal-cmd's autostop
void WriteShellIdleTimeout(ToolRun& run);  // OptionTools.cpp: TMOUT in /etc/profile.d

}  // namespace Konu::LinuxTools
