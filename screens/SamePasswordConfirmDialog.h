// The warning before a password is "changed" to the password it already is.
#pragma once

#include "ui/Dialog.h"

namespace Konu {

class SamePasswordConfirmDialog : public Dialog {
 public:
  explicit SamePasswordConfirmDialog(Frame* owner);
  // 1 on Enter (change anyway), 0 on Esc.
  int EventLoop() override;
};

}  // namespace Konu
