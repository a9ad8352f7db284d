// DNS Configuration: servers and host name from DHCP, or a primary and an alternate server
// (IPv4 or IPv6) and a host name.
#pragma once

#include <memory>
#include <string>

#include "network/NetworkFormDialog.h"
#include "network/NetworkModel.h"

namespace Konu {

class DNSConfigurationDialog : public NetworkFormDialog {
 public:
  // The held values; none is changed by the dialog.
  DNSConfigurationDialog(Frame* owner, bool dhcpDns, const DnsServerAddress* primary,
                         const DnsServerAddress* alternate, const std::string& hostname);
  ~DNSConfigurationDialog() override;

  // After acceptance: DNS from DHCP, the servers (null for an empty field) and the host name.
  bool DhcpDns() const { return dhcpDns_; }
  const DnsServerAddress* Primary() const { return primary_.get(); }
  const DnsServerAddress* Alternate() const { return alternate_.get(); }
  std::unique_ptr<DnsServerAddress> TakePrimary() { return std::move(primary_); }
  std::unique_ptr<DnsServerAddress> TakeAlternate() { return std::move(alternate_); }
  const std::string& Hostname() const { return hostname_; }

 protected:
  bool Accept() override;

 private:
  bool dhcpDns_;
  std::unique_ptr<DnsServerAddress> primary_;
  std::unique_ptr<DnsServerAddress> alternate_;
  std::string hostname_;
  RadioItem* automatic_;
  RadioItem* manual_;
  InputItem* primaryField_;
  InputItem* alternateField_;
  InputItem* hostnameField_;
};

}  // namespace Konu
