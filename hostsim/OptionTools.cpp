// Advanced options of a simulated host: orincfg-advcfg reads them, orincli and localcli set them.
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <limits>

#include "host/ToolArguments.h"
#include "hostsim/Tools.h"

namespace Konu::Sim {
namespace {

using Json = nlohmann::json;

std::string ValueText(const Json& option) {
  const Json& value = option.contains("value") ? option["value"] : Json();
  return value.is_string() ? value.get<std::string>() : value.dump();
}

bool ParseInt(const std::string& text, long long* out) {
  if (text.empty()) return false;
  errno = 0;
  char* end = nullptr;
  long long value = std::strtoll(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0') return false;
  *out = value;
  return true;
}

// Sets one option from its text; returns "" or the error the operator sees.
std::string SetOption(Json& option, const std::string& name, const std::string& text, bool asInteger) {
  std::string type = option.value("type", "integer");
  if (asInteger != (type == "integer"))
    return "Option " + name + " is of type " + type + "; use " + (type == "integer" ? "-i" : "-s");
  if (!asInteger) {
    option["value"] = text;
    return "";
  }
  long long value = 0;
  if (!ParseInt(text, &value)) return "Invalid integer value '" + text + "' for option " + name;
  long long min = option.value("min", std::numeric_limits<long long>::min());
  long long max = option.value("max", std::numeric_limits<long long>::max());
  if (value < min || value > max)
    return "Invalid value " + text + " for option " + name + ": must be between " + std::to_string(min) +
           " and " + std::to_string(max);
  option["value"] = value;
  return "";
}

// Changes one option under the state lock; a refused change writes nothing. Returns "" or
// the error.
std::string UpdateOption(ToolRun& run, const Json::json_pointer& pointer, const std::string& name,
                         const std::function<std::string(Json&)>& change) {
  std::string error;
  struct Refused {};
  try {
    run.State().Update([&](Json& s) {
      if (!s.contains(pointer))
        error = "Option " + name + " not found";
      else
        error = change(s.at(pointer));
      if (!error.empty()) throw Refused{};
    });
  } catch (const Refused&) {
  }
  return error;
}

}  // namespace

// orincfg-advcfg [-q] -g [-o] OPTION | [-q] -s VALUE [-o] OPTION
int AdvCfg(ToolRun& run) {
  const AdvCfgArguments parsed = ParseAdvCfg(run.Args());
  if (!parsed.ok) {
    run.Err(std::string("Usage: ") + AdvCfgArguments::kUsage + "\n");
    return 1;
  }
  const std::string& option = parsed.option;
  const std::string& value = parsed.value;
  const bool quiet = parsed.quiet, get = parsed.get;
  Json::json_pointer pointer = Json::json_pointer("/advancedOptions") / option;
  if (get) {
    Json state = run.State().Read();
    if (!state.contains(pointer)) {
      run.Err("Option " + option + " not found\n");
      return 1;
    }
    std::string text = ValueText(state.at(pointer));
    run.Out(quiet ? text + "\n" : "Value of " + option + " is " + text + "\n");
    return 0;
  }
  std::string error = UpdateOption(run, pointer, option, [&](Json& entry) {
    return SetOption(entry, option, value, entry.value("type", "integer") == "integer");
  });
  if (!error.empty()) {
    run.Err(error + "\n");
    return 1;
  }
  if (!quiet) run.Out("Value of " + option + " is " + value + "\n");
  return 0;
}

// orincli|localcli system settings advanced set -o OPTION (-i INT | -s TEXT | -d)
//                  system settings advanced list -o OPTION
int OptionCli(ToolRun& run) {
  const OptionCliArguments parsed = ParseOptionCli(run.Args());
  auto usage = [&run]() {
    run.Err("Error: Unknown command or namespace. Usage: " + run.Name() + OptionCliArguments::kUsage + "\n");
    return 1;
  };
  if (!parsed.ok) return usage();
  const std::string& option = parsed.option;
  const std::string& value = parsed.value;
  const bool integer = parsed.integer, reset = parsed.reset;
  Json::json_pointer pointer = Json::json_pointer("/advancedOptions") / option;
  if (parsed.list) {
    Json state = run.State().Read();
    if (!state.contains(pointer)) {
      run.Err("Error: Option " + option + " not found\n");
      return 1;
    }
    const Json& entry = state.at(pointer);
    run.Out("   Path: " + option + "\n   Type: " + entry.value("type", "integer") +
            "\n   Value: " + ValueText(entry) + "\n   Description: " + entry.value("description", "") + "\n");
    return 0;
  }
  std::string error = UpdateOption(run, pointer, option, [&](Json& entry) -> std::string {
    if (!reset) return SetOption(entry, option, value, integer);
    entry["value"] = entry.contains("default") ? entry["default"] : Json();
    return "";
  });
  if (!error.empty()) {
    run.Err("Error: " + error + "\n");
    return 1;
  }
  return 0;
}

}  // namespace Konu::Sim
