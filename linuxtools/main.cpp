// konu-tools: KONU's Linux host tools, one program with the tools' names as personalities.
// Installed in /usr/libexec/konu with a two-line script per tool that runs
// "konu-tools NAME ARGUMENTS...", so a shell can run each tool as a script too.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "linuxtools/ToolRun.h"

namespace {

using namespace Konu::LinuxTools;

struct Tool {
  const char* name;
  int (*body)(ToolRun&);
  const char* summary;
};

constexpr Tool kTools[] = {
    {"qal-cmd", QalCmd, "management service commands and queries (-U USER COMMAND)"},
    {"OrinShell", InitScript, "the local shell (a getty) {start|stop|restart|status}"},
    {"SSH", InitScript, "the SSH service {start|stop|restart|status}"},
    {"orincfg-advcfg", AdvCfg, "read or set an advanced option (-q -g OPTION)"},
    {"orincli", OptionCli, "system settings advanced {set|list} -o OPTION ..."},
    {"localcli", OptionCli, "the same as orincli"},
    {"powerOffVms", PowerOffVms, "shut down running virtual machines [--terminate]"},
    {"services.sh", ServicesSh, "management agents {start|stop|restart}"},
    {"nukbacktrace", NukBacktrace, "live core of a process (-n NAME -o PATTERN -d DIR)"},
    {"firmwareConfig.py", FirmwareConfig, "--reset-only: undo KONU's own configuration"},
    {"backup.sh", BackupSh, "save KONU's configuration under /var/backups/konu"},
    {"nukping", NukPing, "ping (-c COUNT [-I INTERFACE] ADDRESS)"},
    {"poweroff", PowerOff, "power the host off"},
    {"reboot", Reboot, "restart the host [-f]"},
};

// The console runs its children with KONU's tool folder as their only PATH; the machine's
// commands a tool needs (systemctl, virsh, ...) are found in the machine's own folders.
constexpr char kMachinePath[] = "/usr/sbin:/usr/bin:/sbin:/bin";

int Help(FILE* to) {
  fputs("Usage: konu-tools NAME [ARGUMENTS...]\n\nKONU's host tools on a Linux machine:\n", to);
  for (const Tool& tool : kTools) fprintf(to, "  %-18s %s\n", tool.name, tool.summary);
  fputs("\nKONU_TOOLS_ROOT=DIR places every file the tools write under DIR.\n", to);
  fprintf(to, "KONU_TOOLS_PATH=DIRS is searched for the machine's commands instead of %s.\n", kMachinePath);
  return to == stdout ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  std::string self = argc > 0 ? argv[0] : "konu-tools";
  self = self.substr(self.rfind('/') + 1);
  int first = 1;
  if (self == "konu-tools") {
    if (argc < 2) return Help(stderr);
    if (strcmp(argv[1], "--help") == 0 || strcmp(argv[1], "-h") == 0) return Help(stdout);
    self = argv[1];
    first = 2;
  }
  const char* machinePath = getenv("KONU_TOOLS_PATH");
  setenv("PATH", machinePath && *machinePath ? machinePath : kMachinePath, 1);
  for (const Tool& tool : kTools) {
    if (self != tool.name) continue;
    ToolRun run(self, std::vector<std::string>(argv + first, argv + argc));
    return tool.body(run);
  }
  fprintf(stderr, "konu-tools: no tool named \"%s\"\n", self.c_str());
  return 127;
}
