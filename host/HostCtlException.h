// The one error type of the host-control layer: a failed host operation and the text the
// operator sees for it.
#pragma once

#include <stdexcept>
#include <string>

namespace HostCtl::Lib {

class HostCtlException : public std::runtime_error {
 public:
  explicit HostCtlException(const std::string& message) : std::runtime_error(message) {}
  // The message as the screens log and show it (same text as what()).
  std::string GetMessage() const { return what(); }
};

}  // namespace HostCtl::Lib
