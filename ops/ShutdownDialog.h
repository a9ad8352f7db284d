// "Shut Down/Restart": shut the host down (F2) or restart it (F11), optionally terminating
// running virtual machines forcibly.
#pragma once

#include <memory>

#include "ui/Dialog.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

class ShutdownDialog : public Dialog {
 public:
  explicit ShutdownDialog(Frame* owner);
  ~ShutdownDialog() override;

  // Space flips the check box; F2 and F11 post their event and run the progress box, and
  // come back here only when the host command could not be run; Esc returns 0.
  int EventLoop() override;

 private:
  CheckItem terminate_;
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
