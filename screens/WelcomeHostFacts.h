// Reading the welcome screen's facts from the host backend. Every read is fresh; a
// host-control failure is logged and leaves the fact out, as a missing one would.
#pragma once

#include <string>

#include "host/HardwareInfo.h"
#include "screens/WelcomeFacts.h"

namespace HostCtl::Network {
class DnsConfig;
}

namespace Konu {

// The management interface's modes and addresses, IPv6 enablement, the host name from
// `dns` (refreshed first) and whether the host has a physical adapter.
ManagementFacts ReadManagementFacts(HostCtl::Network::DnsConfig& dns);

// True when the kernel's boot option says the host runs in audit mode; false when the
// option cannot be read.
bool ReadAuditMode();

// The host's hardware facts; empty ones when they cannot be read.
HostCtl::Hardware ReadHardware();

// The management address: the interface's current IPv4 address, or with IPv4 off its
// first IPv6 address that is not link-local; "" when there is none.
std::string ManagementAddress();

}  // namespace Konu
