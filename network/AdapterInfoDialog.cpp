// AdapterInfoDialog: 60 x 15, one line per fact.
#include "network/AdapterInfoDialog.h"

#include "ui/Footers.h"
#include "ui/Markup.h"

namespace Konu {
namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 15;
constexpr int kHeaderHeight = 4;
constexpr int kEsc = 27;

}  // namespace

AdapterInfoDialog::AdapterInfoDialog(Frame* owner, const HostCtl::Network::Pnic& pnic,
                                     const std::string& usedBy)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  details_ = "Device Name: " + LiteralMarkup(pnic.name) +
             "\nHardware Label: " + LiteralMarkup(pnic.GetHardwareLabel()) +
             "\nMAC Address: " + pnic.macAddress.GetStringAddress() +
             "\nConnection Status: " + (pnic.linkUp ? "Connected" : "Disconnected") + "\n\n" +
             (usedBy.empty() ? "Used By: None" : "Used By:\n  " + LiteralMarkup(usedBy));
  if (Window* content = Content())
    text_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), content->Height(), 7);
}

AdapterInfoDialog::~AdapterInfoDialog() = default;

int AdapterInfoDialog::EventLoop() {
  SetTitle("Adapter Details");
  SetFooter(kFooterOk);
  if (text_) text_->SetText(details_);
  for (;;) {
    const int key = GetKey(true);
    if (key == '\n') return 1;
    if (key == kEsc) return 0;
  }
}

}  // namespace Konu
