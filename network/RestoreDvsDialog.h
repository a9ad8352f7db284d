// "Restore DVS": rebuilds the management interface's distributed-switch port as a new
// host-local port with a VLAN, blocked state and uplinks the operator gives, for a port whose
// settings cut the host off.
//
// Design: RestoreDvs() first reads the interface's port; a failure shows "Restore DVS: Error"
// with "Check logs", and a switch of another vendor the "3rd party DVS" text, without opening
// the form. The form (70 x 16, text over the items) holds the VLAN ID field (digits; empty for
// none, taken from the port), the check box that unblocks the new port, and "Select DVS
// uplinks", whose Enter opens the uplink list (marked as the port has them; "No DVS Uplinks"
// when the host has none on the switch). F11 goes ahead, as for every disruptive action, Esc
// cancels: a VLAN ID outside 1-4094 is refused with the selection on the field; no uplinks
// asks whether to go on (N returns to the form). Then a host-local port with these properties,
// every other one cloned from the current port, is added and the interface moved onto it;
// either failing is logged and shown as "Restore DVS: Error". Nothing is rolled back.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "network/ManagementDvsPort.h"
#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

// The menu entry: the checks, then the dialog.
void RestoreDvs(Frame* owner);

class RestoreDvsDialog : public Dialog {
 public:
  RestoreDvsDialog(Frame* owner, ManagementDvsPort found);
  ~RestoreDvsDialog() override;

  // 1 when the restore ran (whatever its outcome), 0 when cancelled.
  int EventLoop() override;

 private:
  void Draw();
  void SelectUplinks();
  // Checks the values and asks about missing uplinks; false keeps the form open.
  bool Accept(uint16_t& vlanId);
  void Restore(uint16_t vlanId);

  ManagementDvsPort found_;
  std::vector<std::string> selected_;
  InputItem vlan_;
  LabelItem spacer_;
  CheckItem unblock_;
  LabelItem uplinks_;
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
