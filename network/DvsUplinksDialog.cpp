// DvsUplinksDialog: 76 x 16, the adapter list's heading and rows, one check box per uplink.
#include "network/DvsUplinksDialog.h"

#include <syslog.h>

#include <algorithm>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/AdaptersDialog.h"
#include "ui/Markup.h"

namespace Konu {
namespace {

constexpr int kWidth = 76;
constexpr int kHeight = 16;
constexpr int kHeaderHeight = 6;
constexpr int kTitle = 193;  // "DVS Uplinks"
constexpr int kText = 194;   // "Select the DVS Uplinks (one or more) to be used by management nuknic"
constexpr const char* kFooter =
    "{color:black}<Space>{/color} {color:dark-grey}Toggle "
    "Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
constexpr int kMarkWidth = 4;  // "[X] " before each row

}  // namespace

DvsUplinksDialog::DvsUplinksDialog(Frame* owner, std::vector<std::string> uplinks,
                                   const std::vector<std::string>& selected)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), uplinks_(std::move(uplinks)) {
  std::unique_ptr<HostCtl::Network::NetworkInfo> info = Runtime::Get().Host().CreateNetworkInfo();
  std::vector<Item*> items;
  for (const std::string& name : uplinks_) {
    // A NIC the host cannot describe is still listed, by name.
    std::string row = LiteralMarkup(name);
    try {
      row = AdapterRow(info->GetPnic(name), false);
    } catch (const HostCtl::Lib::HostCtlException& e) {
      Log(LOG_ERR, "Getting physical nic %s failed: %s", name.c_str(), e.what());
    }
    const bool marked = std::find(selected.begin(), selected.end(), name) != selected.end();
    items_.push_back(std::make_unique<CheckItem>(row, marked));
    items.push_back(items_.back().get());
  }
  Window* content = Content();
  heading_ = std::make_unique<TextArea>(content, kMarkWidth, 0, content->Width() - kMarkWidth, 1, 7);
  list_ = std::make_unique<ItemList>(content, 0, 1, content->Width(), content->Height() - 1);
  list_->SetItems(items);
}

DvsUplinksDialog::~DvsUplinksDialog() = default;

std::vector<std::string> DvsUplinksDialog::Result() const {
  std::vector<std::string> marked;
  for (size_t i = 0; i < uplinks_.size(); ++i)
    if (items_[i]->IsChecked()) marked.push_back(uplinks_[i]);
  return marked;
}

int DvsUplinksDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooter);
  heading_->SetText(kAdapterListHeading);
  return RunList(
      *list_, [this](int index) { items_[index]->SetChecked(!items_[index]->IsChecked()); },
      [] { return 1; });
}

}  // namespace Konu
