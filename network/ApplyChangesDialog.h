// The exit confirmation of the management network screen: apply (Y), drop (N) or stay (Esc).
#pragma once

#include <memory>

#include "ui/Dialog.h"
#include "ui/TextArea.h"

namespace Konu {

class ApplyChangesDialog : public Dialog {
 public:
  // The answers EventLoop returns.
  static constexpr int kCancel = 0;
  static constexpr int kYes = 1;
  static constexpr int kNo = 2;

  // `ipv6EnablementChanged` asks about a host reboot instead of a network restart.
  ApplyChangesDialog(Frame* owner, bool ipv6EnablementChanged);
  ~ApplyChangesDialog() override;

  int EventLoop() override;

 private:
  bool ipv6EnablementChanged_;
  std::unique_ptr<TextArea> question_;
};

}  // namespace Konu
