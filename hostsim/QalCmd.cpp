// qal-cmd: the management service's command tool, acting as a named user.
#include <functional>

#include "hostsim/Tools.h"

namespace Konu::Sim {
namespace {

using Json = nlohmann::json;

struct QalCommand {
  const char* name;
  // Acts on the state; returns the exit code. Writes answers through the run.
  std::function<int(ToolRun&, Json&)> act;
  bool changes;  // false: a query, read without taking the write lock
};

std::string Bool(bool value) { return value ? "true\n" : "false\n"; }

QalCommand SetFlag(const char* name, const char* pointer, bool value) {
  return {name,
          [pointer, value](ToolRun&, Json& s) {
            s[Json::json_pointer(pointer)] = value;
            return 0;
          },
          true};
}

const std::vector<QalCommand>& Commands() {
  static const std::vector<QalCommand> kCommands = {
      {"qalsvc/auth/lockdown_is_enabled",
       [](ToolRun& r, Json& s) {
         r.Out(Bool(s["lockdown"].value("enabled", false)));
         return 0;
       },
       false},
      {"qalsvc/auth/lockdown_is_possible",
       [](ToolRun& r, Json& s) {
         r.Out(Bool(s["lockdown"].value("possible", false)));
         return 0;
       },
       false},
      {"qalsvc/auth/lockdown_mode_enter",
       [](ToolRun& r, Json& s) {
         if (s["lockdown"].value("enabled", false)) return 0;
         if (!s["lockdown"].value("possible", false)) {
           r.Err("Lockdown mode cannot be entered: the host is not managed by a central management server\n");
           return 1;
         }
         s["lockdown"]["enabled"] = true;
         return 0;
       },
       true},
      {"qalsvc/auth/lockdown_mode_exit",
       [](ToolRun&, Json& s) {
         s["lockdown"]["enabled"] = false;
         return 0;
       },
       true},
      SetFlag("hostsvc/start_orin_shell", "/services/OrinShell/running", true),
      SetFlag("hostsvc/stop_orin_shell", "/services/OrinShell/running", false),
      SetFlag("hostsvc/enable_orin_shell", "/services/OrinShell/enabled", true),
      SetFlag("hostsvc/disable_orin_shell", "/services/OrinShell/enabled", false),
      // The management service opens and closes the firewall with the daemon; the init
      // script alone does not.
      {"hostsvc/start_ssh",
       [](ToolRun&, Json& s) {
         s["services"]["SSH"]["running"] = true;
         s["firewall"]["sshServer"]["enabled"] = true;
         return 0;
       },
       true},
      {"hostsvc/stop_ssh",
       [](ToolRun&, Json& s) {
         s["services"]["SSH"]["running"] = false;
         s["firewall"]["sshServer"]["enabled"] = false;
         return 0;
       },
       true},
      SetFlag("hostsvc/enable_ssh", "/services/SSH/enabled", true),
      SetFlag("hostsvc/disable_ssh", "/services/SSH/enabled", false),
      {"hostsvc/autostartmanager/autostop",
       [](ToolRun& r, Json& s) {
         for (Json& vm : s["vms"]) {
           if (vm.value("autostart", false) && vm.value("powerState", "") == "poweredOn") {
             vm["powerState"] = "poweredOff";
             r.Out("Stopped " + vm.value("name", "") + "\n");
           }
         }
         return 0;
       },
       true},
      {"internalsvc/refresh", [](ToolRun&, Json&) { return 0; }, false},
  };
  return kCommands;
}

bool KnownUser(const Json& state, const std::string& user) {
  const Json& users = state.contains("users") ? state["users"] : Json::object();
  return !user.empty() && users.contains(user) && users[user].value("qal", true);
}

}  // namespace

int QalCmd(ToolRun& run) {
  const std::vector<std::string>& args = run.Args();
  if (args.size() < 3 || args[0] != "-U") {
    run.Err("Usage: qal-cmd -U USER COMMAND [ARGUMENTS...]\n");
    return 1;
  }
  run.SetUser(args[1]);
  const std::string& command = args[2];
  Json state = run.State().Read();
  if (!KnownUser(state, args[1])) {
    run.Err("Failed to login as user '" + args[1] + "': unknown user\n");
    return 255;
  }
  for (const QalCommand& c : Commands()) {
    if (command != c.name) continue;
    if (!c.changes) return c.act(run, state);
    int code = 0;
    run.State().Update([&](Json& s) { code = c.act(run, s); });
    return code;
  }
  run.Err("Unknown command '" + command + "'\n");
  return 1;
}

}  // namespace Konu::Sim
