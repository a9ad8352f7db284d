// ListFocus: the arithmetic of moving the focus through a list and scrolling it.
#include "ui/ListFocus.h"

#include "ui/Item.h"

namespace Konu {

void ListFocus::Reset(const std::vector<Item*>& items) {
  first = 0;
  ordinal = 0;
  focusedRow = 0;
  for (size_t i = 0; i < items.size(); ++i) {
    if (items[i]->IsFocusable() && items[i]->IsEnabled()) {
      focusedRow = static_cast<int>(i);
      return;
    }
  }
}

bool ListFocus::FocusOrdinal(const std::vector<Item*>& items, int n) {
  int count = 0;
  for (size_t i = 0; i < items.size(); ++i) {
    if (!items[i]->IsFocusable()) continue;
    if (count == n) {
      focusedRow = static_cast<int>(i) - first;
      ordinal = n;
      return true;
    }
    ++count;
  }
  return false;
}

bool ListFocus::Down(const std::vector<Item*>& items, int rows) {
  int counted = ordinal;
  for (int i = FocusedIndex() + 1; i < static_cast<int>(items.size()); ++i) {
    if (i < 0 || !items[i]->IsFocusable()) continue;
    ++counted;
    if (!items[i]->IsEnabled()) continue;
    ordinal = counted;
    if (i < first + rows) {
      focusedRow = i - first;
    } else {
      first = i - (rows - 1);
      focusedRow = rows - 1;
    }
    return true;
  }
  return false;
}

bool ListFocus::Up(const std::vector<Item*>& items) {
  int counted = ordinal;
  for (int i = FocusedIndex() - 1; i >= 0; --i) {
    if (i >= static_cast<int>(items.size()) || !items[i]->IsFocusable()) continue;
    --counted;
    if (!items[i]->IsEnabled()) continue;
    ordinal = counted;
    if (i < first) {
      first = i;
      focusedRow = 0;
    } else {
      focusedRow = i - first;
    }
    return true;
  }
  return false;
}

int ScrollBarSolidRow(int first, int items, int rows) {
  if (items <= rows || rows <= 0) return -1;
  int percent = first * 100 / (items - rows);
  return (rows - 1) * percent / 100;
}

}  // namespace Konu
