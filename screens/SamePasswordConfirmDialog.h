// The warning before a password is "changed" to the password it already is: 1 on Enter
// (change anyway), 0 on Esc.
#pragma once

#include "ui/ConfirmDialog.h"

namespace Konu {

class SamePasswordConfirmDialog : public ConfirmDialog {
 public:
  explicit SamePasswordConfirmDialog(Frame* owner);
};

}  // namespace Konu
