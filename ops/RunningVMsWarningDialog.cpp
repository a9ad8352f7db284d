// RunningVMsWarningDialog: 60 x 10, Enter confirms and Esc cancels.
#include "ops/RunningVMsWarningDialog.h"

namespace Konu {
namespace {
constexpr int kWidth = 60;
constexpr uint32_t kTitle = 166;  // "Warning: VMs running on the host"
constexpr uint32_t kText = 167;   // "Host has VMs running. Are you sure ..."
}  // namespace

RunningVMsWarningDialog::RunningVMsWarningDialog(Frame* owner)
    : ConfirmDialog(owner, kWidth, kTitle, kText) {}

}  // namespace Konu
