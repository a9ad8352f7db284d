// DNSConfigurationDialog: 70 x 16; each non-empty server field must be an IPv6 or an IPv4
// address.
#include "network/DNSConfigurationDialog.h"

namespace Konu {
namespace {

using HostCtl::Network::Ipv4Address;
using HostCtl::Network::Ipv6Address;

constexpr int kWidth = 70;
constexpr int kHeight = 16;
constexpr int kHeaderHeight = 6;

enum StringId {
  kTitle = 51,           // "DNS Configuration"
  kText = 117,           // "This host can only obtain DNS settings automatically if ..."
  kAutomatic = 118,      // "Obtain DNS server addresses and a hostname automatically"
  kManual = 119,         // "Use the following DNS server addresses and hostname:"
  kPrimaryLabel = 41,    // "Primary DNS Server"
  kAlternateLabel = 42,  // "Alternate DNS Server"
  kIpv6Label = 43,       // "IPv6 DNS Server"
  kHostnameLabel = 40,   // "Hostname"
  kInvalidServer = 86,   // "Invalid DNS server address"
  kReenterServer = 87,   // "Please reenter a valid DNS server address (IP or IPv6)."
};

std::unique_ptr<DnsServerAddress> Copy(const DnsServerAddress* server) {
  return server ? std::make_unique<DnsServerAddress>(*server) : nullptr;
}

// The server a field names: IPv6 first, then IPv4; false when it is neither. Empty is none.
bool ParseServer(const std::string& text, std::unique_ptr<DnsServerAddress>* server) {
  server->reset();
  if (text.empty()) return true;
  if (Ipv6Address::IsValidAddress(text)) {
    *server = std::make_unique<DnsServerAddress>(Ipv6Address(text));
  } else if (Ipv4Address::IsValidAddress(text)) {
    *server = std::make_unique<DnsServerAddress>(Ipv4Address(text));
  }
  return *server != nullptr;
}

}  // namespace

DNSConfigurationDialog::DNSConfigurationDialog(Frame* owner, bool dhcpDns, const DnsServerAddress* primary,
                                               const DnsServerAddress* alternate, const std::string& hostname)
    : NetworkFormDialog(owner, kWidth, kHeight, kHeaderHeight, kTitle, kText, kFooterMarkSelected),
      dhcpDns_(dhcpDns),
      primary_(Copy(primary)),
      alternate_(Copy(alternate)),
      hostname_(hostname) {
  automatic_ = AddChoice(kAutomatic, dhcpDns);
  manual_ = AddChoice(kManual, !dhcpDns);
  AddSpacer();
  primaryField_ = AddInput(GetString(kPrimaryLabel), DnsServerText(primary), DnsServerChar);
  alternateField_ = AddInput(GetString(IsIpv6DnsServer(alternate) ? kIpv6Label : kAlternateLabel),
                             DnsServerText(alternate), DnsServerChar);
  hostnameField_ = AddInput(GetString(kHostnameLabel), hostname, HostnameChar);
  Finish(manual_);
}

DNSConfigurationDialog::~DNSConfigurationDialog() = default;

bool DNSConfigurationDialog::Accept() {
  dhcpDns_ = IsMarked(automatic_);
  if (dhcpDns_) return true;
  std::unique_ptr<DnsServerAddress> primary, alternate;
  if (!ParseServer(primaryField_->Value(), &primary)) {
    Refuse(kInvalidServer, kReenterServer, primaryField_);
    return false;
  }
  if (!ParseServer(alternateField_->Value(), &alternate)) {
    Refuse(kInvalidServer, kReenterServer, alternateField_);
    return false;
  }
  primary_ = std::move(primary);
  alternate_ = std::move(alternate);
  hostname_ = hostnameField_->Value();
  return true;
}

}  // namespace Konu
