// MessageDialog: 70 x 10 with a header of 7 rows and an Enter footer.
#include "ui/MessageDialog.h"

#include "ui/Footers.h"

namespace Konu {
namespace {
constexpr int kWidth = 70;
constexpr int kHeight = 10;
constexpr int kHeaderHeight = 7;
constexpr int kEnter = 10;
}  // namespace

MessageDialog::MessageDialog(Frame* owner, int titleId, int messageId)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight),
      titleId_(titleId),
      messageId_(messageId),
      message_(GetString(static_cast<uint32_t>(messageId))) {}

MessageDialog::MessageDialog(Frame* owner, int titleId, std::string message)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), titleId_(titleId), message_(std::move(message)) {}

MessageDialog::~MessageDialog() = default;

int MessageDialog::EventLoop() {
  SetTitle(GetString(static_cast<uint32_t>(titleId_)));
  SetText(message_);
  SetFooter(kFooterOk);
  while (GetKey(true) != kEnter) {
  }
  return 1;
}

}  // namespace Konu
