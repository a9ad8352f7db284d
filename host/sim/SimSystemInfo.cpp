// Simulated system information: welcome message, alerts, keyboard layouts, firewall.
//
// State read and written (JSON pointers):
//   /host/welcomeMessage, /host/systemAlert
//   /host/systemAlerts                 every alert raised, in order (appended here)
//   /keyboard/current, /keyboard/layouts
//   /keyboard/loaded                   the layout whose key map the console loaded last (written here)
//   /firewall/<rulesetId>/enabled
//   /vms/*/powerState                  "poweredOn" for a running machine
//   /users/<name>                      the host's accounts
#include <algorithm>

#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {
namespace {

using nlohmann::json;

void RequireLayout(const json& state, const std::string& layout) {
  const json& layouts = NodeAt(state, "/keyboard/layouts");
  if (!layouts.is_array() || std::find(layouts.begin(), layouts.end(), json(layout)) == layouts.end())
    ThrowNotFound("Keyboard layout", layout);
}

}  // namespace

std::string SimSystemInfo::GetWelcomeMessage() const {
  return ValueAt<std::string>(*state_.Read("SystemInfo.GetWelcomeMessage"), "/host/welcomeMessage", "");
}

void SimSystemInfo::SetSystemAlert(const std::string& text) {
  state_.Update("SystemInfo.SetSystemAlert", [&](json& state) {
    state["host"]["systemAlert"] = text;
    json& all = state["host"]["systemAlerts"];
    if (!all.is_array()) all = json::array();
    all.push_back(text);
  });
}

std::string SimSystemInfo::GetKeyboardLayout() const {
  return ValueAt<std::string>(*state_.Read("SystemInfo.GetKeyboardLayout"), "/keyboard/current", "");
}

std::vector<std::string> SimSystemInfo::GetKeyboardLayouts() const {
  const auto snapshot = state_.Read("SystemInfo.GetKeyboardLayouts");
  const json& state = *snapshot;
  std::vector<std::string> layouts;
  const json& list = NodeAt(state, "/keyboard/layouts");
  if (list.is_array())
    for (const auto& entry : list)
      if (entry.is_string()) layouts.push_back(entry.get<std::string>());
  return layouts;
}

void SimSystemInfo::LoadKeyboardMappings(const std::string& layout) {
  state_.Update("SystemInfo.LoadKeyboardMappings", [&](json& state) {
    RequireLayout(state, layout);
    state["keyboard"]["loaded"] = layout;
  });
}

void SimSystemInfo::SetKeyboardLayout(const std::string& layout) {
  state_.Update("SystemInfo.SetKeyboardLayout", [&](json& state) {
    RequireLayout(state, layout);
    state["keyboard"]["current"] = layout;
  });
}

FirewallRuleset SimSystemInfo::GetFirewallRulesetById(const std::string& id) const {
  const auto snapshot = state_.Read("SystemInfo.GetFirewallRulesetById");
  const json& state = *snapshot;
  const json& all = NodeAt(state, "/firewall");
  if (!all.is_object() || !all.contains(id)) ThrowNotFound("Firewall ruleset", id);
  return {id, ValueAt<bool>(all[id], "/enabled", false)};
}

void SimSystemInfo::SetFirewallRulesetEnabled(const std::string& id, bool enabled) {
  state_.Update("SystemInfo.SetFirewallRulesetEnabled", [&](json& state) {
    json& all = state["firewall"];
    if (!all.is_object() || !all.contains(id)) ThrowNotFound("Firewall ruleset", id);
    all[id]["enabled"] = enabled;
  });
}

bool SimSystemInfo::HasAccount(const std::string& name) const {
  const auto snapshot = state_.Read("SystemInfo.HasAccount");
  const json& state = *snapshot;
  const json& users = NodeAt(state, "/users");
  return !name.empty() && users.is_object() && users.contains(name);
}

bool SimSystemInfo::HasRunningVms() const {
  const auto snapshot = state_.Read("SystemInfo.HasRunningVms");
  const nlohmann::json& state = *snapshot;
  const nlohmann::json& vms = NodeAt(state, "/vms");
  if (!vms.is_array()) return false;
  return std::any_of(vms.begin(), vms.end(), [](const nlohmann::json& vm) {
    return ValueAt<std::string>(vm, "/powerState", "") == "poweredOn";
  });
}

}  // namespace HostCtl::Sim
