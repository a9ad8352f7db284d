// RestoreStandardSwitchDialog: 70 x 12, the question under the text; the move on F11.
#include "network/RestoreStandardSwitchDialog.h"

#include <syslog.h>

#include <algorithm>

#include "app/Runtime.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/ManagementDvsPort.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

using HostCtl::Lib::HostCtlException;

constexpr int kWidth = 70;
constexpr int kHeight = 12;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 130;      // "Restore Standard Switch"
constexpr int kText = 131;       // "All management network and associated uplinks can be moved ..."
constexpr int kQuestion = 132;   // "Move the management network onto a standard switch?"
constexpr int kErrorTitle = 61;  // "Network Configuration Error"
constexpr const char* kPortGroup = "Management Network";

// "vSwitch0", "vSwitch1", ...: the first name no switch has.
std::string FirstFreeSwitchName(const std::vector<HostCtl::Network::VirtualSwitch>& switches) {
  for (int n = 0;; ++n) {
    const std::string name = "vSwitch" + std::to_string(n);
    if (std::none_of(switches.begin(), switches.end(), [&](const auto& sw) { return sw.name == name; }))
      return name;
  }
}

}  // namespace

void RestoreStandardSwitch(Frame* owner) {
  RestoreStandardSwitchDialog dialog(owner);
  dialog.RunModal();
}

RestoreStandardSwitchDialog::RestoreStandardSwitchDialog(Frame* owner)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  Window* content = Content();
  question_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), content->Height(), 0);
}

RestoreStandardSwitchDialog::~RestoreStandardSwitchDialog() = default;

void RestoreStandardSwitchDialog::Fail(const std::string& text) {
  Log(LOG_ERR, "%s", text.c_str());
  MessageDialog error(this, kErrorTitle, LiteralMarkup(text));
  error.RunModal();
}

void RestoreStandardSwitchDialog::Restore() {
  const HostCtl::Host& host = Runtime::Get().Host();
  ManagementDvsPort found;
  try {
    found = FindManagementDvsPort(host);
  } catch (const HostCtlException& e) {
    Fail(std::string("Restoring the standard switch failed: ") + e.what());
    return;
  }
  const std::string nicName = found.nic->GetName();
  Log(LOG_INFO, "Moving management network %s from %s port %s onto a standard switch", nicName.c_str(),
      found.dvsName.c_str(), found.port.key.c_str());

  std::unique_ptr<HostCtl::Network::VirtualSwitchInfo> switches = host.CreateVirtualSwitchInfo();
  std::string switchName;
  try {
    switchName = FirstFreeSwitchName(switches->GetVirtualSwitches());
    Log(LOG_INFO, "Adding virtual switch %s", switchName.c_str());
    switches->AddVirtualSwitch(switchName);
  } catch (const HostCtlException& e) {
    Fail("Adding virtual switch " + switchName + " failed: " + e.what());
    return;
  }

  // The uplinks that serve the port; all of the host's on the switch when it names none.
  std::vector<std::string> serving = found.PortUplinks();
  if (serving.empty()) serving = found.switchUplinks;
  for (const std::string& uplink : serving) {
    Log(LOG_INFO, "Moving uplink %s from %s to %s", uplink.c_str(), found.dvsName.c_str(),
        switchName.c_str());
    try {
      switches->RemoveDVSwitchUplink(found.dvsName, uplink);
      switches->AddUplink(switchName, uplink);
    } catch (const HostCtlException& e) {
      Fail("Moving uplink " + uplink + " to " + switchName + " failed: " + e.what());
    }
  }

  try {
    Log(LOG_INFO, "Adding port group %s with VLAN %u to %s", kPortGroup,
        static_cast<unsigned>(found.port.vlanId), switchName.c_str());
    switches->AddPortGroup(switchName, kPortGroup, found.port.vlanId);
  } catch (const HostCtlException& e) {
    Fail(std::string("Adding port group ") + kPortGroup + " failed: " + e.what());
    return;
  }

  try {
    Log(LOG_INFO, "Moving %s to port group %s", nicName.c_str(), kPortGroup);
    found.nic->SetPortGroup(kPortGroup);
  } catch (const HostCtlException& e) {
    Fail("Moving " + nicName + " to port group " + kPortGroup + " failed: " + e.what());
  }

  std::unique_ptr<HostCtl::Network::DistributedSwitchInfo> dvs = host.CreateDistributedSwitchInfo();
  std::vector<std::string> interfaces;
  try {
    interfaces = dvs->GetInterfaceNames();
  } catch (const HostCtlException& e) {
    Fail(std::string("Listing the other interfaces failed: ") + e.what());
  }
  for (const std::string& other : interfaces) {
    if (other == nicName) continue;
    try {
      Log(LOG_INFO, "Disabling interface %s", other.c_str());
      dvs->DisableInterface(other);
    } catch (const HostCtlException& e) {
      Fail("Disabling interface " + other + " failed: " + e.what());
    }
  }
}

int RestoreStandardSwitchDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  question_->SetText(GetString(kQuestion));
  if (!AwaitF11()) return 0;
  SetFooter("");
  Restore();
  return 1;
}

}  // namespace Konu
