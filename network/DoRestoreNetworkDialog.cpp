// DoRestoreNetworkDialog: 70 x 19; logs and posts the restore, powers off the machines, then
// the host's factory restore and the restart of the management interface.
#include "network/DoRestoreNetworkDialog.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/DoRestartNetworkDialog.h"
#include "network/ManagementUplinks.h"
#include "ops/Events.h"
#include "ops/PowerOffVms.h"
#include "ui/Footers.h"
#include "ui/FormKeys.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 19;
constexpr int kHeaderHeight = 5;
constexpr int kTitle = 200;        // "Restore Network Settings"
constexpr int kText = 201;         // "Please wait while the factory network settings are restored."
constexpr int kPoweringOff = 202;  // "Powering Off VMs."
constexpr int kConfiguring = 203;  // "Auto-configuring network."
constexpr int kDone = 115;         // "Done."
constexpr int kFailed = 216;       // "Failed."
constexpr int kAddressIs = 129;    // "IP address is "
constexpr int kErrorTitle = 61;    // "Network Configuration Error"
constexpr int kNoInterface = 19;   // "Management network interface cannot be found."

}  // namespace

DoRestoreNetworkDialog::DoRestoreNetworkDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  Window* content = Content();
  progress_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), content->Height(), 0);
}

DoRestoreNetworkDialog::~DoRestoreNetworkDialog() = default;

void DoRestoreNetworkDialog::Append(const std::string& text) {
  progress_->AppendText(text);
  Update();
  Paint();  // each step shows before the next one runs
}

bool DoRestoreNetworkDialog::Failed(const char* step, const std::string& message) {
  Log(LOG_ERR, "%s: %s", step, message.c_str());
  MessageDialog(this, kErrorTitle, LiteralMarkup(message)).RunModal();
  return false;
}

bool DoRestoreNetworkDialog::RestoreFactoryNetwork() {
  try {
    Runtime::Get().Host().CreateNetworkInfo()->RestoreFactoryNetwork();
    return true;
  } catch (const HostCtl::Lib::HostCtlException& e) {
    return Failed(kFactoryRestoreFailed, e.what());
  }
}

bool DoRestoreNetworkDialog::RestartManagementInterface(std::string& addresses) {
  constexpr const char* kStep = "Unable to restart the management network";
  try {
    std::unique_ptr<HostCtl::Network::NetworkInfo> info = Runtime::Get().Host().CreateNetworkInfo();
    std::unique_ptr<HostCtl::Network::NukNic> nic = FindManagementInterface(*info);
    if (!nic) return Failed(kStep, GetString(kNoInterface));
    Log(LOG_INFO, "Restarting %s", nic->GetName().c_str());
    nic->TakeDown();
    nic->Refresh();
    nic->BringUp();
    addresses = RestartAddressLines(nic->GetCurrentIpConfig(), true, GetString(kAddressIs));
    return true;
  } catch (const HostCtl::Lib::HostCtlException& e) {
    return Failed(kStep, e.what());
  }
}

int DoRestoreNetworkDialog::EventLoop() {
  Log(LOG_INFO, "Restoring factory network settings");
  PostEvent(KonuEvent::FactoryNetworkRestored);

  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter("");
  Append(std::string(GetString(kPoweringOff)) + " ");
  PowerOffVms(false);
  Append(std::string(GetString(kDone)) + "\n");

  Append(std::string(GetString(kConfiguring)) + " ");
  // The restart runs after a failed restore too: nothing is rolled back, every step is tried.
  const bool restored = RestoreFactoryNetwork();
  std::string addresses;
  const bool restarted = RestartManagementInterface(addresses);
  Append(std::string(GetString(restored && restarted ? kDone : kFailed)) + "\n" + addresses);

  SetFooter(kFooterOk);
  while (!IsEnterKey(GetKey(true))) {
  }
  return 1;
}

}  // namespace Konu
