// Power of a simulated host: powerOffVms, poweroff, reboot and the factory reset.
#include <signal.h>

#include "hostsim/Create.h"
#include "hostsim/Tools.h"

namespace Konu::Sim {
namespace {

using Json = nlohmann::json;

// Marks the host and then ends the console, as a host going down would.
int GoDown(ToolRun& run, const std::string& state, bool forced) {
  run.State().Update([&](Json& s) {
    s["power"]["state"] = state;
    s["power"]["history"].push_back({{"action", run.Name()}, {"forced", forced}});
  });
  run.SignalConsoleWhenDone(SIGTERM);
  return 0;
}

}  // namespace

int PowerOffVms(ToolRun& run) {
  bool terminate = false;
  for (const std::string& arg : run.Args()) {
    if (arg != "--terminate") {
      run.Err("Usage: powerOffVms [--terminate]\n");
      return 1;
    }
    terminate = true;
  }
  run.State().Update([&](Json& s) {
    for (Json& vm : s["vms"]) {
      if (vm.value("powerState", "") != "poweredOn") continue;
      if (vm.value("ignoresShutdown", false) && !terminate) {
        run.Out(vm.value("name", "") + " did not shut down\n");
        continue;
      }
      vm["powerState"] = "poweredOff";
      run.Out((terminate ? "Terminated " : "Powered off ") + vm.value("name", "") + "\n");
    }
  });
  return 0;
}

int PowerOff(ToolRun& run) {
  if (!run.Args().empty()) {
    run.Err("Usage: poweroff\n");
    return 1;
  }
  return GoDown(run, "off", false);
}

int Reboot(ToolRun& run) {
  bool forced = false;
  for (const std::string& arg : run.Args()) {
    if (arg != "-f") {
      run.Err("Usage: reboot [-f]\n");
      return 1;
    }
    forced = true;
  }
  // The host comes back with the IPv6 setting chosen for the next boot.
  run.State().Update([](Json& s) {
    const Json::json_pointer next("/network/ipv6EnabledAfterReboot");
    if (s.contains(next)) s["network"]["ipv6Enabled"] = s.at(next);
  });
  return GoDown(run, "rebooting", forced);
}

// Back to the factory configuration. What is not configuration stays: the machines, the
// power state, the card readers, the records of backups and cores, the injected faults.
int FirmwareConfig(ToolRun& run) {
  if (run.Args() != std::vector<std::string>{"--reset-only"}) {
    run.Err("Usage: firmwareConfig.py --reset-only\n");
    return 2;
  }
  run.State().Update([&](Json& s) {
    Json fresh = FactoryHostState();
    for (const char* kept : {"vms", "power", "smartCards", "backups", "coreDumps", "faults", "hardware"})
      if (s.contains(kept)) fresh[kept] = s[kept];
    fresh["factoryResets"] = s.value("factoryResets", 0) + 1;
    s = fresh;
  });
  run.Out("Resetting system configuration to factory defaults\n");
  return 0;
}

}  // namespace Konu::Sim
