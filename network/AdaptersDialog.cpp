// AdaptersDialog: 76 x 20, a heading row over one check-box row per physical NIC.
#include "network/AdaptersDialog.h"

#include <syslog.h>

#include <algorithm>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/AdapterInfoDialog.h"
#include "ui/Markup.h"
#include "ui/QuestionDialog.h"

namespace Konu {
namespace {

using HostCtl::Lib::HostCtlException;

constexpr int kWidth = 76;
constexpr int kHeight = 20;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 69;  // "Network Adapters"
constexpr int kText = 70;  // "Select the adapters for this host's default management network connection. ..."
constexpr int kUsedTitle = 71;  // "Network Adapters: Warning"
constexpr int kUsedText =
    72;  // "One or more of the selected adapters are already used for other connections."
constexpr int kUsedQuestion = 73;  // "Remove these adapters from their current connections?"
constexpr const char* kFooter =
    "{color:black}<D>{/color} {color:dark-grey}View Details{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Toggle Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
constexpr int kMarkWidth = 4;  // "[X] " before each row

}  // namespace

std::string AdapterRow(const HostCtl::Network::Pnic& pnic, bool usedBySomething) {
  std::string name = pnic.name;
  if (name.size() > 11) name = name.substr(0, 8) + "...";
  std::string label = pnic.GetHardwareLabel();
  if (label.size() > 14) label = label.substr(0, 11) + "...";
  std::string mac = pnic.macAddress.GetStringAddress();
  if (label.size() + mac.size() > 25) mac = "..." + mac.substr(mac.size() - (22 - label.size()));
  return "{align:padding:13}" + LiteralMarkup(name) + "{/align}{align:padding:30}" + LiteralMarkup(label) +
         " (" + mac + "){/align}" + (pnic.linkUp ? "Connected" : "Disconnected") + " " +
         (usedBySomething ? "(...)" : "");
}

AdaptersDialog::AdaptersDialog(Frame* owner, std::vector<std::string> selected, uint32_t maxActiveUplinks,
                               std::string ownSwitch)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight),
      result_(std::move(selected)),
      maxActiveUplinks_(maxActiveUplinks),
      ownSwitch_(std::move(ownSwitch)) {
  const HostCtl::Host& host = Runtime::Get().Host();
  try {
    pnics_ = host.CreateNetworkInfo()->GetPnics();
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting physical nics failed: %s", e.what());
  }
  std::unique_ptr<HostCtl::Network::VirtualSwitchInfo> switches = host.CreateVirtualSwitchInfo();
  try {
    for (const auto& sw : switches->GetVirtualSwitches())
      for (const std::string& nic : sw.uplinks) usedBy_[nic] = sw.name;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Scanning virtual switches failed: %s", e.what());
  }
  try {
    for (const auto& dvs : switches->GetDVSwitches())
      for (const std::string& nic : dvs.uplinks) usedBy_[nic] = dvs.name;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Scanning dvswitches failed: %s", e.what());
  }
  std::vector<Item*> items;
  for (const auto& pnic : pnics_) {
    const bool marked = std::find(result_.begin(), result_.end(), pnic.name) != result_.end();
    items_.push_back(std::make_unique<CheckItem>(AdapterRow(pnic, usedBy_.count(pnic.name) > 0), marked));
    items.push_back(items_.back().get());
  }
  Window* content = Content();
  heading_ = std::make_unique<TextArea>(content, kMarkWidth, 0, content->Width() - kMarkWidth, 1, 7);
  list_ = std::make_unique<ItemList>(content, 0, 1, content->Width(), content->Height() - 1);
  list_->SetItems(items);
}

AdaptersDialog::~AdaptersDialog() = default;

int AdaptersDialog::FocusedNic() const {
  const int index = list_->Focus().FocusedIndex();
  return index >= 0 && index < static_cast<int>(pnics_.size()) ? index : -1;
}

void AdaptersDialog::Toggle(int index) {
  const std::string& name = pnics_[index].name;
  auto at = std::find(result_.begin(), result_.end(), name);
  if (at != result_.end()) {
    result_.erase(at);
    items_[index]->SetChecked(false);
  } else {
    // Appended: the order of marking is the order of the result.
    result_.push_back(name);
    items_[index]->SetChecked(true);
  }
}

void AdaptersDialog::ShowDetails() {
  const int index = FocusedNic();
  if (index < 0) return;
  auto used = usedBy_.find(pnics_[index].name);
  AdapterInfoDialog details(this, pnics_[index], used == usedBy_.end() ? "" : used->second);
  details.RunModal();
}

bool AdaptersDialog::ConfirmUsed() {
  for (const std::string& nic : result_) {
    auto used = usedBy_.find(nic);
    if (used != usedBy_.end() && used->second != ownSwitch_) {
      QuestionDialog warning(this, kUsedTitle, kUsedText, kUsedQuestion);
      return warning.RunModal() == 1;
    }
  }
  return true;
}

int AdaptersDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooter);
  heading_->SetText(kAdapterListHeading);
  return RunList(
      *list_, [this](int index) { Toggle(index); },
      [this] { return result_.empty() || ConfirmUsed() ? 1 : -1; },
      [this](int key) {
        if (key == 'd' || key == 'D') ShowDetails();
      });
}

}  // namespace Konu
