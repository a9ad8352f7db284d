// RunningVMsWarningDialog: 60 x 10, Enter confirms and Esc cancels.
#include "ops/RunningVMsWarningDialog.h"

#include "ui/FormKeys.h"

namespace Konu {
namespace {
constexpr int kWidth = 60;
constexpr int kHeight = 10;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 166;  // "Warning: VMs running on the host"
constexpr int kText = 167;   // "Host has VMs running. Are you sure ..."
constexpr const char* kFooter =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}{align:right}{color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";
}  // namespace

RunningVMsWarningDialog::RunningVMsWarningDialog(Frame* owner)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight) {}

RunningVMsWarningDialog::~RunningVMsWarningDialog() = default;

int RunningVMsWarningDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooter);
  for (;;) {
    const int key = GetKey(true);
    if (IsEnterKey(key)) return 1;
    if (key == kKeyEsc) return 0;
  }
}

}  // namespace Konu
