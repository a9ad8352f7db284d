// SamePasswordConfirmDialog: a message-box sized warning with Confirm and Cancel.
#include "screens/SamePasswordConfirmDialog.h"

namespace Konu {
namespace {
constexpr int kWidth = 70;
constexpr uint32_t kTitle = 155;    // "Configure Password: Warning"
constexpr uint32_t kMessage = 159;  // "New password is same as old password. Are you sure?"
}  // namespace

SamePasswordConfirmDialog::SamePasswordConfirmDialog(Frame* owner)
    : ConfirmDialog(owner, kWidth, kTitle, kMessage) {}

}  // namespace Konu
