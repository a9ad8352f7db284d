// NetworkRestoreWindow: the entry table and the distributed-switch check.
#include "network/NetworkRestoreWindow.h"

#include <iterator>

#include "app/Runtime.h"
#include "host/Host.h"
#include "network/ManagementUplinks.h"
#include "network/RestoreDvsDialog.h"
#include "network/RestoreNetworkDialog.h"
#include "network/RestoreStandardSwitchDialog.h"

namespace Konu {
namespace {

constexpr int kTitle = 62;  // "Network Restore Options"

constexpr const char* kFooter =
    "{color:white}<Enter>{/color}{color:light-grey} Restore{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Exit{/color}{/align}";

// One entry: its label, the text of its pane, whether it needs the management interface on
// a distributed switch, and what Enter runs (nothing while null).
struct Entry {
  int label;
  int pane;
  bool needsDvs;
  void (*run)(Frame* owner);
};

constexpr Entry kEntries[] = {
    {63, 66, false, RestoreNetworkSettings},  // "Restore Network Settings"
    {64, 67, true, RestoreStandardSwitch},    // "Restore Standard Switch"
    {65, 68, true, RestoreDvs},               // "Restore DVS"
};

}  // namespace

NetworkRestoreWindow::NetworkRestoreWindow(Frame* owner)
    : RootWindow(owner),
      items_{LabelItem(GetString(kEntries[0].label), true), LabelItem(GetString(kEntries[1].label), true),
             LabelItem(GetString(kEntries[2].label), true)} {
  static_assert(std::size(kEntries) == std::tuple_size_v<decltype(items_)>);
  Reenable();
  MenuList().SetItems({&items_[0], &items_[1], &items_[2]});
}

NetworkRestoreWindow::~NetworkRestoreWindow() = default;

void NetworkRestoreWindow::Reenable() {
  const bool onDvs = IsOnDistributedSwitch(*Runtime::Get().Host().CreateNetworkInfo());
  for (size_t i = 0; i < items_.size(); ++i) items_[i].SetEnabled(!kEntries[i].needsDvs || onDvs);
}

void NetworkRestoreWindow::Refresh() {
  const int index = MenuList().Focus().FocusedIndex();
  if (index >= 0 && index < static_cast<int>(std::size(kEntries))) {
    InformationTitle().SetText(GetString(kEntries[index].label));
    InformationText().SetText(GetString(kEntries[index].pane));
    RightFooter().SetText(kFooter);
  }
  Update();
}

int NetworkRestoreWindow::EventLoop() {
  return RunMenu(kTitle, [this](int index) {
    if (index < 0 || index >= static_cast<int>(std::size(kEntries))) return;
    const Entry& entry = kEntries[index];
    if (!entry.run || !items_[index].IsEnabled()) return;
    entry.run(this);
    Reenable();
    // A restore that took the interface off its distributed switch dims the entry run.
    if (!items_[index].IsEnabled()) MenuList().SetItems({&items_[0], &items_[1], &items_[2]});
  });
}

}  // namespace Konu
