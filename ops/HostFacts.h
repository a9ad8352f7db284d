// Host facts as the screens show them: the management interface's name, and text from
// the host tidied for one line.
#pragma once

#include <string>
#include <string_view>

namespace Konu {

// The name of the host's management network interface ("" when there is none), asked of
// a fresh network-information object of the host backend. A
// HostCtl::Lib::HostCtlException from the backend goes on to the caller.
std::string ManagementInterfaceName();

// `text` without leading and trailing whitespace (isspace), every inner run of
// whitespace replaced by one blank.
std::string CollapseWhitespace(std::string_view text);

}  // namespace Konu
