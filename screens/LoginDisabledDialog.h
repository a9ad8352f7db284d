// The refusal shown instead of the login form when console login is switched off.
#pragma once

#include "ui/Dialog.h"

namespace Konu {

class LoginDisabledDialog : public Dialog {
 public:
  explicit LoginDisabledDialog(Frame* owner);
  // Shows the refusal until Enter; always 0.
  int EventLoop() override;
};

}  // namespace Konu
