// The support information as the menu's information pane shows it: each page laid out for
// the pane and continued on further pages where it is taller, with Page Up/Down hints.
#pragma once

#include <string>
#include <vector>

namespace Konu {

class TextArea;

// Reads the pages and lays them out for `pane`: variables filled in, lines wrapped, and a
// page longer than the pane less its hint rows split at line boundaries.
std::vector<std::string> LayOutSupportPages(const TextArea& pane);

// Page `index` for a pane `paneHeight` rows high, its last row holding "<Page Up>" and
// "<Page Down>" where there is a page before or after; one line saying there is nothing when
// there is no page.
std::string SupportPageWithHints(const std::vector<std::string>& pages, unsigned index, int paneHeight);

}  // namespace Konu
