// Restarting the management network: takes the interface down and up again, showing the
// progress and the addresses it holds afterwards until Enter.
#pragma once

#include <memory>
#include <string>

#include "ui/Dialog.h"

namespace HostCtl::Network {
class NukNic;
}

namespace Konu {

class DoRestartNetworkDialog : public Dialog {
 public:
  // `nic` is the management interface; not owned.
  DoRestartNetworkDialog(Frame* owner, HostCtl::Network::NukNic& nic);
  ~DoRestartNetworkDialog() override;

  // Restarts the interface, then waits for Enter; returns 1. Library failures
  // (HostCtl::Lib::HostCtlException) go on to the caller.
  int EventLoop() override;

 private:
  void Append(const std::string& text);

  HostCtl::Network::NukNic& nic_;
  std::unique_ptr<TextArea> progress_;
};

}  // namespace Konu
