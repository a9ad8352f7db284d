// The management network's VLAN id: empty for none, 1 to 4095 (4095 after a warning).
#pragma once

#include <cstdint>
#include <memory>

#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"

namespace Konu {

// The keys a VLAN ID field takes: digits, and the editing keys that move or delete.
bool IsVlanIdKey(int key);

class VlanDialog : public Dialog {
 public:
  VlanDialog(Frame* owner, uint16_t vlanId);
  ~VlanDialog() override;

  // Enter with an accepted value answers 1; Esc 0.
  int EventLoop() override;

  // The accepted VLAN id (0 = unset).
  uint16_t VlanId() const { return vlanId_; }

 private:
  // Checks the field; shows the warning or the refusal. True when accepted.
  bool Accept();

  uint16_t vlanId_;
  std::unique_ptr<InputItem> field_;
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
