// The simulated management interface and the simulated DHCP server.
//
// State read and written (JSON pointers):
//   /network/nukNics/<nic>/{mac, portGroup, switch, up, dhcpBound, dnsFromDhcp}
//   /network/nukNics/<nic>/ipv4 {dhcp, none, address, netmask}        configured IPv4
//   /network/nukNics/<nic>/ipv6 {dhcp, routerAdvertised, addresses [{address, prefixLength}]}
//   /network/nukNics/<nic>/ipv4Lease {address, netmask}     lease held now (written here)
//   /network/nukNics/<nic>/ipv6Lease [{address, prefixLength}]  DHCPv6 lease held now (written here)
//   /network/nukNics/<nic>/usable      optional, default true
//   /network/nukNics/<nic>/dvsPort     optional: port key when "switch" names a DVS
//   /network/nukNics/<nic>/opaqueNetwork  optional: a non-empty text makes the connection opaque
//   /network/ipv6Enabled               no IPv6 addresses at all while false
//   /network/dhcpServer {available, lease {address, netmask, gateway, nameServers},
//                        ipv6Lease {addresses, nameServers}}
//   /network/routerAdvertisement/prefixes  optional ["2001:db8:10::/64"]; default: the /64 of the
//                                      IPv6 default gateway
//   /network/routing/defaultTcpipStack/{ipv4Gateway, ipv6Gateway}
//   /network/dns/defaultTcpipStack/{nameServers, fromDhcp}
//   /network/pnics/<nic>/mac, /network/vswitches, /network/dvSwitches
// Taking the interface down, refreshing it and bringing it up are written to the kernel log
// (/var/log/nukernel.log, "... Net: nuk0 taken down"), as a real host does.
#include "host/sim/SimNukNic.h"

#include <ctime>

#include "host/HostCtlException.h"

namespace HostCtl::Sim {
namespace {

using Network::Ipv4Address;
using Network::Ipv6Address;
using Network::Ipv6AddressType;
using Network::Ipv6Network;
using Network::Ipv6Scope;
using nlohmann::json;

Ipv4Address V4(const json& node, const char* key) {
  Ipv4Address address;
  if (node.is_object() && node.contains(key) && node[key].is_string())
    address.SetAddress(node[key].get<std::string>());
  return address;
}

Ipv6Address V6(const json& node, const char* key) {
  Ipv6Address address;
  if (node.is_object() && node.contains(key) && node[key].is_string())
    address.SetAddress(node[key].get<std::string>());
  return address;
}

Ipv6AddressType TypeFromText(const std::string& text) {
  if (text == "dhcp") return Ipv6AddressType::kDhcp;
  if (text == "autoconf") return Ipv6AddressType::kAutoconf;
  if (text == "other") return Ipv6AddressType::kOther;
  return Ipv6AddressType::kStatic;
}

// Entries [{address, prefixLength, type?}] as networks; link-local ones are of type "other".
void AddNetworks(Network::IpConfig& config, const json& list, Ipv6AddressType type) {
  if (!list.is_array()) return;
  for (const auto& entry : list) {
    Ipv6Address address = V6(entry, "address");
    if (address.IsUnspecified()) continue;
    unsigned prefix = ValueAt<unsigned>(entry, "/prefixLength", 64);
    Ipv6AddressType t = type;
    if (entry.contains("type") && entry["type"].is_string())
      t = TypeFromText(entry["type"].get<std::string>());
    if (address.IsLinkLocal()) t = Ipv6AddressType::kOther;
    config.AddIpv6Network(
        Ipv6Network(address, prefix > 128 ? 128 : prefix, t, Ipv6Network::ScopeOf(address)));
  }
}

// The EUI-64 interface identifier of a MAC address, on a /64 prefix.
Ipv6Address Autoconf(const Ipv6Address& prefix, const Network::MacAddress& mac) {
  auto bytes = prefix.GetBinaryAddress();
  const auto& m = mac.GetBinaryAddress();
  uint8_t id[8] = {static_cast<uint8_t>(m[0] ^ 0x02), m[1], m[2], 0xff, 0xfe, m[3], m[4], m[5]};
  for (int i = 0; i < 8; ++i) bytes[8 + i] = id[i];
  return Ipv6Address(bytes);
}

std::vector<Ipv6Address> AdvertisedPrefixes(const json& state) {
  std::vector<Ipv6Address> prefixes;
  const json& list = NodeAt(state, "/network/routerAdvertisement/prefixes");
  if (list.is_array()) {
    for (const auto& entry : list) {
      if (!entry.is_string()) continue;
      Ipv6Network network;
      if (network.SetAddressAndNetmask(entry.get<std::string>())) prefixes.push_back(network.GetAddress());
    }
    return prefixes;
  }
  Ipv6Address gateway = V6(NodeAt(state, "/network/routing/defaultTcpipStack"), "ipv6Gateway");
  if (!gateway.IsUnspecified() && !gateway.IsLinkLocal()) prefixes.push_back(gateway);
  return prefixes;
}

json NetworksToJson(const std::vector<Ipv6Network>& networks) {
  json list = json::array();
  for (const auto& n : networks) {
    // Leased and autoconfigured addresses come from the servers, not from the configuration.
    if (n.GetIpv6AddressType() == Ipv6AddressType::kDhcp ||
        n.GetIpv6AddressType() == Ipv6AddressType::kAutoconf)
      continue;
    list.push_back(
        {{"address", n.GetAddress().GetScopedStringAddress()}, {"prefixLength", n.GetPrefixLength()}});
  }
  return list;
}

// The configured IP configuration of a NIC, with the stack's default gateways.
Network::IpConfig ConfiguredFrom(const json& state, const json& nic) {
  Network::IpConfig config;
  const json& v4 = NodeAt(nic, "/ipv4");
  config.SetUseDhcp(ValueAt<bool>(v4, "/dhcp", false), ValueAt<bool>(v4, "/none", false));
  config.SetIpv4Address(V4(v4, "address"));
  config.SetIpv4Netmask(V4(v4, "netmask"));
  const json& v6 = NodeAt(nic, "/ipv6");
  config.SetUseIpv6Dhcp(ValueAt<bool>(v6, "/dhcp", false));
  config.SetUseIpv6RouterAdvertised(ValueAt<bool>(v6, "/routerAdvertised", false));
  AddNetworks(config, NodeAt(v6, "/addresses"), Ipv6AddressType::kStatic);
  const json& routing = NodeAt(state, "/network/routing/defaultTcpipStack");
  config.SetIpv4Gateway(V4(routing, "ipv4Gateway"));
  config.SetIpv6Gateway(V6(routing, "ipv6Gateway"));
  config.SetDhcpDns(ValueAt<bool>(nic, "/dnsFromDhcp", false));
  return config;
}

}  // namespace

void AcquireIpv4Lease(json& state, const std::string& nicName) {
  json& nic = state["network"]["nukNics"][nicName];
  const json& server = NodeAt(state, "/network/dhcpServer");
  bool available = ValueAt<bool>(server, "/available", false);
  const json& lease = available ? NodeAt(server, "/lease") : NodeAt(state, "/no/such/node");
  Ipv4Address address = V4(lease, "address"), netmask = V4(lease, "netmask"), gateway = V4(lease, "gateway");
  nic["ipv4Lease"] = {{"address", address.GetStringAddress()}, {"netmask", netmask.GetStringAddress()}};
  if (!available) return;
  if (!gateway.IsZero())
    state["network"]["routing"]["defaultTcpipStack"]["ipv4Gateway"] = gateway.GetStringAddress();
  if (ValueAt<bool>(nic, "/dnsFromDhcp", false) && lease.contains("nameServers"))
    state["network"]["dns"]["defaultTcpipStack"]["nameServers"] = lease["nameServers"];
}

void AcquireIpv6Lease(json& state, const std::string& nicName) {
  json& nic = state["network"]["nukNics"][nicName];
  const json& server = NodeAt(state, "/network/dhcpServer");
  bool available = ValueAt<bool>(server, "/available", false);
  const json& addresses = NodeAt(server, "/ipv6Lease/addresses");
  nic["ipv6Lease"] = available && addresses.is_array() ? addresses : json::array();
}

SimNukNic::SimNukNic(std::string root, std::string name) : state_(std::move(root)), name_(std::move(name)) {
  NicIn(*state_.Read("NukNic.Refresh"), name_);
}

std::string SimNukNic::Nic() const { return "/network/nukNics/" + PointerKey(name_); }

json& SimNukNic::NicIn(json& state, const std::string& name) {
  json::json_pointer p("/network/nukNics/" + PointerKey(name));
  if (!state.contains(p) || !state.at(p).is_object()) ThrowNotFound("Virtual NIC", name);
  return state.at(p);
}

const json& SimNukNic::NicIn(const json& state, const std::string& name) {
  return NicIn(const_cast<json&>(state), name);
}

void SimNukNic::Refresh() {
  NicIn(*state_.Read("NukNic.Refresh"), name_);
  KernelLog("refreshed");
}

bool SimNukNic::IsUsable() const {
  const auto snapshot = state_.Read("NukNic.IsUsable");
  const json& state = *snapshot;
  json::json_pointer p(Nic());
  if (!state.contains(p)) return false;
  const json& nic = state.at(p);
  return ValueAt<bool>(nic, "/usable", true) && !ValueAt<std::string>(nic, "/switch", "").empty();
}

Network::IpConfig SimNukNic::GetConfiguredIpConfig() const {
  const auto snapshot = state_.Read("NukNic.GetConfiguredIpConfig");
  const json& state = *snapshot;
  return ConfiguredFrom(state, NicIn(state, name_));
}

Network::IpConfig SimNukNic::GetCurrentIpConfig() const {
  const auto snapshot = state_.Read("NukNic.GetCurrentIpConfig");
  const json& state = *snapshot;
  const json& nic = NicIn(state, name_);
  Network::IpConfig config = ConfiguredFrom(state, nic);
  if (config.GetUseDhcp()) {
    const json& lease = NodeAt(nic, "/ipv4Lease");
    config.SetIpv4Address(V4(lease, "address"));
    config.SetIpv4Netmask(V4(lease, "netmask"));
  } else if (config.GetIpv4UseNone()) {
    config.SetIpv4Address(Ipv4Address());
    config.SetIpv4Netmask(Ipv4Address());
  }
  if (!ValueAt<bool>(state, "/network/ipv6Enabled", true)) {
    config.ClearIpv6Networks();
    return config;
  }
  if (config.GetUseIpv6Dhcp()) AddNetworks(config, NodeAt(nic, "/ipv6Lease"), Ipv6AddressType::kDhcp);
  if (config.GetUseIpv6RouterAdvertised()) {
    Network::MacAddress mac;
    mac.SetAddress(ValueAt<std::string>(nic, "/mac", ""));
    for (const auto& prefix : AdvertisedPrefixes(state))
      config.AddIpv6Network(
          Ipv6Network(Autoconf(prefix, mac), 64, Ipv6AddressType::kAutoconf, Ipv6Scope::kGlobal));
  }
  return config;
}

void SimNukNic::SetIpConfig(const Network::IpConfig& config) {
  bool staticV4 = !config.GetUseDhcp() && !config.GetIpv4UseNone();
  if (staticV4 && !config.GetIpv4Address().IsZero() && !config.GetIpv4Netmask().IsNetmask())
    throw Lib::HostCtlException("Invalid netmask " + config.GetIpv4Netmask().GetStringAddress() + " for " +
                                config.GetIpv4Address().GetStringAddress());
  state_.Update("NukNic.SetIpConfig", [&](json& state) {
    json& nic = NicIn(state, name_);
    nic["ipv4"] = {{"dhcp", config.GetUseDhcp()},
                   {"none", config.GetIpv4UseNone()},
                   {"address", config.GetIpv4Address().GetStringAddress()},
                   {"netmask", config.GetIpv4Netmask().GetStringAddress()}};
    nic["ipv6"] = {{"dhcp", config.GetUseIpv6Dhcp()},
                   {"routerAdvertised", config.GetUseIpv6RouterAdvertised()},
                   {"addresses", NetworksToJson(config.GetIpv6Network())}};
    nic["dnsFromDhcp"] = config.GetDhcpDns();
    state["network"]["dns"]["defaultTcpipStack"]["fromDhcp"] = config.GetDhcpDns();
    if (config.GetUseDhcp())
      AcquireIpv4Lease(state, name_);
    else
      nic.erase("ipv4Lease");
    if (config.GetUseIpv6Dhcp())
      AcquireIpv6Lease(state, name_);
    else
      nic.erase("ipv6Lease");
  });
}

Network::MacAddress SimNukNic::GetMacAddress() const {
  const auto snapshot = state_.Read("NukNic.GetMacAddress");
  const json& state = *snapshot;
  Network::MacAddress mac;
  mac.SetAddress(ValueAt<std::string>(NicIn(state, name_), "/mac", ""));
  return mac;
}

void SimNukNic::SetMacAddress(const Network::MacAddress& mac) {
  state_.Update("NukNic.SetMacAddress",
                [&](json& state) { NicIn(state, name_)["mac"] = mac.GetStringAddress(); });
}

void SimNukNic::SetMacAddressFromPnic(const std::string& pnicName) {
  state_.Update("NukNic.SetMacAddressFromPnic", [&](json& state) {
    json::json_pointer p("/network/pnics/" + PointerKey(pnicName) + "/mac");
    if (!state.contains(p) || !state.at(p).is_string()) ThrowNotFound("Physical NIC", pnicName);
    NicIn(state, name_)["mac"] = state.at(p);
  });
}

bool SimNukNic::GetDhcpBound() const {
  return ValueAt<bool>(NicIn(*state_.Read("NukNic.GetDhcpBound"), name_), "/dhcpBound", false);
}

void SimNukNic::SetDhcpBound(bool bound) {
  state_.Update("NukNic.SetDhcpBound", [&](json& state) { NicIn(state, name_)["dhcpBound"] = bound; });
}

void SimNukNic::RenewIpv4Lease() {
  state_.Update("NukNic.RenewIpv4Lease", [&](json& state) {
    if (!ValueAt<bool>(NicIn(state, name_), "/ipv4/dhcp", false))
      throw Lib::HostCtlException("Interface " + name_ + " is not configured for DHCP");
    AcquireIpv4Lease(state, name_);
  });
}

void SimNukNic::RenewIpv6Lease() {
  state_.Update("NukNic.RenewIpv6Lease", [&](json& state) {
    if (!ValueAt<bool>(NicIn(state, name_), "/ipv6/dhcp", false))
      throw Lib::HostCtlException("Interface " + name_ + " is not configured for DHCPv6");
    AcquireIpv6Lease(state, name_);
  });
}

void SimNukNic::KernelLog(const std::string& text) const {
  char stamp[32];
  const time_t now = time(nullptr);
  struct tm utc;
  gmtime_r(&now, &utc);
  strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%SZ", &utc);
  state_.AppendLine("/var/log/nukernel.log", std::string(stamp) + " cpu0:1)Net: " + name_ + " " + text);
}

void SimNukNic::TakeDown() {
  state_.Update("NukNic.TakeDown", [&](json& state) { NicIn(state, name_)["up"] = false; });
  KernelLog("taken down");
}

void SimNukNic::BringUp() {
  state_.Update("NukNic.BringUp", [&](json& state) {
    json& nic = NicIn(state, name_);
    nic["up"] = true;
    // Coming up renews the leases, as a real interface restart does.
    if (ValueAt<bool>(nic, "/ipv4/dhcp", false)) AcquireIpv4Lease(state, name_);
    if (ValueAt<bool>(nic, "/ipv6/dhcp", false)) AcquireIpv6Lease(state, name_);
  });
  KernelLog("brought up");
}

bool SimNukNic::IsUp() const {
  return ValueAt<bool>(NicIn(*state_.Read("NukNic.IsUp"), name_), "/up", false);
}

Network::ConnectionPoint SimNukNic::GetConnectionPoint() const {
  const auto snapshot = state_.Read("NukNic.GetConnectionPoint");
  const json& state = *snapshot;
  const json& nic = NicIn(state, name_);
  Network::ConnectionPoint point;
  std::string sw = ValueAt<std::string>(nic, "/switch", "");
  if (!ValueAt<std::string>(nic, "/opaqueNetwork", "").empty()) {
    point.type = Network::ConnecteeType::kOpaqueNetwork;
  } else if (!sw.empty() && NodeAt(state, "/network/vswitches").contains(sw)) {
    point.type = Network::ConnecteeType::kPortGroup;
    point.switchName = sw;
    point.portGroup = ValueAt<std::string>(nic, "/portGroup", "");
  } else if (!sw.empty() && NodeAt(state, "/network/dvSwitches").contains(sw)) {
    point.type = Network::ConnecteeType::kDvsPort;
    point.switchName = sw;
    point.dvsPortKey = ValueAt<std::string>(nic, "/dvsPort", "");
  }
  return point;
}

void SimNukNic::SetPortGroup(const std::string& portGroup) {
  state_.Update("NukNic.SetPortGroup", [&](json& state) {
    json& nic = NicIn(state, name_);
    const json& switches = NodeAt(state, "/network/vswitches");
    if (switches.is_object()) {
      for (auto it = switches.begin(); it != switches.end(); ++it) {
        if (NodeAt(it.value(), "/portGroups").contains(portGroup)) {
          nic["switch"] = it.key();
          nic["portGroup"] = portGroup;
          nic.erase("dvsPort");
          nic.erase("opaqueNetwork");
          return;
        }
      }
    }
    ThrowNotFound("Port group", portGroup);
  });
}

}  // namespace HostCtl::Sim
