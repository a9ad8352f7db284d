// IPv6ConfigurationDialog: 70 x 18; the mode table, the static address checks (format, then
// link-local scope) and the gateway check.
#include "network/IPv6ConfigurationDialog.h"

namespace Konu {
namespace {

using HostCtl::Network::Ipv6Address;
using HostCtl::Network::Ipv6AddressType;
using HostCtl::Network::Ipv6Network;
using HostCtl::Network::Ipv6Scope;

constexpr int kWidth = 70;
constexpr int kHeight = 18;
constexpr int kHeaderHeight = 7;
// The first 16 bits of a link-local address, compared exactly (fe81:: passes).
constexpr uint16_t kLinkLocalHextet = 0xfe80;
constexpr const char* kCheckIndent = "    ";

enum StringId {
  kTitle = 48,           // "IPv6 Configuration"
  kText = 99,            // "This host can obtain network settings automatically if ..."
  kDisable = 100,        // "Disable IPv6 (restart required)"
  kDynamic = 101,        // "Use dynamic IPv6 address and network configuration"
  kUseDhcpv6 = 102,      // "Use DHCPv6"
  kStatic = 103,         // "Set static IPv6 address and network configuration"
  kAddressLabel = 104,   // "Static address"
  kGatewayLabel = 105,   // "Default gateway"
  kInvalidAddress = 74,  // "Invalid IP address"
  kReenterNetwork = 76,  // "Please reenter a valid IPv6 network address (x:x:x/x)."
  kInvalidScope = 80,    // "Invalid scope"
  kNoLinkLocal = 81,     // "Cannot add a link-local address as static address."
  kInvalidGateway = 82,  // "Invalid gateway address"
  kReenterGateway = 84,  // "Please reenter a valid IPv6 gateway address (x:x:x)."
};

// The first static address the interface is configured with, as "address/prefix".
std::string FirstStaticAddress(const HostCtl::Network::IpConfig& config) {
  for (const Ipv6Network& network : config.GetIpv6Network())
    if (network.GetIpv6AddressType() == Ipv6AddressType::kStatic && !network.GetAddress().IsLinkLocal())
      return network.GetStringNetwork();
  return "";
}

std::string GatewayText(const Ipv6Address& gateway) {
  return gateway.IsUnspecified() ? "" : gateway.GetScopedStringAddress();
}

}  // namespace

IPv6ConfigurationDialog::IPv6ConfigurationDialog(Frame* owner, HostCtl::Network::IpConfig& applied,
                                                 HostCtl::Network::IpConfig& pending, bool enabled)
    : NetworkFormDialog(owner, kWidth, kHeight, kHeaderHeight, kTitle, kText, kFooterMarkSelected),
      applied_(applied),
      pending_(pending),
      modes_(pending),
      enabled_(enabled) {
  const bool automatic = pending.GetUseIpv6Dhcp() || pending.GetUseIpv6RouterAdvertised();
  disable_ = AddChoice(kDisable, !enabled);
  dynamic_ = AddChoice(kDynamic, enabled && automatic);
  dhcpv6_ = AddCheck(kCheckIndent + std::string(GetString(kUseDhcpv6)), pending.GetUseIpv6Dhcp());
  static_ = AddChoice(kStatic, enabled && !automatic);
  AddSpacer();
  address_ = AddInput(GetString(kAddressLabel), FirstStaticAddress(applied), Ipv6Char);
  gateway_ = AddInput(GetString(kGatewayLabel), GatewayText(applied.GetIpv6Gateway()), Ipv6Char);
  Finish(static_);
  dhcpv6_->SetEnabled(IsMarked(dynamic_));
}

IPv6ConfigurationDialog::~IPv6ConfigurationDialog() = default;

void IPv6ConfigurationDialog::Space(Item* item) {
  if (item == dhcpv6_) {
    dhcpv6_->SetChecked(!dhcpv6_->IsChecked());
  } else {
    NetworkFormDialog::Space(item);
  }
  dhcpv6_->SetEnabled(IsMarked(dynamic_));
  if (IsMarked(dynamic_)) {
    modes_.SetUseIpv6Dhcp(dhcpv6_->IsChecked());
    modes_.SetUseIpv6RouterAdvertised(!dhcpv6_->IsChecked());
  } else if (IsMarked(static_)) {
    modes_.SetUseIpv6Dhcp(false);
    modes_.SetUseIpv6RouterAdvertised(false);
  }
}

bool IPv6ConfigurationDialog::Accept() {
  Ipv6Network network;
  const bool addAddress = IsMarked(static_) && !address_->Value().empty();
  if (addAddress) {
    if (!network.SetAddressAndNetmask(address_->Value())) {
      Refuse(kInvalidAddress, kReenterNetwork, address_);
      return false;
    }
    if (network.GetAddress().GetFirstHextet() == kLinkLocalHextet) {
      Refuse(kInvalidScope, kNoLinkLocal, address_);
      return false;
    }
  }
  Ipv6Address gateway = applied_.GetIpv6Gateway();
  if (!gateway_->Value().empty()) {
    if (!gateway.SetAddress(gateway_->Value())) {
      Refuse(kInvalidGateway, kReenterGateway, gateway_);
      return false;
    }
  }
  if (addAddress) {
    network.SetIpv6AddressType(Ipv6AddressType::kStatic);
    network.SetIpv6Scope(Ipv6Scope::kGlobal);
    applied_.AddIpv6Network(network);
  }
  if (gateway.GetScopedStringAddress() != applied_.GetIpv6Gateway().GetScopedStringAddress()) {
    applied_.SetIpv6Gateway(gateway);
    gatewayChanged_ = true;
  }
  pending_.SetUseIpv6Dhcp(modes_.GetUseIpv6Dhcp());
  pending_.SetUseIpv6RouterAdvertised(modes_.GetUseIpv6RouterAdvertised());
  enabled_ = !IsMarked(disable_);
  return true;
}

}  // namespace Konu
