// The log table and the pager run around which the menu lends out the terminal.
#include "screens/SystemLogs.h"

#include <sys/stat.h>

#include "app/Runtime.h"
#include "host/HostRoot.h"
#include "ops/Pager.h"
#include "ui/Frame.h"
#include "ui/TerminalLoan.h"

namespace Konu {

const std::vector<SystemLog>& SystemLogTable() {
  // "Availibility" is how operators know the agent's log; keep the spelling.
  static const std::vector<SystemLog> kLogs = {
      {"Syslog", "/var/log/syslog.log"},
      {"Nukernel", "/var/log/nukernel.log"},
      {"Config", "/var/log/sysboot.log"},
      {"Management Agent (mgmtd)", "/var/log/mgmtd.log"},
      {"Pallas Agent (tmga)", "/var/log/tmga.log"},
      {"High Availibility Agent (aam)", "/var/log/aam.log"},
      {"Corbel Orin Observation log (zebd)", "/var/log/zebd.log"},
  };
  return kLogs;
}

std::vector<const SystemLog*> AvailableLogs() {
  std::vector<const SystemLog*> available;
  for (const SystemLog& log : SystemLogTable()) {
    struct stat info;
    if (stat(HostPath(log.path).c_str(), &info) == 0) available.push_back(&log);
  }
  return available;
}

const SystemLog* AvailableLogByNumber(int number) {
  std::vector<const SystemLog*> available = AvailableLogs();
  if (number < 1 || number > static_cast<int>(available.size())) return nullptr;
  return available[number - 1];
}

void ShowLogInPager(Frame& screen, const SystemLog& log) {
  Runtime& runtime = Runtime::Get();
  {
    TerminalLoan loan;
    runtime.topFrame = nullptr;  // no notification reaches the screen meanwhile
    ViewInPager(log.path);
  }
  screen.SetActive(false);
  screen.SetActive(true);
  runtime.topFrame = &screen;
  TerminalLoan::RepaintScreen();
}

}  // namespace Konu
