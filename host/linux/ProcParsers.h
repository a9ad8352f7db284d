// Parsers for the Linux files the real backend reads: routes, interface addresses, resolver
// configuration, CPU and memory facts, os-release. Each takes the file's text and hands back
// plain values; nothing here touches the machine.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/Ipv4Address.h"
#include "host/Ipv6Address.h"
#include "host/Ipv6Network.h"

namespace HostCtl::Linux {

struct Ipv4Route {
  std::string interface;
  Network::Ipv4Address destination, gateway, netmask;
  uint32_t metric = 0;
  bool hasGateway = false;  // RTF_GATEWAY
  bool up = false;          // RTF_UP
};

// /proc/net/route (addresses in the kernel's little-endian hex).
std::vector<Ipv4Route> ParseProcNetRoute(const std::string& text);

struct Ipv6Route {
  std::string interface;
  Network::Ipv6Address destination, nextHop;
  unsigned prefixLength = 0;
  uint32_t metric = 0;
};

// /proc/net/ipv6_route.
std::vector<Ipv6Route> ParseProcNetIpv6Route(const std::string& text);

struct InterfaceIpv6 {
  std::string interface;
  Network::Ipv6Network network;  // type: permanent global = static, other global = autoconf,
                                 // link-local = other
  bool permanent = false;
};

// /proc/net/if_inet6.
std::vector<InterfaceIpv6> ParseIfInet6(const std::string& text);

// The local (own) IPv4 addresses listed in /proc/net/fib_trie ("/32 host LOCAL").
std::vector<Network::Ipv4Address> ParseFibTrieLocalAddresses(const std::string& text);

struct InterfaceIpv4 {
  std::string interface;
  Network::Ipv4Address address, netmask;
};

// Gives each local address the interface and netmask of the most specific directly
// connected route that holds it; addresses without one are left out (loopback).
std::vector<InterfaceIpv4> AssignIpv4Addresses(const std::vector<Network::Ipv4Address>& local,
                                               const std::vector<Ipv4Route>& routes);

struct ResolvConf {
  std::vector<Network::Ipv4Address> nameServers;
  std::vector<Network::Ipv6Address> ipv6NameServers;
  std::string domain;
  std::vector<std::string> search;
};

// /etc/resolv.conf: "nameserver", "domain" and "search" lines; the last of domain and search
// wins, as in the resolver.
ResolvConf ParseResolvConf(const std::string& text);

struct CpuFacts {
  uint32_t packages = 0, cores = 0, threads = 0;
  std::string model;
};

// /proc/cpuinfo: distinct "physical id" values (1 when none is given but processors are),
// the sum of "cpu cores" over the packages, the number of "processor" entries, and the first
// "model name".
CpuFacts ParseCpuInfo(const std::string& text);

// /proc/meminfo "MemTotal" in bytes (0 when missing).
uint64_t ParseMemTotalBytes(const std::string& text);

// KEY=value lines with optional quotes (os-release, vconsole.conf, /etc/default/keyboard).
std::map<std::string, std::string> ParseKeyValues(const std::string& text);

}  // namespace HostCtl::Linux
