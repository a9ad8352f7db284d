// QuestionDialog: 70 x 11, the warning in the header and the question in the body.
#include "ui/QuestionDialog.h"

#include "ui/Footers.h"
#include "ui/FormKeys.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 11;
constexpr int kHeaderHeight = 6;

}  // namespace

QuestionDialog::QuestionDialog(Frame* owner, uint32_t titleId, uint32_t textId, uint32_t questionId)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight),
      titleId_(titleId),
      textId_(textId),
      questionId_(questionId) {
  if (Window* content = Content())
    question_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), 1, 7);
}

QuestionDialog::~QuestionDialog() = default;

int QuestionDialog::EventLoop() {
  SetTitle(GetString(titleId_));
  SetText(GetString(textId_));
  if (question_) question_->SetText(GetString(questionId_));
  SetFooter(kFooterYesNoCancel);
  for (;;) {
    const int key = GetKey(true);
    if (key == 'y' || key == 'Y') return 1;
    if (key == 'n' || key == 'N' || key == kKeyEsc) return 0;
  }
}

}  // namespace Konu
