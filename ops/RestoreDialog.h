// "Reset System Configuration": reverts the host's configuration to its defaults and
// restarts the host.
#pragma once

#include <memory>

#include "ui/Dialog.h"
#include "ui/TextArea.h"

namespace Konu {

class RestoreDialog : public Dialog {
 public:
  explicit RestoreDialog(Frame* owner);
  ~RestoreDialog() override;

  // F11 resets and then waits for Enter to restart (never returning once the restart has
  // started); Esc before F11 returns 0. A reset or restart that fails returns 0 silently.
  int EventLoop() override;

 private:
  std::unique_ptr<TextArea> label_;
};

}  // namespace Konu
