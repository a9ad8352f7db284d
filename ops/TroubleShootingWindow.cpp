// TroubleShootingWindow: the shell and SSH toggles with their fallbacks, and the entries
// that open the timeout dialogs and the agent restart.
#include "ops/TroubleShootingWindow.h"

#include <syslog.h>

#include <string>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "ops/KonuTimeoutDialog.h"
#include "ops/QalCmd.h"
#include "ops/RestartAgentsDialog.h"
#include "ops/ServiceScript.h"
#include "ops/ShellTimeoutDialog.h"

namespace Konu {
namespace {

constexpr int kTitle = 218;  // "Troubleshooting Mode Options"
enum Entry { kShell, kSsh, kShellTimeouts, kKonuTimeout, kRestartAgents, kEntries };

constexpr const char* kFooterChange =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Exit{/color}{/align}";
constexpr const char* kFooterRestart =
    "{color:white}<Enter>{/color}{color:light-grey} Restart{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Exit{/color}{/align}";

// One switchable service: its script, its qal-cmd commands, its texts.
struct Service {
  const char* script;
  const char* start;
  const char* stop;
  const char* enable;
  const char* disable;
  const char* startStopWarning;
  const char* enableWarning;
  const char* name;             // in "User root enabled SSH"
  const char* firewallRuleset;  // switched when the script stood in for qal-cmd; null for none
  int enableLabel;
  int disableLabel;
  int paneTitle;
  int enabledState;
  int disabledState;
  int paneText;
};

constexpr Service kShellService = {"/etc/init.d/OrinShell",
                                   "hostsvc/start_orin_shell",
                                   "hostsvc/stop_orin_shell",
                                   "hostsvc/enable_orin_shell",
                                   "hostsvc/disable_orin_shell",
                                   "Unable to run qal-cmd to start/stop Orin Shell",
                                   "Unable to run qal-cmd to enable/disable Orin Shell",
                                   "Orin Shell",
                                   nullptr,
                                   219,
                                   220,
                                   223,
                                   230,
                                   231,
                                   228};
constexpr Service kSshService = {"/etc/init.d/SSH",
                                 "hostsvc/start_ssh",
                                 "hostsvc/stop_ssh",
                                 "hostsvc/enable_ssh",
                                 "hostsvc/disable_ssh",
                                 "Unable to run qal-cmd to start/stop ssh",
                                 "Unable to run qal-cmd to enable/disable ssh",
                                 "SSH",
                                 "sshServer",
                                 221,
                                 222,
                                 224,
                                 232,
                                 233,
                                 229};

// The other entries' pane: title, text and footer.
struct Pane {
  int title;
  int text;
  const char* footer;
};
constexpr Pane kShellTimeoutsPane = {225, 235, kFooterChange};
constexpr Pane kKonuTimeoutPane = {226, 236, kFooterChange};
constexpr Pane kRestartAgentsPane = {227, 234, kFooterRestart};

int RunQal(const char* command) {
  const std::string user = Runtime::Get().session.user;
  const char* argv[] = {"qal-cmd", "-U", user.c_str(), command, nullptr};
  return RunQalCmd("/bin/qal-cmd", argv);
}

// The init script does not open or close the firewall, so the rule set follows here.
void SwitchFirewall(const char* ruleset, bool enable) {
  try {
    auto system = Runtime::Get().Host().CreateSystemInfo();
    if (system->GetFirewallRulesetById(ruleset).enabled) system->SetFirewallRulesetEnabled(ruleset, enable);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Failed to update firewall %s ruleset status: %s", ruleset, e.what());
  }
}

// Starts and enables the service, or stops and disables it. Failures are logged only; the
// caller flips its state whatever happened.
void Toggle(const Service& service, bool on) {
  if (RunQal(on ? service.stop : service.start) != 0) {
    Log(LOG_WARNING, "%s", service.startStopWarning);
    RunServiceScript(service.script, on ? "stop" : "start");
    if (service.firewallRuleset) SwitchFirewall(service.firewallRuleset, !on);
  }
  if (RunQal(on ? service.disable : service.enable) != 0) Log(LOG_WARNING, "%s", service.enableWarning);
  Log(LOG_INFO, "User %s %s %s", Runtime::Get().session.user.c_str(), on ? "disabled" : "enabled",
      service.name);
}

}  // namespace

TroubleShootingWindow::TroubleShootingWindow(Frame* owner)
    : RootWindow(owner),
      shellEnabled_(RunServiceScript(kShellService.script, "status") == 0),
      sshEnabled_(RunServiceScript(kSshService.script, "status") == 0),
      items_{LabelItem("", true), LabelItem("", true), LabelItem("", true), LabelItem("", true),
             LabelItem("", true)} {
  items_[kKonuTimeout].SetText(GetString(kKonuTimeoutPane.title));
  items_[kRestartAgents].SetText(GetString(kRestartAgentsPane.title));
  Relabel();
  MenuList().SetItems({&items_[0], &items_[1], &items_[2], &items_[3], &items_[4]});
}

TroubleShootingWindow::~TroubleShootingWindow() = default;

void TroubleShootingWindow::Relabel() {
  items_[kShell].SetText(GetString(shellEnabled_ ? kShellService.disableLabel : kShellService.enableLabel));
  items_[kSsh].SetText(GetString(sshEnabled_ ? kSshService.disableLabel : kSshService.enableLabel));
  // Greyed, not disabled: it still opens its dialog.
  const std::string timeouts = GetString(kShellTimeoutsPane.title);
  items_[kShellTimeouts].SetText(shellEnabled_ || sshEnabled_ ? timeouts
                                                              : "{color:dark-grey}" + timeouts + "{/color}");
}

void TroubleShootingWindow::Refresh() {
  const int index = MenuList().Focus().FocusedIndex();
  if (index == kShell || index == kSsh) {
    const Service& service = index == kShell ? kShellService : kSshService;
    const bool enabled = index == kShell ? shellEnabled_ : sshEnabled_;
    InformationTitle().SetText(GetString(static_cast<uint32_t>(service.paneTitle)));
    InformationText().SetText(
        std::string("{/color}{color:white}") +
        GetString(static_cast<uint32_t>(enabled ? service.enabledState : service.disabledState)) + "\n" +
        GetString(static_cast<uint32_t>(service.paneText)));
    RightFooter().SetText(kFooterChange);
  } else if (index >= kShellTimeouts && index < kEntries) {
    const Pane& pane = index == kShellTimeouts ? kShellTimeoutsPane
                       : index == kKonuTimeout ? kKonuTimeoutPane
                                               : kRestartAgentsPane;
    InformationTitle().SetText(GetString(static_cast<uint32_t>(pane.title)));
    InformationText().SetText(GetString(static_cast<uint32_t>(pane.text)));
    RightFooter().SetText(pane.footer);
  }
  Update();
}

void TroubleShootingWindow::Act(int index) {
  switch (index) {
    case kShell:
      Toggle(kShellService, shellEnabled_);
      shellEnabled_ = !shellEnabled_;
      break;
    case kSsh:
      Toggle(kSshService, sshEnabled_);
      sshEnabled_ = !sshEnabled_;
      break;
    case kShellTimeouts:
      ShellTimeoutDialog(this).RunModal();
      break;
    case kKonuTimeout:
      KonuTimeoutDialog(this).RunModal();
      break;
    case kRestartAgents:
      RestartAgentsDialog(this).RunModal();
      break;
    default:
      return;  // nothing below the last entry
  }
}

int TroubleShootingWindow::EventLoop() {
  return RunMenu(kTitle, [this](int index) {
    Act(index);
    Relabel();
  });
}

}  // namespace Konu
