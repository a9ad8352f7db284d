// The real machine's network facts: interfaces, addresses, routes, bridges and resolver.
//
// Files read under the root: /proc/net/{route, ipv6_route, if_inet6, fib_trie},
// /proc/sys/net/ipv6/conf/all/disable_ipv6, /sys/class/net/<if>/{address, operstate, carrier,
// speed, duplex, flags, ifindex, device, device/driver, master, bridge, brif/},
// /run/systemd/netif/leases/<ifindex>, /var/lib/dhcp/, /etc/resolv.conf, /etc/hostname,
// /proc/sys/kernel/{hostname, domainname}.
#include <algorithm>

#include "host/HostCtlException.h"
#include "host/linux/LinuxServices.h"

namespace HostCtl::Linux {
namespace {

std::string Net(const std::string& interface, const std::string& file = "") {
  return "/sys/class/net/" + interface + (file.empty() ? "" : "/" + file);
}

bool IsPhysical(const LinuxFiles& files, const std::string& interface) {
  return files.Exists(Net(interface, "device"));
}

bool IsBridge(const LinuxFiles& files, const std::string& interface) {
  return files.Exists(Net(interface, "bridge"));
}

Network::Pnic PnicOf(const LinuxFiles& files, const std::string& name) {
  Network::Pnic pnic;
  pnic.name = name;
  pnic.macAddress.SetAddress(files.ReadLine(Net(name, "address")));
  pnic.linkUp = files.ReadLine(Net(name, "carrier")) == "1";
  long speed = std::strtol(files.ReadLine(Net(name, "speed")).c_str(), nullptr, 10);
  pnic.speedMbps = pnic.linkUp && speed > 0 ? static_cast<uint32_t>(speed) : 0;
  pnic.fullDuplex = files.ReadLine(Net(name, "duplex")) == "full";
  pnic.driver = files.LinkName(Net(name, "device/driver"));
  pnic.pciDevice = files.LinkName(Net(name, "device"));
  return pnic;
}

}  // namespace

void LinuxNetworkInfo::UpdateManagementInterface() {
  updated_ = true;
  managementInterface_.clear();
  // The interface of the preferred IPv4 default route, else of the IPv6 one.
  const Ipv4Route* best = nullptr;
  auto routes = files_.Ipv4Routes();
  for (const auto& route : routes)
    if (route.up && route.destination.IsZero() && route.netmask.IsZero() &&
        (!best || route.metric < best->metric))
      best = &route;
  if (best) {
    managementInterface_ = best->interface;
    return;
  }
  for (const auto& route : files_.Ipv6Routes())
    if (route.prefixLength == 0 && !route.nextHop.IsUnspecified() && route.interface != "lo") {
      managementInterface_ = route.interface;
      return;
    }
  // No default route: the first interface holding an address.
  for (const auto& address : files_.Ipv4Addresses())
    if (address.interface != "lo") {
      managementInterface_ = address.interface;
      return;
    }
}

std::unique_ptr<Network::NukNic> LinuxNetworkInfo::GetManagementInterface() {
  if (!updated_) UpdateManagementInterface();
  if (managementInterface_.empty() || !files_.Exists(Net(managementInterface_))) return nullptr;
  return std::make_unique<LinuxNukNic>(files_.Root(), managementInterface_);
}

bool LinuxNetworkInfo::IsNukIpv6Enabled() const {
  std::string value = files_.ReadLine("/proc/sys/net/ipv6/conf/all/disable_ipv6");
  return value == "0";  // a missing file means a kernel without IPv6
}

void LinuxNetworkInfo::SetNukIpv6Enabled(bool) { ThrowNotSupported(); }

std::vector<Network::Pnic> LinuxNetworkInfo::GetPnics() const {
  std::vector<Network::Pnic> pnics;
  for (const auto& name : files_.List("/sys/class/net"))
    if (IsPhysical(files_, name)) pnics.push_back(PnicOf(files_, name));
  return pnics;
}

Network::Pnic LinuxNetworkInfo::GetPnic(const std::string& name) const {
  if (name.empty() || name.find('/') != std::string::npos || !IsPhysical(files_, name))
    throw Lib::HostCtlException("Physical NIC '" + name + "' not found");
  return PnicOf(files_, name);
}

LinuxNukNic::LinuxNukNic(std::string root, std::string name)
    : files_(std::move(root)), name_(std::move(name)) {
  Refresh();
}

void LinuxNukNic::Refresh() {
  if (!files_.Exists(Net(name_))) throw Lib::HostCtlException("Interface '" + name_ + "' not found");
}

bool LinuxNukNic::IsUp() const {
  unsigned long flags = std::strtoul(files_.ReadLine(Net(name_, "flags")).c_str(), nullptr, 16);
  return flags & 0x1;  // IFF_UP
}

bool LinuxNukNic::IsUsable() const { return files_.Exists(Net(name_)) && IsUp(); }

bool LinuxNukNic::UsesDhcp() const {
  std::string index = files_.ReadLine(Net(name_, "ifindex"));
  if (!index.empty() && files_.Exists("/run/systemd/netif/leases/" + index)) return true;
  for (const auto& file : files_.List("/var/lib/dhcp")) {
    if (file.size() < 7 || file.compare(file.size() - 7, 7, ".leases") != 0) continue;
    // dhclient.<if>.leases or dhclient-<uuid>-<if>.lease(s)
    if (file.find("." + name_ + ".") != std::string::npos ||
        file.find("-" + name_ + ".") != std::string::npos)
      return true;
  }
  return false;
}

bool LinuxNukNic::GetDhcpBound() const { return UsesDhcp(); }

Network::IpConfig LinuxNukNic::GetConfiguredIpConfig() const {
  Network::IpConfig config;
  bool dhcp = UsesDhcp();
  config.SetUseDhcp(dhcp);
  bool haveIpv4 = false;
  for (const auto& address : files_.Ipv4Addresses()) {
    if (address.interface != name_) continue;
    config.SetIpv4Address(address.address);
    config.SetIpv4Netmask(address.netmask);
    haveIpv4 = true;
    break;
  }
  if (!haveIpv4 && !dhcp) config.SetIpv4UseNone();
  for (const auto& address : files_.Ipv6Addresses())
    if (address.interface == name_) config.AddIpv6Network(address.network);
  LinuxRoutingInfo routing(files_.Root());
  config.SetIpv4Gateway(routing.GetNuKernelDefaultGateway());
  config.SetIpv6Gateway(routing.GetIpv6NuKernelDefaultGateway());
  config.SetDhcpDns(dhcp);
  return config;
}

Network::MacAddress LinuxNukNic::GetMacAddress() const {
  Network::MacAddress mac;
  mac.SetAddress(files_.ReadLine(Net(name_, "address")));
  return mac;
}

// A bridge stands for a standard switch with one port group of its own name: the bridge's
// interface is the management port.
Network::ConnectionPoint LinuxNukNic::GetConnectionPoint() const {
  Network::ConnectionPoint point;
  std::string bridge = IsBridge(files_, name_) ? name_ : files_.LinkName(Net(name_, "master"));
  if (!bridge.empty() && IsBridge(files_, bridge)) {
    point.type = Network::ConnecteeType::kPortGroup;
    point.switchName = bridge;
    point.portGroup = bridge;
  }
  return point;
}

std::vector<Network::VirtualSwitch> LinuxVirtualSwitchInfo::GetVirtualSwitches() const {
  std::vector<Network::VirtualSwitch> switches;
  for (const auto& name : files_.List("/sys/class/net")) {
    if (!IsBridge(files_, name)) continue;
    Network::VirtualSwitch sw{name, {}, {name}};
    for (const auto& port : files_.List(Net(name, "brif")))
      if (IsPhysical(files_, port)) sw.uplinks.push_back(port);
    switches.push_back(std::move(sw));
  }
  return switches;
}

Network::VirtualSwitch LinuxVirtualSwitchInfo::GetVirtualSwitch(const std::string& name) const {
  for (auto& sw : GetVirtualSwitches())
    if (sw.name == name) return sw;
  throw Lib::HostCtlException("Virtual switch '" + name + "' not found");
}

Network::PortGroup LinuxVirtualSwitchInfo::GetPortGroup(const std::string& name) const {
  for (auto& sw : GetVirtualSwitches())
    if (sw.name == name) return {name, name, 0, {}};
  throw Lib::HostCtlException("Port group '" + name + "' not found");
}

void LinuxDnsConfig::Refresh() {
  hostname_ = files_.FullHostname();
  resolv_ = ParseResolvConf(files_.Read("/etc/resolv.conf"));
}

std::string LinuxDnsConfig::GetHostname() const { return hostname_.substr(0, hostname_.find('.')); }

std::string LinuxDnsConfig::GetDomain() const {
  auto dot = hostname_.find('.');
  if (dot != std::string::npos) return hostname_.substr(dot + 1);
  std::string domain = files_.ReadLine("/proc/sys/kernel/domainname");
  if (!domain.empty() && domain != "(none)") return domain;
  if (!resolv_.domain.empty()) return resolv_.domain;
  return resolv_.search.empty() ? "" : resolv_.search.front();
}

std::vector<std::string> LinuxDnsConfig::GetSearchDomains() const {
  if (!resolv_.search.empty()) return resolv_.search;
  if (!resolv_.domain.empty()) return {resolv_.domain};
  return {};
}

Network::Ipv4Address LinuxRoutingInfo::GetNuKernelDefaultGateway() const {
  const Ipv4Route* best = nullptr;
  auto routes = files_.Ipv4Routes();
  for (const auto& route : routes)
    if (route.up && route.hasGateway && route.destination.IsZero() && route.netmask.IsZero() &&
        (!best || route.metric < best->metric))
      best = &route;
  return best ? best->gateway : Network::Ipv4Address();
}

Network::Ipv6Address LinuxRoutingInfo::GetIpv6NuKernelDefaultGateway() const {
  const Ipv6Route* best = nullptr;
  auto routes = files_.Ipv6Routes();
  for (const auto& route : routes)
    if (route.prefixLength == 0 && !route.nextHop.IsUnspecified() && (!best || route.metric < best->metric))
      best = &route;
  if (!best) return {};
  Network::Ipv6Address gateway = best->nextHop;
  if (gateway.IsLinkLocal()) gateway.SetZone(best->interface);
  return gateway;
}

}  // namespace HostCtl::Linux
