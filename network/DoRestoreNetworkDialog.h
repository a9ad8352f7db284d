// The factory restore of the host's network, with its progress: the virtual machines are
// powered off, the network is put back as it left the factory, the management interface
// restarts, and the addresses it came back with are shown until Enter.
//
// Design: the log line and event come first, then two steps, each shown as its text and
// "Done." or "Failed.". The machines go off as for a shutdown that terminates them. The
// network step is the host's factory restore followed by a restart of the management
// interface (down, refresh, up); a failure of either is logged and shown in a message box
// titled "Network Configuration Error" before the work goes on, and nothing is rolled back.
// The addresses are listed as the restart dialog lists them, except that the IPv4 address
// is shown although it comes from DHCP: after a factory restore it always does, and it is
// the address the operator needs.
#pragma once

#include <memory>
#include <string>

#include "ui/Dialog.h"
#include "ui/TextArea.h"

namespace Konu {

// The log line of a factory restore that cannot run or failed, before its reason.
inline constexpr const char* kFactoryRestoreFailed = "Unable to restore the factory network settings";

class DoRestoreNetworkDialog : public Dialog {
 public:
  explicit DoRestoreNetworkDialog(Frame* owner);
  ~DoRestoreNetworkDialog() override;

  // Restores, then waits for Enter; returns 1.
  int EventLoop() override;

 private:
  void Append(const std::string& text);
  // Logs `step` with the failure and shows the failure; returns false.
  bool Failed(const char* step, const std::string& message);
  // The host's factory restore; false when it failed.
  bool RestoreFactoryNetwork();
  // Restarts the management interface and lists its addresses; false when it failed.
  bool RestartManagementInterface(std::string& addresses);

  std::unique_ptr<TextArea> progress_;
};

}  // namespace Konu
