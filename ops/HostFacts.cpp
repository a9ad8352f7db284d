// Host facts for the screens.
#include "ops/HostFacts.h"

#include <cctype>
#include <memory>

#include "app/Runtime.h"
#include "host/Host.h"

namespace Konu {

std::string ManagementInterfaceName() {
  std::unique_ptr<HostCtl::Network::NetworkInfo> info = Runtime::Get().Host().CreateNetworkInfo();
  info->UpdateManagementInterface();
  return info->GetManagementInterfaceName();
}

std::string CollapseWhitespace(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  bool pendingBlank = false;
  for (char c : text) {
    if (std::isspace(static_cast<unsigned char>(c))) {
      pendingBlank = !result.empty();
      continue;
    }
    if (pendingBlank) result += ' ';
    pendingBlank = false;
    result += c;
  }
  return result;
}

}  // namespace Konu
