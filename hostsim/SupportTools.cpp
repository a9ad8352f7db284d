// Support tools of a simulated host: live cores, configuration backup and ping.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>

#include "host/ToolArguments.h"
#include "hostsim/Tools.h"

namespace Konu::Sim {
namespace {

using Json = nlohmann::json;

bool Contains(const Json& list, const std::string& text) {
  return list.is_array() && std::find(list.begin(), list.end(), Json(text)) != list.end();
}

}  // namespace

// nukbacktrace [-w] [-c] -n PROCESS -o PATTERN -d DIR: '%' in the pattern becomes the pid.
int NukBacktrace(ToolRun& run) {
  BacktraceArguments parsed = ParseBacktrace(run.Args());
  // Everything stays inside the root: no '..' in the folder either.
  if (!parsed.ok || parsed.dir.find("..") != std::string::npos) {
    run.Err(std::string("Usage: ") + BacktraceArguments::kUsage + "\n");
    return 1;
  }
  const std::string& process = parsed.process;
  const std::string& pattern = parsed.pattern;
  std::string& dir = parsed.dir;
  Json state = run.State().Read();
  Json::json_pointer running("/services/" + process + "/running");
  if (!state.contains(running) || !state.at(running).get<bool>()) {
    run.Err("nukbacktrace: process " + process + " not found\n");
    return 1;
  }
  std::string pid = std::to_string(4000 + state["agents"].value("restarts", 0));
  std::string name = pattern;
  for (size_t at = name.find('%'); at != std::string::npos; at = name.find('%', at + pid.size()))
    name.replace(at, 1, pid);
  if (dir.empty() || dir.back() != '/') dir += '/';
  std::string hostPath = dir + name + ".core";
  int fd = open(run.HostFile(hostPath).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) {
    run.Err("nukbacktrace: cannot write " + hostPath + "\n");
    return 1;
  }
  std::string core =
      "\x7f"
      "ELF live core of " +
      process + " pid " + pid + "\n";
  bool written = write(fd, core.data(), core.size()) == static_cast<ssize_t>(core.size());
  close(fd);
  if (!written) {
    run.Err("nukbacktrace: cannot write " + hostPath + "\n");
    return 1;
  }
  run.State().Update([&](Json& s) { s["coreDumps"].push_back({{"process", process}, {"path", hostPath}}); });
  run.Out("Live core of " + process + " written to " + hostPath + "\n");
  return 0;
}

int BackupSh(ToolRun& run) {
  run.State().Update([&](Json& s) {
    s["backups"].push_back({{"time", static_cast<long long>(time(nullptr))}, {"args", run.Args()}});
  });
  return 0;
}

// nukping [-c COUNT] [-I INTERFACE] ADDRESS: answers for the reachable addresses of the state,
// sent through an interface that is up.
int NukPing(ToolRun& run) {
  const PingArguments ping = ParsePing(run.Args());
  if (!ping.ok) {
    run.Err(std::string("Usage: ") + PingArguments::kUsage + "\n");
    return 1;
  }
  const int count = ping.count;
  const std::string& address = ping.address;
  Json state = run.State().Read();
  std::string nic =
      ping.interface.empty() ? state["network"].value("managementInterface", "") : ping.interface;
  Json::json_pointer up("/network/nukNics/" + nic + "/up");
  if (!state.contains(up)) {
    run.Err("nukping: unknown interface " + nic + "\n");
    return 1;
  }
  bool answers = state.at(up).get<bool>() && Contains(state["network"]["reachable"], address);
  run.Out("PING " + address + ": 56 data bytes\n");
  for (int i = 0; answers && i < count; ++i)
    run.Out("64 bytes from " + address + ": icmp_seq=" + std::to_string(i) + " ttl=64 time=0.2" +
            std::to_string(i) + " ms\n");
  run.Out("\n--- " + address + " ping statistics ---\n" + std::to_string(count) + " packets transmitted, " +
          std::to_string(answers ? count : 0) + " packets received, " + (answers ? "0" : "100") +
          "% packet loss\n");
  return answers ? 0 : 1;
}

}  // namespace Konu::Sim
