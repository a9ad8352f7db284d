// Focus and scrolling of an item list, kept apart from drawing: which item is first on
// screen, which row has the focus, and the focused item's ordinal among focusable items.
#pragma once

#include <vector>

namespace Konu {

class Item;

struct ListFocus {
  int first = 0;       // index of the first item shown
  int focusedRow = 0;  // relative to `first`
  int ordinal = 0;     // among focusable items, counting from 0

  int FocusedIndex() const { return first + focusedRow; }

  // A fresh list: nothing scrolled, ordinal 0, the focus on the first item that is
  // focusable and enabled (without scrolling to it).
  void Reset(const std::vector<Item*>& items);
  // The focus on the n-th focusable item, enabled or not, without scrolling. False (and
  // nothing changes) when there is no such item.
  bool FocusOrdinal(const std::vector<Item*>& items, int n);
  // The focus on the next (previous) item that is focusable and enabled, scrolling a list
  // of `rows` rows so that it shows (Up scrolls only when the item is above the first shown). False (and
  // nothing changes) when there is none.
  bool Down(const std::vector<Item*>& items, int rows);
  bool Up(const std::vector<Item*>& items);
};

// The scroll bar's solid cell for `items` items shown `rows` at a time from `first`, or -1
// when everything fits and there is no bar.
int ScrollBarSolidRow(int first, int items, int rows);

}  // namespace Konu
