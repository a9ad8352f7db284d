// Parsers for the Linux files the real backend reads.
#include "host/linux/ProcParsers.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

namespace HostCtl::Linux {
namespace {

std::vector<std::string> Words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::optional<uint32_t> Hex32(const std::string& text) {
  if (text.empty() || text.size() > 8) return std::nullopt;
  uint32_t value = 0;
  for (char c : text) {
    if (!std::isxdigit(static_cast<unsigned char>(c))) return std::nullopt;
    value = value << 4 |
            static_cast<uint32_t>(std::isdigit(static_cast<unsigned char>(c)) ? c - '0'
                                                                              : std::tolower(c) - 'a' + 10);
  }
  return value;
}

// 32 hex digits as an IPv6 address.
std::optional<Network::Ipv6Address> Hex128(const std::string& text) {
  if (text.size() != 32) return std::nullopt;
  Network::Ipv6Address::Bytes bytes{};
  for (size_t i = 0; i < 16; ++i) {
    auto byte = Hex32(text.substr(i * 2, 2));
    if (!byte) return std::nullopt;
    bytes[i] = static_cast<uint8_t>(*byte);
  }
  return Network::Ipv6Address(bytes);
}

std::string Trim(const std::string& text) {
  size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string::npos) return "";
  size_t end = text.find_last_not_of(" \t\r\n");
  return text.substr(start, end - start + 1);
}

// "key<tab>: value" lines of /proc/cpuinfo and /proc/meminfo.
bool KeyValue(const std::string& line, std::string* key, std::string* value) {
  auto colon = line.find(':');
  if (colon == std::string::npos) return false;
  *key = Trim(line.substr(0, colon));
  *value = Trim(line.substr(colon + 1));
  return true;
}

}  // namespace

std::vector<Ipv4Route> ParseProcNetRoute(const std::string& text) {
  constexpr uint32_t kRtfUp = 0x1, kRtfGateway = 0x2;
  std::vector<Ipv4Route> routes;
  for (const auto& line : Lines(text)) {
    auto w = Words(line);
    if (w.size() < 8 || w[0] == "Iface") continue;
    auto destination = Hex32(w[1]), gateway = Hex32(w[2]), flags = Hex32(w[3]), mask = Hex32(w[7]);
    if (!destination || !gateway || !flags || !mask) continue;
    Ipv4Route route;
    route.interface = w[0];
    // The kernel prints the network-order value as a host-order (little-endian) number, so
    // the parsed number is already the network-order word on this machine.
    route.destination.SetBinaryAddress(*destination);
    route.gateway.SetBinaryAddress(*gateway);
    route.netmask.SetBinaryAddress(*mask);
    route.metric = static_cast<uint32_t>(std::strtoul(w[6].c_str(), nullptr, 10));
    route.hasGateway = *flags & kRtfGateway;
    route.up = *flags & kRtfUp;
    routes.push_back(route);
  }
  return routes;
}

std::vector<Ipv6Route> ParseProcNetIpv6Route(const std::string& text) {
  std::vector<Ipv6Route> routes;
  for (const auto& line : Lines(text)) {
    auto w = Words(line);
    if (w.size() < 10) continue;
    auto destination = Hex128(w[0]), nextHop = Hex128(w[4]);
    auto prefix = Hex32(w[1]), metric = Hex32(w[5]);
    if (!destination || !nextHop || !prefix || !metric || *prefix > 128) continue;
    routes.push_back({w[9], *destination, *nextHop, *prefix, *metric});
  }
  return routes;
}

std::vector<InterfaceIpv6> ParseIfInet6(const std::string& text) {
  constexpr uint32_t kPermanent = 0x80;
  std::vector<InterfaceIpv6> out;
  for (const auto& line : Lines(text)) {
    auto w = Words(line);
    if (w.size() < 6) continue;
    auto address = Hex128(w[0]);
    auto prefix = Hex32(w[2]), scope = Hex32(w[3]), flags = Hex32(w[4]);
    if (!address || !prefix || !scope || !flags || *prefix > 128) continue;
    Network::Ipv6Scope s = Network::Ipv6Scope::kGlobal;
    switch (*scope & 0xf0) {
      case 0x10:
        s = Network::Ipv6Scope::kNode;
        break;
      case 0x20:
        s = Network::Ipv6Scope::kLink;
        break;
      case 0x40:
        s = Network::Ipv6Scope::kSite;
        break;
      default:
        break;
    }
    bool permanent = *flags & kPermanent;
    Network::Ipv6AddressType type = s != Network::Ipv6Scope::kGlobal ? Network::Ipv6AddressType::kOther
                                    : permanent                      ? Network::Ipv6AddressType::kStatic
                                                                     : Network::Ipv6AddressType::kAutoconf;
    Network::Ipv6Address scoped = *address;
    if (s == Network::Ipv6Scope::kLink) scoped.SetZone(w[5]);
    out.push_back({w[5], Network::Ipv6Network(scoped, *prefix, type, s), permanent});
  }
  return out;
}

std::vector<Network::Ipv4Address> ParseFibTrieLocalAddresses(const std::string& text) {
  std::vector<Network::Ipv4Address> out;
  std::set<uint32_t> seen;
  Network::Ipv4Address leaf;
  bool haveLeaf = false;
  for (const auto& line : Lines(text)) {
    auto w = Words(line);
    if (w.size() == 2 && w[0] == "|--") {
      haveLeaf = leaf.SetAddress(w[1]);
    } else if (haveLeaf && w.size() >= 3 && w[0] == "/32" && w[1] == "host" && w[2] == "LOCAL") {
      if (seen.insert(leaf.GetBinaryAddress()).second) out.push_back(leaf);
    }
  }
  return out;
}

std::vector<InterfaceIpv4> AssignIpv4Addresses(const std::vector<Network::Ipv4Address>& local,
                                               const std::vector<Ipv4Route>& routes) {
  std::vector<InterfaceIpv4> out;
  for (const auto& address : local) {
    const Ipv4Route* best = nullptr;
    for (const auto& route : routes) {
      if (route.hasGateway || !route.netmask.IsNetmask()) continue;
      uint32_t mask = route.netmask.GetBinaryAddress();
      if ((address.GetBinaryAddress() & mask) != (route.destination.GetBinaryAddress() & mask)) continue;
      if (!best || route.netmask.GetPrefixLength() > best->netmask.GetPrefixLength()) best = &route;
    }
    if (best) out.push_back({best->interface, address, best->netmask});
  }
  return out;
}

ResolvConf ParseResolvConf(const std::string& text) {
  ResolvConf conf;
  for (const auto& line : Lines(text)) {
    auto w = Words(line);
    if (w.empty() || w[0][0] == '#' || w[0][0] == ';') continue;
    if (w[0] == "nameserver" && w.size() >= 2) {
      Network::Ipv4Address v4;
      Network::Ipv6Address v6;
      if (v4.SetAddress(w[1]))
        conf.nameServers.push_back(v4);
      else if (v6.SetAddress(w[1]))
        conf.ipv6NameServers.push_back(v6);
    } else if (w[0] == "domain" && w.size() >= 2) {
      conf.domain = w[1];
      conf.search.clear();
    } else if (w[0] == "search") {
      conf.search.assign(w.begin() + 1, w.end());
      conf.domain.clear();
    }
  }
  return conf;
}

CpuFacts ParseCpuInfo(const std::string& text) {
  CpuFacts facts;
  std::map<std::string, uint32_t> coresPerPackage;
  std::string physicalId, key, value;
  uint32_t cores = 0;
  auto finish = [&] {
    if (!physicalId.empty() || cores)
      coresPerPackage[physicalId] = std::max(coresPerPackage[physicalId], cores);
    physicalId.clear();
    cores = 0;
  };
  for (const auto& line : Lines(text)) {
    if (Trim(line).empty()) {
      finish();
      continue;
    }
    if (!KeyValue(line, &key, &value)) continue;
    if (key == "processor") {
      ++facts.threads;
    } else if (key == "physical id") {
      physicalId = value;
    } else if (key == "cpu cores") {
      cores = static_cast<uint32_t>(std::strtoul(value.c_str(), nullptr, 10));
    } else if (key == "model name" && facts.model.empty()) {
      facts.model = value;
    }
  }
  finish();
  facts.packages = static_cast<uint32_t>(coresPerPackage.size());
  if (facts.packages == 0 && facts.threads > 0) facts.packages = 1;
  for (const auto& [id, n] : coresPerPackage) facts.cores += n;
  if (facts.cores == 0) facts.cores = facts.threads;
  return facts;
}

uint64_t ParseMemTotalBytes(const std::string& text) {
  std::string key, value;
  for (const auto& line : Lines(text)) {
    if (!KeyValue(line, &key, &value) || key != "MemTotal") continue;
    auto w = Words(value);
    if (w.empty()) return 0;
    uint64_t amount = std::strtoull(w[0].c_str(), nullptr, 10);
    return w.size() > 1 && w[1] == "kB" ? amount * 1024 : amount;
  }
  return 0;
}

std::map<std::string, std::string> ParseKeyValues(const std::string& text) {
  std::map<std::string, std::string> values;
  for (const auto& raw : Lines(text)) {
    std::string line = Trim(raw);
    if (line.empty() || line[0] == '#') continue;
    auto equals = line.find('=');
    if (equals == std::string::npos) continue;
    std::string key = Trim(line.substr(0, equals)), value = Trim(line.substr(equals + 1));
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
      value = value.substr(1, value.size() - 2);
    values[key] = value;
  }
  return values;
}

}  // namespace HostCtl::Linux
