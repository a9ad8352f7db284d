// "DVS Uplinks": choosing which of this host's uplinks on a distributed switch the rebuilt
// management port uses. Space toggles the focused uplink, Enter keeps the choice, Esc drops it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ui/Dialog.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

class DvsUplinksDialog : public Dialog {
 public:
  // `uplinks`: the host's uplinks on the switch, in the switch's order; `selected`: those
  // marked at first.
  DvsUplinksDialog(Frame* owner, std::vector<std::string> uplinks, const std::vector<std::string>& selected);
  ~DvsUplinksDialog() override;

  // Enter answers 1, Esc 0.
  int EventLoop() override;

  // The marked uplinks, in the switch's order.
  std::vector<std::string> Result() const;

 private:
  std::vector<std::string> uplinks_;
  std::vector<std::unique_ptr<CheckItem>> items_;
  std::unique_ptr<TextArea> heading_;
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
