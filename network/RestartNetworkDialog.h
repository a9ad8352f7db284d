// Restarting the management network: the confirmation (F11 confirms, Esc cancels) that runs
// the restart on the interface it was given.
#pragma once

#include "ui/Dialog.h"

namespace HostCtl::Network {
class NukNic;
}

namespace Konu {

class RestartNetworkDialog : public Dialog {
 public:
  // `nic` is the management interface, found by the caller; not owned.
  RestartNetworkDialog(Frame* owner, HostCtl::Network::NukNic& nic);
  ~RestartNetworkDialog() override;

  // 1 when the restart was carried out, 0 when cancelled. Library failures of the restart
  // (HostCtl::Lib::HostCtlException) go on to the caller.
  int EventLoop() override;

 private:
  HostCtl::Network::NukNic& nic_;
  std::unique_ptr<TextArea> question_;
};

}  // namespace Konu
