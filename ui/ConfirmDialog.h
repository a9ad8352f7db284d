// A message-box sized question answered with Enter (confirm) or Esc (cancel).
#pragma once

#include <cstdint>

#include "ui/Dialog.h"

namespace Konu {

class ConfirmDialog : public Dialog {
 public:
  // `width` columns by 10 rows, header 7; title and text are string-table ids.
  ConfirmDialog(Frame* owner, int width, uint32_t titleId, uint32_t textId);
  ~ConfirmDialog() override;

  // Enter returns 1 (confirmed), Esc 0; other keys are ignored.
  int EventLoop() override;

 private:
  uint32_t titleId_;
  uint32_t textId_;
};

}  // namespace Konu
