// Advanced options of a Linux host: orincfg-advcfg reads and sets them, orincli and localcli
// set and list them; all in KONU's own options file. The shell idle timeout becomes TMOUT.
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "host/ToolArguments.h"
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
  const AdvCfgArguments parsed = ParseAdvCfg(run.Args());
  if (!parsed.ok) return run.Usage(AdvCfgArguments::kUsage);
  const std::string& option = parsed.option;
  const bool quiet = parsed.quiet, get = parsed.get, set = parsed.set;
  LinuxOptions options = Options(run);
  const HostCtl::Linux::OptionSpec* definition = HostCtl::Linux::FindOptionSpec(option);
  if (!definition) return run.Fail("Option " + option + " not found");
  if (set) {
    std::string error = options.Set(option, parsed.value, definition->integer);
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
  const OptionCliArguments parsed = ParseOptionCli(run.Args());
  if (!parsed.ok)
    return run.Fail("Error: Unknown command or namespace. Usage: " + run.Name() + OptionCliArguments::kUsage);
  const std::string& option = parsed.option;
  LinuxOptions options = Options(run);
  const HostCtl::Linux::OptionSpec* definition = HostCtl::Linux::FindOptionSpec(option);
  if (!definition) return run.Fail("Error: Option " + option + " not found");
  if (parsed.list) {
    printf("   Path: %s\n   Type: %s\n   Value: %s\n   Description: %s\n", option.c_str(),
           definition->integer ? "integer" : "string", options.Get(option).value_or("").c_str(),
           definition->description);
    return 0;
  }
  std::string error =
      parsed.reset ? options.Reset(option) : options.Set(option, parsed.value, parsed.integer);
  if (!error.empty()) return run.Fail("Error: " + error);
  Changed(run, option);
  return 0;
}

}  // namespace Konu::LinuxTools
