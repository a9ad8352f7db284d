// A warning with a yes/no question under it: go on (Y) or not (N, Esc).
#pragma once

#include <cstdint>
#include <memory>

#include "ui/Dialog.h"
#include "ui/TextArea.h"

namespace Konu {

class QuestionDialog : public Dialog {
 public:
  // Title, warning text and question are string-table ids.
  QuestionDialog(Frame* owner, uint32_t titleId, uint32_t textId, uint32_t questionId);
  ~QuestionDialog() override;

  // 1 for yes; 0 for no or Esc.
  int EventLoop() override;

 private:
  uint32_t titleId_;
  uint32_t textId_;
  uint32_t questionId_;
  std::unique_ptr<TextArea> question_;
};

}  // namespace Konu
