// IPv6 Configuration: disabled (after a restart), automatic (DHCPv6 or router advertisement)
// or static, with one static address to add and the default gateway.
#pragma once

#include "host/IpConfig.h"
#include "network/NetworkFormDialog.h"

namespace Konu {

class IPv6ConfigurationDialog : public NetworkFormDialog {
 public:
  // `applied` takes the static address and the gateway, `pending` the DHCPv6 and
  // router-advertisement choice; `enabled` is the pending IPv6 enablement. All are written
  // only on acceptance.
  IPv6ConfigurationDialog(Frame* owner, HostCtl::Network::IpConfig& applied,
                          HostCtl::Network::IpConfig& pending, bool enabled);
  ~IPv6ConfigurationDialog() override;

  // After acceptance: the enable/disable answer, and whether the default gateway was changed.
  bool Enabled() const { return enabled_; }
  bool GatewayChanged() const { return gatewayChanged_; }

 protected:
  void Space(Item* item) override;
  bool Accept() override;

 private:
  HostCtl::Network::IpConfig& applied_;
  HostCtl::Network::IpConfig& pending_;
  HostCtl::Network::IpConfig modes_;  // the modes Space set, copied to `pending_` on acceptance
  bool enabled_;
  bool gatewayChanged_ = false;
  RadioItem* disable_;
  RadioItem* dynamic_;
  CheckItem* dhcpv6_;
  RadioItem* static_;
  InputItem* address_;
  InputItem* gateway_;
};

}  // namespace Konu
