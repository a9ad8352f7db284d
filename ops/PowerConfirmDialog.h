// The progress boxes shown while the host goes down: machines are powered off, then
// "poweroff" or "reboot" runs, and the box stays until the host takes the console away.
#pragma once

#include <string>

#include "ui/Dialog.h"

namespace Konu {

// Reads keys and throws them away until the process is ended from outside (the host going
// down ends the console; a terminating signal ends it as everywhere else).
[[noreturn]] void DiscardKeysForEver(Frame& frame);

// Asks nothing: shows its title and text at once, powers off the virtual machines (with
// "--terminate" unless `keepRunning`), runs the host command and stays. Returns 0 only
// when the command could not be run (the shell answered -1).
class PowerConfirmDialog : public Dialog {
 public:
  ~PowerConfirmDialog() override;
  int EventLoop() override;

  bool KeepRunning() const { return keepRunning_; }

 protected:
  PowerConfirmDialog(Frame* owner, bool keepRunning, int titleId, int textId, const char* command);

 private:
  bool keepRunning_;
  int titleId_;
  int textId_;
  const char* command_;
};

// "Shut Down Host": "Shutdown in progress...", then "poweroff".
class ShutdownConfirmDialog : public PowerConfirmDialog {
 public:
  ShutdownConfirmDialog(Frame* owner, bool keepRunning);
};

// "Restart Host": "Restart in progress...", then "reboot". Also shown when a network change
// needs a restart.
class RebootConfirmDialog : public PowerConfirmDialog {
 public:
  RebootConfirmDialog(Frame* owner, bool keepRunning);
};

}  // namespace Konu
