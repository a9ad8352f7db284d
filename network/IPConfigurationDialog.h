// IPv4 Configuration: disabled, DHCP or static address, subnet mask and default gateway,
// checked in that order.
#pragma once

#include "host/IpConfig.h"
#include "network/NetworkFormDialog.h"

namespace Konu {

class IPConfigurationDialog : public NetworkFormDialog {
 public:
  // `applied` holds the addresses, the gateway and the "none" flag, `pending` the DHCP choice
  // (the management network screen's two copies). Both are written only on acceptance.
  IPConfigurationDialog(Frame* owner, HostCtl::Network::IpConfig& applied,
                        HostCtl::Network::IpConfig& pending);
  ~IPConfigurationDialog() override;

 protected:
  bool Accept() override;

 private:
  HostCtl::Network::IpConfig& applied_;
  HostCtl::Network::IpConfig& pending_;
  RadioItem* disable_;
  RadioItem* dynamic_;
  RadioItem* static_;
  InputItem* address_;
  InputItem* netmask_;
  InputItem* gateway_;
};

// The address as a field shows it: "" for 0.0.0.0.
std::string FieldText(const HostCtl::Network::Ipv4Address& address);

}  // namespace Konu
