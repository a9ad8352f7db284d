// ItemList: drawing the rows, the selection bar and the scroll bar.
#include "ui/ItemList.h"

#include <curses.h>

namespace Konu {
namespace {
constexpr const char* kBarShade = "\u2593";  // dark shade
constexpr const char* kBarBlock = "\u2588";  // full block
constexpr int kSelectionBackground = 0;
constexpr int kSelectionForeground = 7;
}  // namespace

ItemList::ItemList(Window* parent, int x, int y, int width, int height)
    : Window(parent, x, y, width, height, -1, -1) {
  rowsArea_ = std::make_unique<Window>(this, 0, 0, width - 1, height, -1, -1);
  scrollBar_ = std::make_unique<Window>(this, width - 1, 0, 1, height, -1, -1);
  for (int row = 0; row < height; ++row) {
    rowAreas_.push_back(std::make_unique<TextArea>(rowsArea_.get(), 0, row, width - 1, 1, -1));
  }
}

ItemList::~ItemList() {
  rowAreas_.clear();  // before the rows area they are part of
}

void ItemList::SetItems(const std::vector<Item*>& items) {
  items_ = items;
  focus_.Reset(items_);
}

void ItemList::FocusOrdinal(int n) { focus_.FocusOrdinal(items_, n); }

void ItemList::Down() {
  focus_.Down(items_, Rows());
  Draw();
}

void ItemList::Up() {
  focus_.Up(items_);
  Draw();
}

Item* ItemList::FocusedItem() const {
  int index = focus_.FocusedIndex();
  if (index < 0 || index >= static_cast<int>(items_.size())) return nullptr;
  return items_[index];
}

void ItemList::Draw() {
  if (Curses()) werase(Curses());
  const int rows = Rows();
  const int count = static_cast<int>(items_.size());

  for (int row = 0; row < rows; ++row) {
    TextArea& area = *rowAreas_[row];
    const int index = focus_.first + row;
    if (index < 0 || index >= count) {
      area.SetText("");  // nothing stale comes back when the area is shown again
      continue;
    }
    Item* item = items_[index];
    item->SetFocus(row == focus_.focusedRow);
    if (row == focus_.focusedRow) {
      area.SetColors(kSelectionBackground, kSelectionForeground);
    } else {
      area.SetColors(item->Background(), item->Foreground());
      item->Draw(area);
    }
  }

  const int solid = ScrollBarSolidRow(focus_.first, count, rows);
  if (solid >= 0 && scrollBar_->Curses()) {
    WINDOW* bar = scrollBar_->Curses();
    for (int row = 0; row < rows; ++row) mvwaddstr(bar, row, 0, kBarShade);
    mvwaddstr(bar, solid, 0, kBarBlock);
    scrollBar_->Update();
  }

  rowsArea_->Update();
  const int focusedRow = focus_.focusedRow;
  const int focused = focus_.FocusedIndex();
  if (focusedRow >= 0 && focusedRow < rows && focused >= 0 && focused < count) {
    items_[focused]->Draw(*rowAreas_[focusedRow]);
  }
}

}  // namespace Konu
