// RestoreDialog: 60 x 12 with a one-line label; the factory reset script, then "reboot -f".
#include "ops/RestoreDialog.h"

#include <syslog.h>

#include "host/Log.h"
#include "ops/CommandRunner.h"
#include "ops/Events.h"
#include "ops/PowerConfirmDialog.h"
#include "ui/FormKeys.h"

namespace Konu {
namespace {
constexpr int kWidth = 60;
constexpr int kHeight = 12;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 170;       // "Reset System Configuration: Confirm"
constexpr int kWarning = 171;     // "Warning! All system parameters will be reverted ..."
constexpr int kQuestion = 172;    // "Reset System Configuration now?"
constexpr int kResetTitle = 173;  // "Reset System Configuration"
constexpr int kPleaseWait = 174;  // "Please wait while the default settings are restored."
constexpr int kRestored = 175;    // "Default settings are restored. Press <Enter> to restart your host."
constexpr const char* kFooterRestart =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}Restart Host{/color}{/align}";
constexpr const char* kReset = "/sbin/firmwareConfig.py --reset-only > /dev/null 2>&1";
}  // namespace

RestoreDialog::RestoreDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  Window* content = Content();
  label_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), 1, 0);
}

RestoreDialog::~RestoreDialog() = default;

int RestoreDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kWarning));
  label_->SetText(GetString(kQuestion));
  if (!AwaitF11()) return 0;

  Log(LOG_INFO, "Restoring factory defaults");
  PostEvent(KonuEvent::RestoreFactoryDefaults);
  SetTitle(GetString(kResetTitle));
  SetText(GetString(kPleaseWait));
  Update();
  Paint();  // shown while the reset runs
  // The runner places the script's host path on this machine, as it does every program's.
  // A failed reset may leave the host half reset; nothing is rolled back or shown.
  if (RunShell(kReset) != 0) return 0;

  label_->SetText("");
  SetFooter(kFooterRestart);
  SetText(GetString(kRestored));
  Update();
  // The configuration is gone: only a restart leaves this box, so no idle time-out either.
  while (!IsEnterKey(GetKey(false))) {
  }
  if (RunShell("reboot -f") == -1) return 0;
  DiscardKeysForEver(*this);
}

}  // namespace Konu
