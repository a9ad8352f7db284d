// The command lines of the host's tools.
#include "host/ToolArguments.h"

#include <algorithm>
#include <cstdlib>

namespace Konu {

AdvCfgArguments ParseAdvCfg(const std::vector<std::string>& args) {
  AdvCfgArguments a;
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "-q") {
      a.quiet = true;
    } else if (args[i] == "-g") {
      a.get = true;
    } else if (args[i] == "-s" && i + 1 < args.size()) {
      a.set = true;
      a.value = args[++i];
    } else if (args[i] == "-o" && i + 1 < args.size()) {
      a.option = args[++i];
    } else if (!args[i].empty() && args[i][0] != '-' && a.option.empty()) {
      a.option = args[i];
    } else {
      return a;
    }
  }
  a.ok = !a.option.empty() && a.get != a.set;
  return a;
}

OptionCliArguments ParseOptionCli(const std::vector<std::string>& args) {
  OptionCliArguments a;
  if (args.size() < 4 || args[0] != "system" || args[1] != "settings" || args[2] != "advanced") return a;
  for (size_t i = 4; i < args.size(); ++i) {
    bool hasNext = i + 1 < args.size();
    if ((args[i] == "-o" || args[i] == "--option") && hasNext) {
      a.option = args[++i];
    } else if ((args[i] == "-i" || args[i] == "--int-value") && hasNext) {
      a.integer = true;
      a.value = args[++i];
    } else if ((args[i] == "-s" || args[i] == "--string-value") && hasNext) {
      a.text = true;
      a.value = args[++i];
    } else if (args[i] == "-d" || args[i] == "--default") {
      a.reset = true;
    } else {
      return a;
    }
  }
  a.list = args[3] == "list";
  bool set = args[3] == "set" && a.integer + a.text + a.reset == 1;
  a.ok = !a.option.empty() && (a.list || set);
  return a;
}

BacktraceArguments ParseBacktrace(const std::vector<std::string>& args) {
  BacktraceArguments a;
  for (size_t i = 0; i < args.size(); ++i) {
    bool hasNext = i + 1 < args.size();
    if (args[i] == "-w" || args[i] == "-c") continue;
    if (args[i] == "-n" && hasNext) {
      a.process = args[++i];
    } else if (args[i] == "-o" && hasNext) {
      a.pattern = args[++i];
    } else if (args[i] == "-d" && hasNext) {
      a.dir = args[++i];
    } else {
      return a;
    }
  }
  a.ok = !a.process.empty() && a.pattern.find('/') == std::string::npos;
  return a;
}

PingArguments ParsePing(const std::vector<std::string>& args) {
  PingArguments a;
  for (size_t i = 0; i < args.size(); ++i) {
    bool hasNext = i + 1 < args.size();
    if (args[i] == "-c" && hasNext) {
      a.count = std::max(1, std::min(100, std::atoi(args[++i].c_str())));
    } else if (args[i] == "-I" && hasNext) {
      a.interface = args[++i];
    } else if (!args[i].empty() && args[i][0] != '-' && a.address.empty()) {
      a.address = args[i];
    } else {
      return a;
    }
  }
  a.ok = !a.address.empty();
  return a;
}

}  // namespace Konu
