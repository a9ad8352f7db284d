// UsedAdaptersDialog: 70 x 11, the warning in the header and the question in the body.
#include "network/UsedAdaptersDialog.h"

#include "ui/Footers.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 11;
constexpr int kHeaderHeight = 6;
constexpr int kTitle = 71;  // "Network Adapters: Warning"
constexpr int kText = 72;   // "One or more of the selected adapters are already used for other connections."
constexpr int kQuestion = 73;  // "Remove these adapters from their current connections?"

constexpr int kEsc = 27;

}  // namespace

UsedAdaptersDialog::UsedAdaptersDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  if (Window* content = Content())
    question_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), 1, 7);
}

UsedAdaptersDialog::~UsedAdaptersDialog() = default;

int UsedAdaptersDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  if (question_) question_->SetText(GetString(kQuestion));
  SetFooter(kFooterYesNoCancel);
  for (;;) {
    const int key = GetKey(true);
    if (key == 'y' || key == 'Y') return 1;
    if (key == 'n' || key == 'N' || key == kEsc) return 0;
  }
}

}  // namespace Konu
