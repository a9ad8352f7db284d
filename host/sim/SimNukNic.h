// The simulated management interface: IP configuration, simulated DHCP, MAC, down/up and
// connection point, all kept in the state file.
#pragma once

#include <string>

#include "host/NukNic.h"
#include "host/sim/SimState.h"

namespace HostCtl::Sim {

class SimNukNic : public Network::NukNic {
 public:
  // Throws HostCtlException when the state has no virtual NIC of that name.
  SimNukNic(std::string root, std::string name);

  std::string GetName() const override { return name_; }
  bool IsStale() const override { return false; }  // every call reads the state afresh
  void Refresh() override;
  bool IsUsable() const override;
  Network::IpConfig GetConfiguredIpConfig() const override;
  Network::IpConfig GetCurrentIpConfig() const override;
  void SetIpConfig(const Network::IpConfig& config) override;
  Network::MacAddress GetMacAddress() const override;
  void SetMacAddress(const Network::MacAddress& mac) override;
  void SetMacAddressFromPnic(const std::string& pnicName) override;
  bool GetDhcpBound() const override;
  void SetDhcpBound(bool bound) override;
  void RenewIpv4Lease() override;
  void RenewIpv6Lease() override;
  void TakeDown() override;
  void BringUp() override;
  bool IsUp() const override;
  Network::ConnectionPoint GetConnectionPoint() const override;
  void SetPortGroup(const std::string& portGroup) override;

 private:
  // "/network/nukNics/<name>"
  std::string Nic() const;
  // Appends "<time> cpu0:1)Net: <name> <text>" to the kernel log.
  void KernelLog(const std::string& text) const;
  // The NIC's JSON in a state document; throws when the NIC is gone.
  static nlohmann::json& NicIn(nlohmann::json& state, const std::string& name);
  static const nlohmann::json& NicIn(const nlohmann::json& state, const std::string& name);

  SimState state_;
  std::string name_;
};

// Simulated DHCP: gives a NIC the server's IPv4 lease (or 0.0.0.0 with no server) and, with
// DNS from DHCP, the lease's name servers and gateway. Exposed for the tests.
void AcquireIpv4Lease(nlohmann::json& state, const std::string& nicName);
void AcquireIpv6Lease(nlohmann::json& state, const std::string& nicName);

}  // namespace HostCtl::Sim
