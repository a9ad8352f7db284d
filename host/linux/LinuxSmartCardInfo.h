// Smart-card readers through the machine's pcscd. libpcsclite is loaded at run time, so the
// package does not need it: without the library, or without pcscd, there are no readers.
#pragma once

#include <string>
#include <vector>

#include "host/SmartCardInfo.h"

namespace HostCtl::Linux {

class LinuxSmartCardInfo : public SmartCardInfo {
 public:
  // `library` is the PC/SC client library to load (tests give a stand-in).
  explicit LinuxSmartCardInfo(std::string library = "libpcsclite.so.1") : library_(std::move(library)) {}
  // Every reader pcscd knows, with a token where a card is in it. Who a card belongs to is
  // not read (that needs the card's certificate), so a token's user id stays empty.
  std::vector<SmartCardSlot> GetSlots() const override;

 private:
  std::string library_;
};

}  // namespace HostCtl::Linux
