// ApplyChangesDialog: 70 x 15, the text in the header and the question in the body.
#include "network/ApplyChangesDialog.h"

#include "ui/Footers.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 15;
constexpr int kHeaderHeight = 9;
constexpr int kTitle = 204;            // "Configure Management Network: Confirm"
constexpr int kText = 205;             // "You have made changes to the host's management network. ..."
constexpr int kRestartQuestion = 206;  // "Apply changes and restart management network?"
constexpr int kRebootQuestion = 207;   // "Apply changes and reboot host?"

constexpr int kEsc = 27;

}  // namespace

ApplyChangesDialog::ApplyChangesDialog(Frame* owner, bool ipv6EnablementChanged)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), ipv6EnablementChanged_(ipv6EnablementChanged) {
  if (Window* content = Content())
    question_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), 1, 7);
}

ApplyChangesDialog::~ApplyChangesDialog() = default;

int ApplyChangesDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  if (question_) question_->SetText(GetString(ipv6EnablementChanged_ ? kRebootQuestion : kRestartQuestion));
  SetFooter(kFooterYesNoCancel);
  for (;;) {
    const int key = GetKey(true);
    if (key == 'y' || key == 'Y') return kYes;
    if (key == 'n' || key == 'N') return kNo;
    if (key == kEsc) return kCancel;
  }
}

}  // namespace Konu
