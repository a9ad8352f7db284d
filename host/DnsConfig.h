// DNS configuration of one TCP/IP stack: host name, domain, name servers, search domains.
// Setters act on the host at once; SaveConfig makes the configuration survive a reboot.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "host/Ipv4Address.h"
#include "host/Ipv6Address.h"

namespace HostCtl::Network {

class DnsConfig {
 public:
  virtual ~DnsConfig() = default;
  DnsConfig() = default;
  DnsConfig(const DnsConfig&) = delete;
  DnsConfig& operator=(const DnsConfig&) = delete;

  // Re-reads the configuration from the host.
  virtual void Refresh() = 0;

  // Host name without the domain ("host1").
  virtual std::string GetHostname() const = 0;
  virtual std::string GetDomain() const = 0;
  // True when the servers and names came from DHCP.
  virtual bool GetDhcp() const = 0;
  // Sets the host name (no dot allowed; throws otherwise). The flag is passed on as the
  // screens give it (they always pass false).
  virtual void SetHostname(const std::string& hostname, bool flag) = 0;
  // Splits "host.example.com" into host name and domain and sets both; the flag and the
  // last text are passed on as the screens give them (false, "").
  virtual void SetFqdn(const std::string& fqdn, bool flag, const std::string& extra) = 0;

  virtual std::vector<Ipv4Address> GetNameServers() const = 0;
  virtual std::vector<Ipv6Address> GetIpv6NameServers() const = 0;
  virtual void RemoveNameServers() = 0;
  virtual void AddNameServer(const Ipv4Address& server) = 0;
  virtual void AddNameServer(const Ipv6Address& server) = 0;

  virtual std::vector<std::string> GetSearchDomains() const = 0;
  // Replaces the list with the names in the text (separated by blanks or commas).
  virtual void SetSearchDomainsString(const std::string& domains) = 0;
  // Appends one name (not again when it is listed already).
  virtual void AddSearchDomain(const std::string& domain) = 0;

  virtual void SaveConfig() = 0;

  // Looks `name` up as the host's own programs would: the hosts file first, then the name
  // servers. True when it yields an address. Never waits long: gives up (false) after a few
  // seconds, and soon after `stop` turns true. May run on a worker thread.
  virtual bool ResolveHostname(const std::string& name, const std::atomic<bool>& stop) = 0;
};

}  // namespace HostCtl::Network
