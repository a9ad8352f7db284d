// A physical NIC as the host reports it: plain data, read once.
#pragma once

#include <cstdint>
#include <string>

#include "host/MacAddress.h"

namespace HostCtl::Network {

struct Pnic {
  std::string name;        // device name, "nic0"
  MacAddress macAddress;   // its burned-in (or current) hardware address
  bool linkUp = false;     // "Connected" / "Disconnected"
  uint32_t speedMbps = 0;  // 0 when the link is down or the speed is unknown
  bool fullDuplex = false;
  std::string driver;       // kernel driver name
  std::string pciDevice;    // PCI address, "0000:02:00.0" (empty for a virtual device)
  std::string description;  // vendor and device, the hardware label shown to the operator

  // The hardware label the adapter list shows: the description, or the PCI address.
  const std::string& GetHardwareLabel() const { return description.empty() ? pciDevice : description; }
};

}  // namespace HostCtl::Network
