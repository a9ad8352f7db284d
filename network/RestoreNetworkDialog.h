// "Restore Network Factory Settings": the confirmation in front of the factory restore of
// the host's network, and the warning when virtual machines run.
//
// Design: the host is asked first whether it can restore its network at all; when it cannot
// (or cannot say), the operator gets an error and nothing runs, so no machine is stopped
// for a restore that would fail. F11 goes on and Esc cancels, as for the other disruptive
// network actions. When
// the host has a running virtual machine (or cannot tell), RunningVMsWarningDialog asks
// once more; Esc there cancels too. Cancelling anywhere changes nothing. Going on runs
// DoRestoreNetworkDialog over this box.
#pragma once

#include <memory>

#include "ui/Dialog.h"
#include "ui/TextArea.h"

namespace Konu {

// The menu entry: the dialog when the host can restore its network, else the error.
void RestoreNetworkSettings(Frame* owner);

class RestoreNetworkDialog : public Dialog {
 public:
  explicit RestoreNetworkDialog(Frame* owner);
  ~RestoreNetworkDialog() override;

  // 1 when the restore was carried out (whatever its steps' outcome), 0 when cancelled.
  int EventLoop() override;

 private:
  std::unique_ptr<TextArea> question_;
};

}  // namespace Konu
