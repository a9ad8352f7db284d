// System facts and settings: the custom welcome message, system alerts, the console keyboard
// layouts, the firewall rule sets, whether virtual machines run and the host's local accounts.
#pragma once

#include <string>
#include <vector>

namespace HostCtl {

struct FirewallRuleset {
  std::string id;  // "sshServer"
  bool enabled = false;
};

class SystemInfo {
 public:
  virtual ~SystemInfo() = default;
  SystemInfo() = default;
  SystemInfo(const SystemInfo&) = delete;
  SystemInfo& operator=(const SystemInfo&) = delete;

  // Mark-up text shown instead of the standard welcome screen; "" when none is set.
  virtual std::string GetWelcomeMessage() const = 0;
  // Raises a host-wide alert that remote management software shows.
  virtual void SetSystemAlert(const std::string& text) = 0;

  // The configured console layout's name.
  virtual std::string GetKeyboardLayout() const = 0;
  // The layouts the host offers, in the host's order.
  virtual std::vector<std::string> GetKeyboardLayouts() const = 0;
  // Loads the key map of a layout into the console; throws for an unknown layout.
  virtual void LoadKeyboardMappings(const std::string& layout) = 0;
  // Makes a layout the configured one; throws for an unknown layout.
  virtual void SetKeyboardLayout(const std::string& layout) = 0;

  // Throws HostCtl::Lib::HostCtlException when there is no rule set with that id.
  virtual FirewallRuleset GetFirewallRulesetById(const std::string& id) const = 0;
  virtual void SetFirewallRulesetEnabled(const std::string& id, bool enabled) = 0;

  // True when a virtual machine of this host is powered on.
  virtual bool HasRunningVms() const = 0;

  // Whether the host has an account of that name (service accounts included).
  virtual bool HasAccount(const std::string& name) const = 0;
};

}  // namespace HostCtl
