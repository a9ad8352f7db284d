// The host name and domain as the login texts print them.
#pragma once

#include <string>

namespace Konu {

// Host name + "." + domain from the DNS configuration of "defaultTcpipStack" (so "host."
// with no domain), as mark-up that shows it as it is; the parts the host cannot give are
// left empty.
std::string HostAndDomain();

}  // namespace Konu
