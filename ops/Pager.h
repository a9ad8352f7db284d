// Showing a host file in the pager "/bin/less" on the console's own terminal.
#pragma once

#include <string>

namespace Konu {

// The pager's prompt, as operators know it.
inline constexpr const char kPagerPrompt[] = "<Q> Quit </> RegExp Search <H> Help";

// Runs "less -cfP<prompt> FILE" (`hostFile` a host path) with the console's environment, in
// which LESSSECURE is "1" meanwhile so the pager runs no commands and opens no other files,
// and waits for it. LESSSECURE is put back to its earlier text afterwards, an empty one when
// it was unset. A terminating signal kills the pager and ends the console. Returns the
// pager's exit code, or -1 when it could not be started (logged) or did not end normally.
int ViewInPager(const std::string& hostFile);

}  // namespace Konu
