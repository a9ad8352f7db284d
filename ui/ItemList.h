// A list of items, one per row, with a focus bar, scrolling and a one-column scroll bar.
// The list reads no keys: the screen calls Up, Down and the focused item's operations.
#pragma once

#include <memory>
#include <vector>

#include "ui/Item.h"
#include "ui/LabelItem.h"
#include "ui/ListFocus.h"
#include "ui/TextArea.h"
#include "ui/Window.h"

namespace Konu {

class ItemList : public Window {
 public:
  // Colours are the parent's. The last column is the scroll bar.
  ItemList(Window* parent, int x, int y, int width, int height);
  ~ItemList() override;

  // Copies the pointers (the screen keeps owning the items) and focuses the first item
  // that is focusable and enabled. Does not draw.
  void SetItems(const std::vector<Item*>& items);
  // Focuses the n-th focusable item (from 0, enabled or not) without scrolling.
  void FocusOrdinal(int n);
  // Move the focus to the previous / next focusable, enabled item and draw.
  void Up();
  void Down();
  void Draw();

  // Null when the list is empty.
  Item* FocusedItem() const;
  const std::vector<Item*>& Items() const { return items_; }
  const ListFocus& Focus() const { return focus_; }
  int Rows() const { return Height(); }

 private:
  // Parents before their children, so that children are destroyed first.
  std::unique_ptr<Window> rowsArea_;
  std::unique_ptr<Window> scrollBar_;
  std::vector<std::unique_ptr<TextArea>> rowAreas_;
  std::vector<Item*> items_;
  ListFocus focus_;
};

}  // namespace Konu
