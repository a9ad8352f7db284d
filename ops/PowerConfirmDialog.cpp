// PowerConfirmDialog: 70 x 10, the machines powered off and the host command run.
#include "ops/PowerConfirmDialog.h"

#include "ops/CommandRunner.h"
#include "ops/PowerOffVms.h"

namespace Konu {
namespace {
constexpr int kWidth = 70;
constexpr int kHeight = 10;
constexpr int kHeaderHeight = 7;
constexpr int kShutdownTitle = 164;  // "Shut Down Host"
constexpr int kShutdownText = 165;   // "Shutdown in progress..."
constexpr int kRebootTitle = 168;    // "Restart Host"
constexpr int kRebootText = 169;     // "Restart in progress..."
}  // namespace

void DiscardKeysForEver(Frame& frame) {
  // No idle time-out here: the operator must not be dropped back to a host going down.
  for (;;) frame.GetKey(false);
}

PowerConfirmDialog::PowerConfirmDialog(Frame* owner, bool keepRunning, int titleId, int textId,
                                       const char* command)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight),
      keepRunning_(keepRunning),
      titleId_(titleId),
      textId_(textId),
      command_(command) {}

PowerConfirmDialog::~PowerConfirmDialog() = default;

int PowerConfirmDialog::EventLoop() {
  SetTitle(GetString(static_cast<uint32_t>(titleId_)));
  SetText(GetString(static_cast<uint32_t>(textId_)));
  Update();
  Paint();  // shown while the virtual machines are powered off
  PowerOffVms(keepRunning_);
  // Any exit code but -1 means the host took the command: it is going down.
  if (RunShell(command_) == -1) return 0;
  DiscardKeysForEver(*this);
}

ShutdownConfirmDialog::ShutdownConfirmDialog(Frame* owner, bool keepRunning)
    : PowerConfirmDialog(owner, keepRunning, kShutdownTitle, kShutdownText, "poweroff") {}

RebootConfirmDialog::RebootConfirmDialog(Frame* owner, bool keepRunning)
    : PowerConfirmDialog(owner, keepRunning, kRebootTitle, kRebootText, "reboot") {}

}  // namespace Konu
