// Advanced options of a Linux host: orincfg-advcfg reads and sets them, orincli and localcli
// set and list them; all in KONU's own options file. The shell idle timeout becomes TMOUT.
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "host/linux/LinuxOptions.h"
#include "linuxtools/ToolRun.h"

namespace Konu::LinuxTools {
namespace {

using HostCtl::Linux::LinuxOptions;

constexpr const char kIdleOption[] = "/UserVars/OrinShellInteractiveTimeOut";
constexpr const char kIdleProfile[] = "/etc/profile.d/konu-shell-timeout.sh";

LinuxOptions Options(const ToolRun& run) { return LinuxOptions(run.Root().empty() ? "/" : run.Root()); }

// After a change of an option: what depends on it follows.
void Changed(ToolRun& run, const std::string& option) {
  if (option == kIdleOption) WriteShellIdleTimeout(run);
}

}  // namespace

void WriteShellIdleTimeout(ToolRun& run) {
  auto seconds = Options(run).GetInteger(kIdleOption);
  std::string file = run.File(kIdleProfile);
  if (!seconds || *seconds <= 0) {
    unlink(file.c_str());
    return;
  }
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ignored);
  std::string temporary = file + ".new";
  {
    std::ofstream out(temporary);
    out << "# Written by KONU from " << kIdleOption << "; shells log out when idle this long.\n"
        << "TMOUT=" << *seconds << "\nreadonly TMOUT\nexport TMOUT\n";
    if (!out.flush()) {
      run.Fail("cannot write " + temporary);
      return;
    }
  }
  if (rename(temporary.c_str(), file.c_str()) != 0) run.Fail("cannot write " + file);
}

// orincfg-advcfg [-q] -g [-o] OPTION | [-q] -s VALUE [-o] OPTION
int AdvCfg(ToolRun& run) {
  bool quiet = false, get = false, set = false;
  std::string option, value;
  const std::vector<std::string>& args = run.Args();
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "-q") {
      quiet = true;
    } else if (args[i] == "-g") {
      get = true;
    } else if (args[i] == "-s" && i + 1 < args.size()) {
      set = true;
      value = args[++i];
    } else if (args[i] == "-o" && i + 1 < args.size()) {
      option = args[++i];
    } else if (!args[i].empty() && args[i][0] != '-' && option.empty()) {
      option = args[i];
    } else {
      option.clear();
      break;
    }
  }
  if (option.empty() || get == set) return run.Usage("orincfg-advcfg [-q] -g OPTION | [-q] -s VALUE OPTION");
  LinuxOptions options = Options(run);
  const HostCtl::Linux::OptionSpec* spec = HostCtl::Linux::FindOptionSpec(option);
  if (!spec) return run.Fail("Option " + option + " not found");
  if (set) {
    std::string error = options.Set(option, value, spec->integer);
    if (!error.empty()) return run.Fail(error);
    Changed(run, option);
  }
  std::string text = options.Get(option).value_or("");
  if (!quiet) printf("Value of %s is %s\n", option.c_str(), text.c_str());
  if (quiet && get) printf("%s\n", text.c_str());
  return 0;
}

// orincli|localcli system settings advanced set -o OPTION (-i INT | -s TEXT | -d)
//                  system settings advanced list -o OPTION
int OptionCli(ToolRun& run) {
  const std::vector<std::string>& args = run.Args();
  auto usage = [&run]() {
    return run.Fail("Error: Unknown command or namespace. Usage: " + run.Name() +
                    " system settings advanced {list|set} -o OPTION [-i INT | -s TEXT | -d]");
  };
  if (args.size() < 4 || args[0] != "system" || args[1] != "settings" || args[2] != "advanced")
    return usage();
  const std::string& verb = args[3];
  std::string option, value;
  bool integer = false, text = false, reset = false;
  for (size_t i = 4; i < args.size(); ++i) {
    bool hasNext = i + 1 < args.size();
    if ((args[i] == "-o" || args[i] == "--option") && hasNext) {
      option = args[++i];
    } else if ((args[i] == "-i" || args[i] == "--int-value") && hasNext) {
      integer = true;
      value = args[++i];
    } else if ((args[i] == "-s" || args[i] == "--string-value") && hasNext) {
      text = true;
      value = args[++i];
    } else if (args[i] == "-d" || args[i] == "--default") {
      reset = true;
    } else {
      return usage();
    }
  }
  if (option.empty()) return usage();
  LinuxOptions options = Options(run);
  const HostCtl::Linux::OptionSpec* spec = HostCtl::Linux::FindOptionSpec(option);
  if (!spec) return run.Fail("Error: Option " + option + " not found");
  if (verb == "list") {
    printf("   Path: %s\n   Type: %s\n   Value: %s\n   Description: %s\n", option.c_str(),
           spec->integer ? "integer" : "string", options.Get(option).value_or("").c_str(), spec->description);
    return 0;
  }
  if (verb != "set" || integer + text + reset != 1) return usage();
  std::string error = reset ? options.Reset(option) : options.Set(option, value, integer);
  if (!error.empty()) return run.Fail("Error: " + error);
  Changed(run, option);
  return 0;
}

}  // namespace Konu::LinuxTools
