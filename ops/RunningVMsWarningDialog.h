// "Warning: VMs running on the host": confirms taking the host or its network down while
// virtual machines run.
#pragma once

#include "ui/Dialog.h"

namespace Konu {

class RunningVMsWarningDialog : public Dialog {
 public:
  explicit RunningVMsWarningDialog(Frame* owner);
  ~RunningVMsWarningDialog() override;

  // Enter returns 1 (confirmed), Esc 0; other keys are ignored.
  int EventLoop() override;
};

}  // namespace Konu
