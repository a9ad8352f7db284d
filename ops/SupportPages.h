// The support information pages: one mark-up file per page in the host's support folder.
#pragma once

#include <string>
#include <vector>

namespace Konu {

// Where the pages are (host path).
inline constexpr const char kSupportFolder[] = "/etc/corbel/support";

// The text of every regular file of the folder, in name order. A file that cannot be read
// is left out and logged; a missing folder gives no page.
std::vector<std::string> ReadSupportPages();

}  // namespace Konu
