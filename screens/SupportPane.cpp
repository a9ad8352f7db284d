// Paging the support information for the information pane.
#include "screens/SupportPane.h"

#include <algorithm>

#include "ops/SupportPages.h"
#include "ui/Markup.h"
#include "ui/TextArea.h"

namespace Konu {
namespace {

constexpr const char kNoPages[] = "No support information is available on this host.";
// A blank row, the hints, and the pane's last row, which the footer line covers.
constexpr int kHintRows = 3;

std::vector<std::string> SplitRows(const std::string& text) {
  std::vector<std::string> rows;
  size_t start = 0;
  for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
    rows.push_back(text.substr(start, end - start));
  rows.push_back(text.substr(start));
  while (!rows.empty() && rows.back().empty()) rows.pop_back();
  return rows;
}

int BodyRows(int paneHeight) { return std::max(1, paneHeight - kHintRows); }

}  // namespace

std::vector<std::string> LayOutSupportPages(const TextArea& pane) {
  const size_t body = static_cast<size_t>(BodyRows(pane.Height()));
  std::vector<std::string> pages;
  for (const std::string& source : ReadSupportPages()) {
    // Laid-out rows fit the width, so laying a page out again when it is shown keeps them.
    std::vector<std::string> rows = SplitRows(LayoutMarkup(pane.Width(), source, pane.Variables()));
    for (size_t first = 0; first < rows.size() || first == 0; first += body) {
      std::string page;
      for (size_t row = first; row < std::min(rows.size(), first + body); ++row)
        page += (row > first ? "\n" : "") + rows[row];
      pages.push_back(page);
    }
  }
  return pages;
}

std::string SupportPageWithHints(const std::vector<std::string>& pages, unsigned index, int paneHeight) {
  if (pages.empty()) return kNoPages;
  const std::string& page = pages[std::min<size_t>(index, pages.size() - 1)];
  const bool before = index > 0;
  const bool after = index + 1 < pages.size();
  if (!before && !after) return page;
  const int rows = static_cast<int>(std::count(page.begin(), page.end(), '\n')) + 1;
  std::string text = page + std::string(static_cast<size_t>(BodyRows(paneHeight) - rows + 2), '\n');
  if (before) text += "{color:light-grey}<Page Up>{/color}";
  if (after) text += "{align:right}{color:light-grey}<Page Down>{/color}{/align}";
  return text;
}

}  // namespace Konu
