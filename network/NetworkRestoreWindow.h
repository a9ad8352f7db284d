// "Network Restore Options": the full-screen menu behind "Network Restore Options" that
// restores the factory network settings, moves the management network onto a standard
// switch, or rebuilds a broken distributed-switch port.
//
// Design: one table holds the entries, each with its label, its pane text and the one
// function that runs it. The two switch entries only make sense while the management
// interface sits on a distributed switch; otherwise they are dimmed and the cursor passes
// over them. Whether it does is read from the host when the window is built and again after
// every entry has run, since a restore moves the interface. Esc closes the window.
#pragma once

#include <array>

#include "ui/LabelItem.h"
#include "ui/RootWindow.h"

namespace Konu {

class NetworkRestoreWindow : public RootWindow {
 public:
  explicit NetworkRestoreWindow(Frame* owner);
  ~NetworkRestoreWindow() override;

  // Down and Up move the selection, Enter runs it, Esc returns 0.
  int EventLoop() override;
  // Rebuilds the information pane for the selection.
  void Refresh() override;

 private:
  // Enables the switch entries when the management interface is on a distributed switch.
  void Reenable();

  std::array<LabelItem, 3> items_;
};

}  // namespace Konu
