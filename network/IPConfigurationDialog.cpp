// IPConfigurationDialog: 70 x 17; the three choices and the three static fields.
#include "network/IPConfigurationDialog.h"

namespace Konu {
namespace {

using HostCtl::Network::Ipv4Address;

constexpr int kWidth = 70;
constexpr int kHeight = 17;
constexpr int kHeaderHeight = 6;

enum StringId {
  kTitle = 47,           // "IPv4 Configuration"
  kText = 94,            // "This host can obtain network settings automatically if ..."
  kDisable = 95,         // "Disable IPv4 configuration for management network"
  kDynamic = 96,         // "Use dynamic IPv4 address and network configuration"
  kStatic = 97,          // "Set static IPv4 address and network configuration:"
  kAddressLabel = 35,    // "IPv4 Address"
  kNetmaskLabel = 39,    // "Subnet Mask"
  kGatewayLabel = 38,    // "Default Gateway"
  kInvalidAddress = 74,  // "Invalid IP address"
  kReenterAddress = 75,  // "Please reenter a valid IPv4 address (x.x.x.x)."
  kInvalidSubnet = 78,   // "Invalid subnet"
  kReenterSubnet = 79,   // "Please reenter a valid subnet (x.x.x.x)."
  kInvalidGateway = 82,  // "Invalid gateway address"
  kReenterGateway = 83,  // "Please reenter a valid gateway address (x.x.x.x)."
};

}  // namespace

std::string FieldText(const Ipv4Address& address) {
  return address.IsZero() ? "" : address.GetStringAddress();
}

IPConfigurationDialog::IPConfigurationDialog(Frame* owner, HostCtl::Network::IpConfig& applied,
                                             HostCtl::Network::IpConfig& pending)
    : NetworkFormDialog(owner, kWidth, kHeight, kHeaderHeight, kTitle, kText, kFooterMarkSelected),
      applied_(applied),
      pending_(pending) {
  const bool dhcp = pending.GetUseDhcp();
  const bool none = !dhcp && applied.GetIpv4UseNone();
  disable_ = AddChoice(kDisable, none);
  dynamic_ = AddChoice(kDynamic, dhcp);
  static_ = AddChoice(kStatic, !dhcp && !none);
  AddSpacer();
  address_ = AddInput(GetString(kAddressLabel), FieldText(applied.GetIpv4Address()), Ipv4Char);
  netmask_ = AddInput(GetString(kNetmaskLabel), FieldText(applied.GetIpv4Netmask()), Ipv4Char);
  gateway_ = AddInput(GetString(kGatewayLabel), FieldText(applied.GetIpv4Gateway()), Ipv4Char);
  Finish(static_);
}

IPConfigurationDialog::~IPConfigurationDialog() = default;

bool IPConfigurationDialog::Accept() {
  if (IsMarked(static_)) {
    if (!Ipv4Address::IsValidAddress(address_->Value())) {
      Refuse(kInvalidAddress, kReenterAddress, address_);
      return false;
    }
    if (!Ipv4Address::IsValidAddress(netmask_->Value()) || !Ipv4Address::IsValidNetmask(netmask_->Value())) {
      Refuse(kInvalidSubnet, kReenterSubnet, netmask_);
      return false;
    }
    if (!Ipv4Address::IsValidAddress(gateway_->Value())) {
      Refuse(kInvalidGateway, kReenterGateway, gateway_);
      return false;
    }
  }
  pending_.SetUseDhcp(IsMarked(dynamic_));
  // Choosing static again after "none" clears the flag, or the apply would keep IPv4 off.
  applied_.SetIpv4UseNone(IsMarked(disable_));
  // Outside the static choice the gateway is stored unchecked (text that is no address
  // leaves the held one).
  Ipv4Address gateway = applied_.GetIpv4Gateway();
  gateway.SetAddress(gateway_->Value());
  applied_.SetIpv4Gateway(gateway);
  if (IsMarked(static_)) {
    applied_.SetIpv4Address(Ipv4Address(address_->Value()));
    applied_.SetIpv4Netmask(Ipv4Address(netmask_->Value()));
  }
  return true;
}

}  // namespace Konu
