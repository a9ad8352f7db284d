// The tools of a simulated host: one table of name, host path and action.
#pragma once

#include <string>
#include <vector>

#include "hostsim/ToolRun.h"

namespace Konu::Sim {

struct ToolEntry {
  const char* name;      // argument zero and the journal's first word
  const char* hostPath;  // where create puts its wrapper inside the root
  int (*body)(ToolRun&);
  const char* summary;
};

const std::vector<ToolEntry>& ToolTable();
const ToolEntry* FindTool(const std::string& name);

// Tool actions, grouped by file.
int QalCmd(ToolRun& run);          // QalCmd.cpp
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

}  // namespace Konu::Sim
