// ConfirmDialog: title, text, the Confirm/Cancel footer and its two keys.
#include "ui/ConfirmDialog.h"

#include "ui/FormKeys.h"

namespace Konu {
namespace {
constexpr int kHeight = 10;
constexpr int kHeaderHeight = 7;
constexpr const char* kFooter =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}{align:right}{color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
}  // namespace

ConfirmDialog::ConfirmDialog(Frame* owner, int width, uint32_t titleId, uint32_t textId)
    : Dialog(owner, width, kHeight, kHeaderHeight), titleId_(titleId), textId_(textId) {}

ConfirmDialog::~ConfirmDialog() = default;

int ConfirmDialog::EventLoop() {
  SetTitle(GetString(titleId_));
  SetText(GetString(textId_));
  SetFooter(kFooter);
  for (;;) {
    const int key = GetKey(true);
    if (IsEnterKey(key)) return 1;
    if (key == kKeyEsc) return 0;
  }
}

}  // namespace Konu
