// "Troubleshooting Mode Options": switch the host shell and SSH on and off, set their
// timeouts and the console's idle timeout, restart the management agents.
#pragma once

#include <array>

#include "ui/LabelItem.h"
#include "ui/RootWindow.h"

namespace Konu {

class TroubleShootingWindow : public RootWindow {
 public:
  // Asks the two service scripts whether the shell and SSH run; the window keeps its own
  // idea of that from then on.
  explicit TroubleShootingWindow(Frame* owner);
  ~TroubleShootingWindow() override;

  // Down and Up move the selection, Enter acts on it, Esc returns 0.
  int EventLoop() override;
  // Rebuilds the information pane for the selection.
  void Refresh() override;

  bool ShellEnabled() const { return shellEnabled_; }
  bool SshEnabled() const { return sshEnabled_; }

 private:
  void Act(int index);
  // Sets the labels of the toggles and greys the timeouts entry when both are off.
  void Relabel();

  bool shellEnabled_;
  bool sshEnabled_;
  std::array<LabelItem, 5> items_;
};

}  // namespace Konu
