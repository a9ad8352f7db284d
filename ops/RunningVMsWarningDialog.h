// "Warning: VMs running on the host": confirms taking the host or its network down while
// virtual machines run. Enter returns 1, Esc 0.
#pragma once

#include "ui/ConfirmDialog.h"

namespace Konu {

class RunningVMsWarningDialog : public ConfirmDialog {
 public:
  explicit RunningVMsWarningDialog(Frame* owner);
};

}  // namespace Konu
