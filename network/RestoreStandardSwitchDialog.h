// "Restore Standard Switch": moves the management network off its distributed switch onto a
// new standard switch, to get a host back whose distributed switch no longer works.
//
// Design: a confirmation of the restart dialog's shape (70 x 12, the question under the
// text, F11 goes ahead, Esc cancels). On F11 the dialog works in this order, logging each
// step: find the management interface and its distributed-switch port; read the port's VLAN
// and the uplinks that serve it (the port's own uplinks among this host's uplinks on the
// switch, or all of those when the port names none); make the first free "vSwitchN"; move
// each of those uplinks from the distributed switch onto it; add the "Management Network"
// port group with the port's VLAN; move the interface onto the port group; disable every
// other virtual NIC, which the move leaves without a way out. Each failure is logged and shown
// under "Network Configuration Error"; a failure that leaves nothing to build on (no
// interface, no switch, no port group) ends the run there. Nothing is rolled back.
#pragma once

#include <memory>

#include "ui/Dialog.h"

namespace Konu {

// The menu entry: runs the dialog.
void RestoreStandardSwitch(Frame* owner);

class RestoreStandardSwitchDialog : public Dialog {
 public:
  explicit RestoreStandardSwitchDialog(Frame* owner);
  ~RestoreStandardSwitchDialog() override;

  // 1 when the restore ran (whatever failed on the way), 0 when cancelled.
  int EventLoop() override;

 private:
  void Restore();
  // Logs and shows one failure.
  void Fail(const std::string& text);

  std::unique_ptr<TextArea> question_;
};

}  // namespace Konu
