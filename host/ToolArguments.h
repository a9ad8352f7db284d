// The command lines of the host's tools, parsed once for every backend's tools (the
// simulated host's and the Linux machine's), so both keep the same contracts.
#pragma once

#include <string>
#include <vector>

namespace Konu {

// orincfg-advcfg [-q] -g [-o] OPTION | [-q] -s VALUE [-o] OPTION
struct AdvCfgArguments {
  bool ok = false;
  bool quiet = false, get = false, set = false;
  std::string option, value;
  static constexpr const char* kUsage = "orincfg-advcfg [-q] -g OPTION | [-q] -s VALUE OPTION";
};
AdvCfgArguments ParseAdvCfg(const std::vector<std::string>& args);

// orincli|localcli system settings advanced set -o OPTION (-i INT | -s TEXT | -d)
//                  system settings advanced list -o OPTION
struct OptionCliArguments {
  bool ok = false;  // a known verb with its option and, for set, exactly one value
  bool list = false;
  std::string option, value;
  bool integer = false, text = false, reset = false;
  static constexpr const char* kUsage =
      " system settings advanced {list|set} -o OPTION [-i INT | -s TEXT | -d]";
};
OptionCliArguments ParseOptionCli(const std::vector<std::string>& args);

// nukbacktrace [-w] [-c] -n PROCESS [-o PATTERN] [-d DIR]; no slash in the pattern.
struct BacktraceArguments {
  bool ok = false;
  std::string process, pattern = "core%", dir = "/var/core/";
  static constexpr const char* kUsage = "nukbacktrace [-w] [-c] -n PROCESS [-o PATTERN] [-d DIR]";
};
BacktraceArguments ParseBacktrace(const std::vector<std::string>& args);

// nukping [-c COUNT] [-I INTERFACE] ADDRESS; COUNT from 1 to 100, no interface for the
// management interface.
struct PingArguments {
  bool ok = false;
  int count = 3;
  std::string interface, address;
  static constexpr const char* kUsage = "nukping [-c COUNT] [-I INTERFACE] ADDRESS";
};
PingArguments ParsePing(const std::vector<std::string>& args);

}  // namespace Konu
