// Simulated DNS configuration of a TCP/IP stack.
//
// State read and written (JSON pointers):
//   /host/hostname, /host/domain
//   /network/dns/<stack>/{nameServers [texts], searchDomains [texts], fromDhcp}
#include <algorithm>
#include <cctype>

#include "host/HostCtlException.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {
namespace {

using nlohmann::json;

// One DNS label: letters, digits and '-', not at either end, at most 63 characters.
bool ValidLabel(const std::string& label) {
  if (label.empty() || label.size() > 63 || label.front() == '-' || label.back() == '-') return false;
  return std::all_of(label.begin(), label.end(), [](unsigned char c) { return std::isalnum(c) || c == '-'; });
}

bool ValidDomain(const std::string& domain) {
  if (domain.empty() || domain.size() > 253) return false;
  size_t start = 0;
  while (true) {
    size_t dot = domain.find('.', start);
    if (!ValidLabel(domain.substr(start, dot - start))) return false;
    if (dot == std::string::npos) return true;
    start = dot + 1;
  }
}

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> pieces;
  std::string piece;
  for (char c : text) {
    if (c == ',' || std::isspace(static_cast<unsigned char>(c))) {
      if (!piece.empty()) pieces.push_back(piece);
      piece.clear();
    } else {
      piece += c;
    }
  }
  if (!piece.empty()) pieces.push_back(piece);
  return pieces;
}

json& ListIn(json& state, const std::string& pointer) {
  json& list = state[json::json_pointer(pointer)];
  if (!list.is_array()) list = json::array();
  return list;
}

}  // namespace

void SimDnsConfig::Refresh() { state_.CheckFault("DnsConfig.Refresh"); }

std::string SimDnsConfig::GetHostname() const {
  return ValueAt<std::string>(*state_.Read("DnsConfig.GetHostname"), "/host/hostname", "");
}

std::string SimDnsConfig::GetDomain() const {
  return ValueAt<std::string>(*state_.Read("DnsConfig.GetDomain"), "/host/domain", "");
}

bool SimDnsConfig::GetDhcp() const {
  return ValueAt<bool>(*state_.Read("DnsConfig.GetDhcp"), Dns() + "/fromDhcp", false);
}

void SimDnsConfig::SetHostname(const std::string& hostname, bool) {
  if (!ValidLabel(hostname)) throw Lib::HostCtlException("Invalid host name '" + hostname + "'");
  state_.Update("DnsConfig.SetHostname", [&](json& state) { state["host"]["hostname"] = hostname; });
}

void SimDnsConfig::SetFqdn(const std::string& fqdn, bool, const std::string&) {
  auto dot = fqdn.find('.');
  std::string host = fqdn.substr(0, dot);
  std::string domain = dot == std::string::npos ? "" : fqdn.substr(dot + 1);
  if (!ValidLabel(host) || (dot != std::string::npos && !ValidDomain(domain)))
    throw Lib::HostCtlException("Invalid host name '" + fqdn + "'");
  state_.Update("DnsConfig.SetFqdn", [&](json& state) {
    state["host"]["hostname"] = host;
    state["host"]["domain"] = domain;
  });
}

std::vector<Network::Ipv4Address> SimDnsConfig::GetNameServers() const {
  const auto snapshot = state_.Read("DnsConfig.GetNameServers");
  const json& state = *snapshot;
  std::vector<Network::Ipv4Address> servers;
  const json& list = NodeAt(state, Dns() + "/nameServers");
  if (list.is_array())
    for (const auto& entry : list) {
      Network::Ipv4Address address;
      if (entry.is_string() && address.SetAddress(entry.get<std::string>())) servers.push_back(address);
    }
  return servers;
}

std::vector<Network::Ipv6Address> SimDnsConfig::GetIpv6NameServers() const {
  const auto snapshot = state_.Read("DnsConfig.GetIpv6NameServers");
  const json& state = *snapshot;
  std::vector<Network::Ipv6Address> servers;
  const json& list = NodeAt(state, Dns() + "/nameServers");
  if (list.is_array())
    for (const auto& entry : list) {
      Network::Ipv6Address address;
      if (entry.is_string() && address.SetAddress(entry.get<std::string>())) servers.push_back(address);
    }
  return servers;
}

void SimDnsConfig::RemoveNameServers() {
  state_.Update("DnsConfig.RemoveNameServers",
                [&](json& state) { ListIn(state, Dns() + "/nameServers").clear(); });
}

void SimDnsConfig::AddServerText(const std::string& operation, const std::string& text) {
  state_.Update(operation, [&](json& state) {
    json& list = ListIn(state, Dns() + "/nameServers");
    if (std::find(list.begin(), list.end(), json(text)) == list.end()) list.push_back(text);
  });
}

void SimDnsConfig::AddNameServer(const Network::Ipv4Address& server) {
  if (server.IsZero()) throw Lib::HostCtlException("Invalid name server 0.0.0.0");
  AddServerText("DnsConfig.AddNameServer", server.GetStringAddress());
}

void SimDnsConfig::AddNameServer(const Network::Ipv6Address& server) {
  if (server.IsUnspecified()) throw Lib::HostCtlException("Invalid name server ::");
  AddServerText("DnsConfig.AddNameServer", server.GetScopedStringAddress());
}

std::vector<std::string> SimDnsConfig::GetSearchDomains() const {
  const auto snapshot = state_.Read("DnsConfig.GetSearchDomains");
  const json& state = *snapshot;
  std::vector<std::string> domains;
  const json& list = NodeAt(state, Dns() + "/searchDomains");
  if (list.is_array())
    for (const auto& entry : list)
      if (entry.is_string()) domains.push_back(entry.get<std::string>());
  return domains;
}

void SimDnsConfig::SetSearchDomainsString(const std::string& domains) {
  std::vector<std::string> pieces = Split(domains);
  for (const auto& piece : pieces)
    if (!ValidDomain(piece)) throw Lib::HostCtlException("Invalid search domain '" + piece + "'");
  state_.Update("DnsConfig.SetSearchDomainsString", [&](json& state) {
    json& list = ListIn(state, Dns() + "/searchDomains");
    list = json::array();
    for (const auto& piece : pieces)
      if (std::find(list.begin(), list.end(), json(piece)) == list.end()) list.push_back(piece);
  });
}

void SimDnsConfig::AddSearchDomain(const std::string& domain) {
  if (!ValidDomain(domain)) throw Lib::HostCtlException("Invalid search domain '" + domain + "'");
  state_.Update("DnsConfig.AddSearchDomain", [&](json& state) {
    json& list = ListIn(state, Dns() + "/searchDomains");
    if (std::find(list.begin(), list.end(), json(domain)) == list.end()) list.push_back(domain);
  });
}

// The state file is the simulated host's persistent store, so there is nothing more to save;
// an injected fault still makes the save fail.
void SimDnsConfig::SaveConfig() { state_.CheckFault("DnsConfig.SaveConfig"); }

}  // namespace HostCtl::Sim
