// NetworkWindow: the summary pane of each entry, built from the model.
#include <string>

#include "network/NetworkWindow.h"
#include "ui/Markup.h"

namespace Konu {
namespace {

enum TextId {
  kIpv4Address = 35,
  kIpv6Addresses = 36,
  kDefaultGateway = 38,
  kSubnetMask = 39,
  kHostname = 40,
  kPrimaryDns = 41,
  kAlternateDns = 42,
  kIpv6Dns = 43,
  kIpv6IsEnabled = 49,
  kIpv6IsDisabled = 50,
  kIpv6AfterReboot = 58,
  kIpv6CanBeConfigured = 57,
  kAutomatic = 108,
  kNone = 109,
  kManual = 110,
  kNotSet = 112,
};

// The help text under each entry's lines, in entry order.
constexpr int kHelp[NetworkWindow::kEntryCount] = {53, 54, 55, 56, 59, 60};

}  // namespace

std::string NetworkWindow::SummaryText(int entry) const {
  const std::string notSet = GetString(kNotSet);
  auto orNotSet = [&](const std::string& value) { return value.empty() ? notSet : LiteralMarkup(value); };
  auto v4 = [&](const HostCtl::Network::Ipv4Address& a) {
    return a.IsZero() ? notSet : a.GetStringAddress();
  };
  auto line = [&](int label, const std::string& value) {
    return std::string(GetString(label)) + ": " + value + "\n";
  };
  const HostCtl::Network::IpConfig& applied = model_.appliedConfig;
  const HostCtl::Network::IpConfig& pending = model_.pendingConfig;
  std::string text;
  switch (entry) {
    case kAdapters:
      for (const std::string& nic : model_.selectedAdapters) text += LiteralMarkup(nic) + "\n";
      if (model_.selectedAdapters.empty()) text = notSet + "\n";
      break;
    case kVlan:
      text = (model_.vlanId ? std::to_string(model_.vlanId) : notSet) + "\n";
      break;
    case kIpv4:
      text = std::string(GetString(pending.GetUseDhcp()       ? kAutomatic
                                   : applied.GetIpv4UseNone() ? kNone
                                                              : kManual)) +
             "\n\n";
      text += line(kIpv4Address, v4(applied.GetIpv4Address()));
      text += line(kSubnetMask, v4(applied.GetIpv4Netmask()));
      text += line(kDefaultGateway, v4(applied.GetIpv4Gateway()));
      break;
    case kIpv6:
      text = std::string(GetString(model_.ipv6Enabled ? kIpv6IsEnabled : kIpv6IsDisabled)) + "\n\n";
      if (model_.ipv6Enabled && !model_.ipv6EnabledAtEntry) {
        text += std::string(GetString(kIpv6AfterReboot)) + "\n";
      } else if (!model_.ipv6EnabledAtEntry) {
        text += std::string(GetString(kIpv6CanBeConfigured)) + "\n";
      } else {
        const bool automatic = pending.GetUseIpv6Dhcp() || pending.GetUseIpv6RouterAdvertised();
        text += std::string(GetString(automatic ? kAutomatic : kManual)) + "\n\n";
        text += std::string(GetString(kIpv6Addresses)) + ":";
        for (const auto& network : model_.ipv6Addresses)
          text += "\n  " + network.GetAddress().GetStringAddress() + "/" +
                  std::to_string(network.GetPrefixLength());
        if (model_.ipv6Addresses.empty()) text += " " + notSet;
        const HostCtl::Network::Ipv6Address& gateway = applied.GetIpv6Gateway();
        text += "\n" + line(kDefaultGateway, gateway.IsUnspecified() ? notSet : gateway.GetStringAddress());
      }
      break;
    case kDns: {
      const DnsServerAddress* alternate = model_.alternateDnsServer.get();
      text = std::string(GetString(pending.GetDhcpDns() ? kAutomatic : kManual)) + "\n\n";
      text += line(kPrimaryDns, orNotSet(DnsServerText(model_.primaryDnsServer.get())));
      text += line(IsIpv6DnsServer(alternate) ? kIpv6Dns : kAlternateDns, orNotSet(DnsServerText(alternate)));
      text += line(kHostname, orNotSet(model_.hostname));
      break;
    }
    case kSuffixes:
      text = orNotSet(model_.suffixes) + "\n";
      break;
    default:
      return "";
  }
  return text + "\n" + GetString(kHelp[entry]);
}

}  // namespace Konu
