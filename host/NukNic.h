// The virtual NIC that carries the management network: its IP configuration (configured and
// current), MAC address, DHCP state, down/up and where it is connected.
#pragma once

#include <cstdint>
#include <string>

#include "host/IpConfig.h"
#include "host/MacAddress.h"

namespace HostCtl::Network {

// What the interface is plugged into. The numbers are the library's: 1 is a port group on a
// standard switch, 2 a distributed-switch port.
enum class ConnecteeType : int {
  kUnknown = 0,
  kPortGroup = 1,
  kDvsPort = 2,
  kOpaqueNetwork = 3,
};

struct ConnectionPoint {
  ConnecteeType type = ConnecteeType::kUnknown;
  std::string portGroup;   // type 1: the port group name
  std::string switchName;  // type 1: the standard switch of the port group; type 2: the DVS name
  std::string dvsPortKey;  // type 2: the port key on the distributed switch
};

class NukNic {
 public:
  virtual ~NukNic() = default;
  NukNic() = default;
  NukNic(const NukNic&) = delete;
  NukNic& operator=(const NukNic&) = delete;

  // The interface's name ("nuk0").
  virtual std::string GetName() const = 0;
  // True when the object's facts may be out of date; Refresh() brings them back.
  virtual bool IsStale() const = 0;
  // Re-reads the interface; throws when it no longer exists.
  virtual void Refresh() = 0;
  // True when the interface exists, is enabled and has a connection point.
  virtual bool IsUsable() const = 0;

  // The configuration as set (mode, static addresses, IPv6 modes and static list).
  virtual IpConfig GetConfiguredIpConfig() const = 0;
  // What the interface holds now (a DHCP lease, autoconfigured IPv6 addresses, ...).
  virtual IpConfig GetCurrentIpConfig() const = 0;
  // Makes the given configuration the configured one and applies it.
  virtual void SetIpConfig(const IpConfig& config) = 0;

  virtual MacAddress GetMacAddress() const = 0;
  virtual void SetMacAddress(const MacAddress& mac) = 0;
  // Gives the interface the MAC address of the named physical NIC.
  virtual void SetMacAddressFromPnic(const std::string& pnicName) = 0;

  // True when the IPv4 configuration is bound to a DHCP lease.
  virtual bool GetDhcpBound() const = 0;
  virtual void SetDhcpBound(bool bound) = 0;
  virtual void RenewIpv4Lease() = 0;
  virtual void RenewIpv6Lease() = 0;

  // Takes the interface down / brings it up; both block until the host has done it.
  virtual void TakeDown() = 0;
  virtual void BringUp() = 0;
  virtual bool IsUp() const = 0;

  virtual ConnectionPoint GetConnectionPoint() const = 0;
  // Moves the interface onto a port group of a standard switch.
  virtual void SetPortGroup(const std::string& portGroup) = 0;
};

}  // namespace HostCtl::Network
