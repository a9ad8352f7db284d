// The warning that chosen NICs serve other connections: take them off those (Y) or not (N).
#pragma once

#include <memory>

#include "ui/Dialog.h"
#include "ui/TextArea.h"

namespace Konu {

class UsedAdaptersDialog : public Dialog {
 public:
  explicit UsedAdaptersDialog(Frame* owner);
  ~UsedAdaptersDialog() override;

  // 1 for yes; 0 for no or Esc.
  int EventLoop() override;

 private:
  std::unique_ptr<TextArea> question_;
};

}  // namespace Konu
