// Simulated advanced options and user options.
//
// State read and written (JSON pointers):
//   /advancedOptions/<~1Path~1Name> {type "integer"|"string", value, default, min, max}
//   /userOptions/<Name>
#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {
namespace {

using nlohmann::json;

std::string OptionPointer(const std::string& path) { return "/advancedOptions/" + PointerKey(path); }

json& OptionIn(json& state, const std::string& path) {
  json::json_pointer p(OptionPointer(path));
  if (!state.contains(p) || !state.at(p).is_object()) ThrowNotFound("Advanced option", path);
  return state.at(p);
}

}  // namespace

std::unique_ptr<Adv::AdvancedOption> SimAdvancedOptions::FindOption(const std::string& path) const {
  const auto snapshot = state_.Read("AdvancedOptions.FindOption");
  const json& state = *snapshot;
  json::json_pointer p(OptionPointer(path));
  if (!state.contains(p) || !state.at(p).is_object()) return nullptr;
  const json& option = state.at(p);
  std::string type = ValueAt<std::string>(option, "/type", "");
  if (type == "integer") {
    int64_t value = ValueAt<int64_t>(option, "/value", 0);
    return std::make_unique<Adv::AdvancedIntegerOption>(
        path, value, ValueAt<int64_t>(option, "/default", value), ValueAt<int64_t>(option, "/min", INT64_MIN),
        ValueAt<int64_t>(option, "/max", INT64_MAX));
  }
  if (type == "string") {
    std::string value = ValueAt<std::string>(option, "/value", "");
    return std::make_unique<Adv::AdvancedStringOption>(path, value,
                                                       ValueAt<std::string>(option, "/default", value));
  }
  return std::make_unique<Adv::AdvancedOption>(path);
}

void SimAdvancedOptions::SetIntegerValue(const std::string& path, int64_t value) {
  state_.Update("AdvancedOptions.SetIntegerValue", [&](json& state) {
    json& option = OptionIn(state, path);
    if (ValueAt<std::string>(option, "/type", "") != "integer")
      throw Lib::HostCtlException("Advanced option '" + path + "' is not an integer option");
    int64_t min = ValueAt<int64_t>(option, "/min", INT64_MIN),
            max = ValueAt<int64_t>(option, "/max", INT64_MAX);
    if (value < min || value > max)
      throw Lib::HostCtlException("Value " + std::to_string(value) + " of advanced option '" + path +
                                  "' is outside " + std::to_string(min) + ".." + std::to_string(max));
    option["value"] = value;
  });
}

void SimAdvancedOptions::SetStringValue(const std::string& path, const std::string& value) {
  state_.Update("AdvancedOptions.SetStringValue", [&](json& state) {
    json& option = OptionIn(state, path);
    if (ValueAt<std::string>(option, "/type", "") != "string")
      throw Lib::HostCtlException("Advanced option '" + path + "' is not a string option");
    option["value"] = value;
  });
}

bool SimAdvancedOptions::UserOptionExists(const std::string& name) const {
  const auto snapshot = state_.Read("AdvancedOptions.UserOptionExists");
  const json& state = *snapshot;
  const json& options = NodeAt(state, "/userOptions");
  return options.is_object() && options.contains(name);
}

std::string SimAdvancedOptions::GetUserOption(const std::string& name) const {
  const auto snapshot = state_.Read("AdvancedOptions.GetUserOption");
  const json& state = *snapshot;
  const json& options = NodeAt(state, "/userOptions");
  if (!options.is_object() || !options.contains(name)) ThrowNotFound("User option", name);
  const json& value = options[name];
  return value.is_string() ? value.get<std::string>() : value.dump();
}

}  // namespace HostCtl::Sim
