// Simulated network facts: the management interface, physical NICs, IPv6 enablement.
//
// State read and written (JSON pointers):
//   /network/managementInterface             name of the management virtual NIC
//   /network/nukNics/<nic>                   the virtual NICs
//   /network/ipv6Enabled                     IPv6 in the running kernel
//   /network/ipv6EnabledAfterReboot          IPv6 after the next boot (written here)
//   /network/pnics/<nic> {label, mac, linkUp, speedMbps, duplex, driver, pci (optional)}
// The factory restore rewrites /network/vswitches, /network/dvSwitches, /network/nukNics and
// /network/dns/defaultTcpipStack/fromDhcp, and takes a DHCP lease (see SimNukNic).
#include <algorithm>
#include <cctype>

#include "host/sim/SimNukNic.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {
namespace {

using nlohmann::json;

Network::Pnic PnicFrom(const std::string& name, const json& node) {
  Network::Pnic pnic;
  pnic.name = name;
  pnic.macAddress.SetAddress(ValueAt<std::string>(node, "/mac", ""));
  pnic.linkUp = ValueAt<bool>(node, "/linkUp", false);
  pnic.speedMbps = pnic.linkUp ? ValueAt<uint32_t>(node, "/speedMbps", 0) : 0;
  pnic.fullDuplex = ValueAt<std::string>(node, "/duplex", "") == "Full";
  pnic.driver = ValueAt<std::string>(node, "/driver", "");
  pnic.pciDevice = ValueAt<std::string>(node, "/pci", "");
  pnic.description = ValueAt<std::string>(node, "/label", "");
  return pnic;
}

// "nic2" before "nic10": compare runs of digits by value.
bool NaturalLess(const std::string& a, const std::string& b) {
  size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (std::isdigit(static_cast<unsigned char>(a[i])) && std::isdigit(static_cast<unsigned char>(b[j]))) {
      size_t ei = i, ej = j;
      while (ei < a.size() && std::isdigit(static_cast<unsigned char>(a[ei]))) ++ei;
      while (ej < b.size() && std::isdigit(static_cast<unsigned char>(b[ej]))) ++ej;
      std::string na = a.substr(i, ei - i), nb = b.substr(j, ej - j);
      na.erase(0, std::min(na.find_first_not_of('0'), na.size()));
      nb.erase(0, std::min(nb.find_first_not_of('0'), nb.size()));
      if (na.size() != nb.size()) return na.size() < nb.size();
      if (na != nb) return na < nb;
      i = ei;
      j = ej;
    } else {
      if (a[i] != b[j]) return a[i] < b[j];
      ++i;
      ++j;
    }
  }
  return a.size() - i < b.size() - j;
}

}  // namespace

void SimNetworkInfo::UpdateManagementInterface() {
  const auto snapshot = state_.Read("NetworkInfo.UpdateManagementInterface");
  const json& state = *snapshot;
  std::string name = ValueAt<std::string>(state, "/network/managementInterface", "");
  bool exists = !name.empty() && NodeAt(state, "/network/nukNics").contains(name);
  managementInterface_ = exists ? name : "";
  updated_ = true;
}

std::unique_ptr<Network::NukNic> SimNetworkInfo::GetManagementInterface() {
  state_.CheckFault("NetworkInfo.GetManagementInterface");
  if (!updated_) UpdateManagementInterface();
  if (managementInterface_.empty()) return nullptr;
  return std::make_unique<SimNukNic>(state_.Root(), managementInterface_);
}

bool SimNetworkInfo::IsNukIpv6Enabled() const {
  return ValueAt<bool>(*state_.Read("NetworkInfo.IsNukIpv6Enabled"), "/network/ipv6Enabled", false);
}

void SimNetworkInfo::SetNukIpv6Enabled(bool enabled) {
  state_.Update("NetworkInfo.SetNukIpv6Enabled",
                [&](json& state) { state["network"]["ipv6EnabledAfterReboot"] = enabled; });
}

std::vector<Network::Pnic> SimNetworkInfo::GetPnics() const {
  const auto snapshot = state_.Read("NetworkInfo.GetPnics");
  const json& state = *snapshot;
  std::vector<Network::Pnic> pnics;
  const json& all = NodeAt(state, "/network/pnics");
  if (all.is_object())
    for (auto it = all.begin(); it != all.end(); ++it) pnics.push_back(PnicFrom(it.key(), it.value()));
  std::sort(pnics.begin(), pnics.end(),
            [](const auto& a, const auto& b) { return NaturalLess(a.name, b.name); });
  return pnics;
}

Network::Pnic SimNetworkInfo::GetPnic(const std::string& name) const {
  const auto snapshot = state_.Read("NetworkInfo.GetPnic");
  const json& state = *snapshot;
  const json& all = NodeAt(state, "/network/pnics");
  if (!all.is_object() || !all.contains(name)) ThrowNotFound("Physical NIC", name);
  return PnicFrom(name, all[name]);
}

bool SimNetworkInfo::CanRestoreFactoryNetwork() const {
  state_.CheckFault("NetworkInfo.CanRestoreFactoryNetwork");
  return true;
}

void SimNetworkInfo::RestoreFactoryNetwork() {
  // Read first: the NICs' order is the one GetPnics gives.
  const std::vector<Network::Pnic> pnics = GetPnics();
  const auto connected =
      std::find_if(pnics.begin(), pnics.end(), [](const auto& pnic) { return pnic.linkUp; });
  state_.Update("NetworkInfo.RestoreFactoryNetwork", [&](json& state) {
    json& network = state["network"];
    std::string name = ValueAt<std::string>(network, "/managementInterface", "");
    if (name.empty()) name = "nuk0";
    const json uplinks = connected == pnics.end() ? json::array() : json::array({connected->name});
    const json old = NodeAt(network, "/nukNics/" + PointerKey(name));
    std::string mac = ValueAt<std::string>(old, "/mac", "");
    if (connected != pnics.end()) mac = connected->macAddress.GetStringAddress();

    network["vswitches"] = {{"vSwitch0",
                             {{"uplinks", uplinks},
                              {"portGroups",
                               {{"Management Network",
                                 {{"vlanId", 0},
                                  {"teaming",
                                   {{"maxActiveUplinks", 1},
                                    {"explicitOrder", false},
                                    {"activeUplinks", uplinks},
                                    {"standbyUplinks", json::array()}}}}}}}}}};
    network["dvSwitches"] = json::object();
    network["nukNics"] = {
        {name,
         {{"mac", mac},
          {"portGroup", "Management Network"},
          {"switch", "vSwitch0"},
          {"up", ValueAt<bool>(old, "/up", true)},
          {"dhcpBound", false},
          {"dnsFromDhcp", true},
          {"ipv4", {{"dhcp", true}, {"none", false}, {"address", "0.0.0.0"}, {"netmask", "0.0.0.0"}}},
          {"ipv6", {{"dhcp", false}, {"routerAdvertised", true}, {"addresses", json::array()}}}}}};
    network["managementInterface"] = name;
    network["dns"]["defaultTcpipStack"]["fromDhcp"] = true;
    AcquireIpv4Lease(state, name);
  });
}

}  // namespace HostCtl::Sim
