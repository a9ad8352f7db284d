// "Set idle timeout for KONU access": the console's own idle timeout in minutes.
#pragma once

#include "ops/TimeoutDialog.h"

namespace Konu {

class KonuTimeoutDialog : public TimeoutDialog {
 public:
  // Shows the stored timeout (GetKonuTimeout) in whole minutes.
  explicit KonuTimeoutDialog(Frame* owner);
  ~KonuTimeoutDialog() override;

  unsigned Seconds() const { return seconds_; }

 private:
  KonuTimeoutDialog(Frame* owner, unsigned seconds);

  // A valid value whose seconds differ from the stored ones is saved, and the running
  // session's idle timer takes it at once.
  void Apply() override;

  unsigned seconds_;
};

}  // namespace Konu
