// VlanDialog: 70 x 12, one digits-only input field with the cursor shown at once.
#include "network/VlanDialog.h"

#include <curses.h>

#include <string>

#include "ui/Footers.h"
#include "ui/FormKeys.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 12;
constexpr int kHeaderHeight = 6;
constexpr int kTitle = 46;          // "VLAN (optional)"
constexpr int kText = 91;           // "If you are unsure how to configure or use a VLAN, ..."
constexpr int kLabel = 92;          // "VLAN ID (1-4094, or 4095 to access all VLANs):"
constexpr int kWarningTitle = 106;  // "Warning"
constexpr int kAllVlans = 90;       // "You entered a VLAN ID of 4095. ..."
constexpr int kInvalidTitle = 88;   // "Invalid VLAN ID"
constexpr int kInvalidText = 89;    // "Please reenter a valid VLAN ID (1-4095)."
constexpr int kFieldWidth = 6;

}  // namespace

bool IsVlanIdKey(int key) {
  return (key >= '0' && key <= '9') || (IsEditingKey(key) && (key < 32 || key >= 127));
}

VlanDialog::VlanDialog(Frame* owner, uint16_t vlanId)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), vlanId_(vlanId) {
  field_ = std::make_unique<InputItem>(GetString(kLabel), vlanId ? std::to_string(vlanId) : "", kFieldWidth);
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems({field_.get()});
}

VlanDialog::~VlanDialog() = default;

bool VlanDialog::Accept() {
  const std::string& text = field_->Value();
  if (text.empty()) {
    vlanId_ = 0;
    return true;
  }
  // Digits only; anything too long for the range is simply out of it.
  const unsigned long n = text.size() > 9 ? 0 : std::stoul(text);
  if (static_cast<uint32_t>(n - 1) < 4095u) {
    if (n == 4095) {
      MessageDialog warning(this, kWarningTitle, kAllVlans);
      warning.RunModal();
    }
    vlanId_ = static_cast<uint16_t>(n);
    return true;
  }
  MessageDialog refusal(this, kInvalidTitle, kInvalidText);
  refusal.RunModal();
  return false;
}

int VlanDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooterOkCancel);
  ShowCursor(true);
  list_->Draw();
  for (;;) {
    const int key = GetKey(true);
    if (key == kKeyEsc) {
      ShowCursor(false);
      return 0;
    }
    if (key == '\n') {
      if (Accept()) {
        ShowCursor(false);
        return 1;
      }
      ShowCursor(true);
      list_->Draw();
    } else if (IsVlanIdKey(key)) {
      field_->HandleKey(key);
      list_->Draw();
    }
  }
}

}  // namespace Konu
