// The host name and domain for the login texts, read from the DNS configuration.
#include "screens/HostAndDomain.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "ui/Markup.h"

namespace Konu {

std::string HostAndDomain() {
  std::string host, domain;
  try {
    auto dns = Runtime::Get().Host().CreateDnsConfig(HostCtl::kDefaultTcpipStack);
    host = dns->GetHostname();
    domain = dns->GetDomain();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Unable to read the host name: %s", e.what());
  }
  return LiteralMarkup(host + "." + domain);
}

}  // namespace Konu
