// Restarting the management network: takes the interface down and up again, showing the
// progress and the addresses it holds afterwards until Enter.
#pragma once

#include <memory>
#include <string>

#include "ui/Dialog.h"

namespace HostCtl::Network {
class IpConfig;
class NukNic;
}  // namespace HostCtl::Network

namespace Konu {

// The lines that list an interface's addresses after a restart, each after `label` (string
// 129 "IP address is "): the IPv4 address when `showIpv4` (the restart leaves out a DHCP
// one), then the static IPv6 addresses that are not link-local, at most two unless the list
// holds exactly three entries.
std::string RestartAddressLines(const HostCtl::Network::IpConfig& current, bool showIpv4,
                                const std::string& label);

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
