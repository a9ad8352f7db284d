// RestoreNetworkDialog: 70 x 12, the question under the text; F11, then the running-VMs
// warning when needed, then the restore.
#include "network/RestoreNetworkDialog.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/DoRestoreNetworkDialog.h"
#include "ops/RunningVMsWarningDialog.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 12;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 182;  // "Restore Network Factory Settings"
constexpr int kText = 183;   // "This option will reset the host network configuration ..."
constexpr int kQuestion = 184;
constexpr int kErrorTitle = 61;  // "Network Configuration Error"
constexpr const char* kCannotRestore =
    "This host cannot restore its factory network settings. Nothing has been changed.";

// Why the host cannot restore its network, or "" when it can.
std::string WhyNoFactoryRestore() {
  try {
    return Runtime::Get().Host().CreateNetworkInfo()->CanRestoreFactoryNetwork()
               ? ""
               : "not supported on this host";
  } catch (const HostCtl::Lib::HostCtlException& e) {
    return e.what();
  }
}

// A host that cannot say is taken to run machines: the warning costs one key.
bool VmsMayRun() {
  try {
    return Runtime::Get().Host().CreateSystemInfo()->HasRunningVms();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Cannot tell whether virtual machines are running: %s", e.what());
    return true;
  }
}

}  // namespace

void RestoreNetworkSettings(Frame* owner) {
  const std::string reason = WhyNoFactoryRestore();
  if (reason.empty()) {
    RestoreNetworkDialog(owner).RunModal();
    return;
  }
  Log(LOG_ERR, "%s: %s", kFactoryRestoreFailed, reason.c_str());
  MessageDialog(owner, kErrorTitle, kCannotRestore).RunModal();
}

RestoreNetworkDialog::RestoreNetworkDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  Window* content = Content();
  question_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), content->Height(), 0);
}

RestoreNetworkDialog::~RestoreNetworkDialog() = default;

int RestoreNetworkDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  question_->SetText(GetString(kQuestion));
  if (!AwaitF11()) return 0;
  if (VmsMayRun() && RunningVMsWarningDialog(this).RunModal() != 1) return 0;
  DoRestoreNetworkDialog(this).RunModal();
  return 1;
}

}  // namespace Konu
