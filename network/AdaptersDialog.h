// Choosing the physical NICs of the management network and their order; D shows a NIC's
// details, and NICs that serve other connections are confirmed on Enter.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/Pnic.h"
#include "ui/Dialog.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

// The heading over AdapterRow rows, which start after a four-column check mark.
inline constexpr const char* kAdapterListHeading =
    "{align:padding:13}Device Name{/align}{align:padding:30}Hardware Label (MAC Address){/align}Status";

// The list row of a NIC, names and labels shortened to fit their columns.
std::string AdapterRow(const HostCtl::Network::Pnic& pnic, bool usedBySomething);

class AdaptersDialog : public Dialog {
 public:
  // `selected`: the adapters held now, in order; `ownSwitch`: the management network's switch.
  AdaptersDialog(Frame* owner, std::vector<std::string> selected, uint32_t maxActiveUplinks,
                 std::string ownSwitch);
  ~AdaptersDialog() override;

  // Enter answers 1 (after the warning, for NICs used elsewhere), Esc 0.
  int EventLoop() override;

  // The chosen NICs in the order they were marked.
  const std::vector<std::string>& Result() const { return result_; }
  uint32_t MaxActiveUplinks() const { return maxActiveUplinks_; }

 private:
  void Toggle(int index);
  void ShowDetails();
  // True when no chosen NIC serves another connection, or the operator agreed to move them.
  bool ConfirmUsed();
  int FocusedNic() const;

  std::vector<HostCtl::Network::Pnic> pnics_;
  std::map<std::string, std::string> usedBy_;  // NIC name -> switch that uses it
  std::vector<std::string> result_;
  uint32_t maxActiveUplinks_;
  std::string ownSwitch_;
  std::vector<std::unique_ptr<CheckItem>> items_;
  std::unique_ptr<TextArea> heading_;
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
