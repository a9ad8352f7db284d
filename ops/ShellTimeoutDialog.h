// "Set the timeouts for Orin Shell access": the shell's availability and idle timeouts in
// minutes, stored in seconds as host advanced options.
#pragma once

#include <cstdint>

#include "ops/TimeoutDialog.h"

namespace Konu {

class ShellTimeoutDialog : public TimeoutDialog {
 public:
  // Reads both options through orincfg-advcfg.
  explicit ShellTimeoutDialog(Frame* owner);
  ~ShellTimeoutDialog() override;

  uint32_t AvailabilityMinutes() const { return availabilityMinutes_; }
  uint32_t IdleMinutes() const { return idleMinutes_; }

 private:
  struct Stored {
    uint32_t availabilityMinutes;
    uint32_t idleMinutes;
  };
  static Stored ReadStored();
  ShellTimeoutDialog(Frame* owner, const Stored& stored);

  // Each changed, valid field is set with orincli (localcli when that fails); a changed
  // availability restarts the running shell services.
  void Apply() override;

  uint32_t availabilityMinutes_;
  uint32_t idleMinutes_;
};

}  // namespace Konu
