// Service scripts of a simulated host: the OrinShell and SSH init scripts and services.sh.
#include "hostsim/Tools.h"

namespace Konu::Sim {
namespace {

using Json = nlohmann::json;

std::vector<std::string> AgentNames(const Json& state) {
  std::vector<std::string> names;
  if (!state.contains("services")) return names;
  for (const auto& [name, service] : state["services"].items())
    if (service.value("agent", false)) names.push_back(name);
  return names;
}

}  // namespace

int InitScript(ToolRun& run) {
  const std::string& service = run.Name();
  const std::string action = run.Args().empty() ? "" : run.Args()[0];
  Json::json_pointer running("/services/" + service + "/running");
  if (action == "status") {
    Json state = run.State().Read();
    bool on = state.contains(running) && state.at(running).get<bool>();
    run.Out(service + (on ? " is running\n" : " is not running\n"));
    return on ? 0 : 3;
  }
  if (action == "start" || action == "stop" || action == "restart") {
    bool on = action != "stop";
    run.State().Update([&](Json& s) { s[running] = on; });
    run.Out((action == "stop"    ? "Stopping "
             : action == "start" ? "Starting "
                                 : "Restarting ") +
            service + "\n");
    return 0;
  }
  run.Err("Usage: /etc/init.d/" + service + " {start|stop|restart|status}\n");
  return 1;
}

int ServicesSh(ToolRun& run) {
  const std::string action = run.Args().empty() ? "" : run.Args()[0];
  if (action != "start" && action != "stop" && action != "restart") {
    run.Err("Usage: services.sh {start|stop|restart}\n");
    return 1;
  }
  run.State().Update([&](Json& s) {
    bool wasDown = false;
    for (const std::string& name : AgentNames(s)) {
      Json& service = s["services"][name];
      if (!service.value("running", false)) wasDown = true;
      if (action != "start") {
        service["running"] = false;
        run.Out("Stopping " + name + "\n");
      }
      if (action != "stop") {
        service["running"] = true;
        run.Out("Starting " + name + "\n");
      }
    }
    // "restart" always cycles the agents; "start" counts only when they had been stopped.
    if (action == "restart" || (action == "start" && wasDown))
      s["agents"]["restarts"] = s["agents"].value("restarts", 0) + 1;
  });
  return 0;
}

}  // namespace Konu::Sim
