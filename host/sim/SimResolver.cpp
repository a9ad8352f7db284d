// Name resolution on a simulated host: the root's hosts file, then the name servers of the
// stack that answer (reachable, management interface up) and hold the name.
//
// State read (JSON pointers):
//   /network/dns/<stack>/nameServers       the servers asked, in order
//   /network/reachable                     addresses that answer
//   /network/managementInterface, /network/nukNics/<name>/up
//   /network/dnsRecords/<server>/<name>    the names a server knows (value: the address)
// Fault: /faults/operations/DnsConfig.ResolveHostname (a message: it throws; {"hang": true}: no
// answer comes, and the lookup waits until it is given up)
#include <time.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>

#include "host/sim/Faults.h"
#include "host/sim/SimServices.h"

namespace HostCtl::Sim {
namespace {

using nlohmann::json;

// Lower case, without one trailing dot: names compare as DNS compares them.
std::string Canonical(std::string name) {
  if (!name.empty() && name.back() == '.') name.pop_back();
  std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
  return name;
}

bool InHostsFile(const std::string& path, const std::string& name) {
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line)) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string address, word;
    words >> address;
    while (words >> word)
      if (Canonical(word) == name) return true;
  }
  return false;
}

bool Listed(const json& list, const std::string& text) {
  return list.is_array() && std::find(list.begin(), list.end(), json(text)) != list.end();
}

}  // namespace

bool SimDnsConfig::ResolveHostname(const std::string& name, const std::atomic<bool>& stop) {
  const auto snapshot = state_.Read("DnsConfig.ResolveHostname");
  const json& state = *snapshot;
  const std::string wanted = Canonical(name);
  if (wanted.empty() || stop) return false;
  if (Konu::Sim::OperationHangs(state, "DnsConfig.ResolveHostname")) {
    const timespec look{0, 20 * 1000 * 1000};
    while (!stop) nanosleep(&look, nullptr);
    return false;
  }
  if (InHostsFile(state_.Path("/etc/hosts"), wanted)) return true;

  const std::string nic = ValueAt<std::string>(state, "/network/managementInterface", "");
  if (nic.empty() || !ValueAt<bool>(state, "/network/nukNics/" + PointerKey(nic) + "/up", false))
    return false;
  const json& reachable = NodeAt(state, "/network/reachable");
  const json& servers = NodeAt(state, Dns() + "/nameServers");
  if (!servers.is_array()) return false;
  for (const json& server : servers) {
    if (!server.is_string() || !Listed(reachable, server.get<std::string>())) continue;
    const json& records = NodeAt(state, "/network/dnsRecords/" + PointerKey(server.get<std::string>()));
    if (!records.is_object()) continue;
    for (const auto& [known, address] : records.items())
      if (Canonical(known) == wanted) return true;
  }
  return false;
}

}  // namespace HostCtl::Sim
