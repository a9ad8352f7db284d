// InputItem: drawing through the field window and the editing keys.
#include "ui/InputItem.h"

#include <curses.h>

#include <algorithm>
#include <cctype>

#include "ui/Markup.h"
#include "ui/TextArea.h"

namespace Konu {

InputItem::InputItem(std::string label, std::string value, int fieldWidth)
    : Item(true),
      label_(std::move(label)),
      value_(std::move(value)),
      fieldWidth_(fieldWidth),
      cursor_(value_.size()) {}

void InputItem::FocusChanged(bool) { replaceOnType_ = true; }

void InputItem::SetValue(std::string value) {
  value_ = std::move(value);
  cursor_ = value_.size();
  offset_ = 0;
  replaceOnType_ = true;
}

void InputItem::Clear() {
  value_.clear();
  cursor_ = 0;
  offset_ = 0;
  replaceOnType_ = false;
}

std::string InputItem::Line(int areaWidth, int* cursorColumn) {
  const int w = fieldWidth_ == -1 ? areaWidth / 2 - 1 : fieldWidth_;
  const size_t width = static_cast<size_t>(std::max(w, 0));

  std::string visible;
  if (value_.size() < width) {
    offset_ = 0;
    visible = value_;
  } else {
    if (cursor_ > offset_ + width) offset_ = cursor_ - width;
    visible = value_.substr(std::min(offset_, value_.size()), width);
  }
  const size_t shown = visible.size();  // columns of the visible part
  if (masked_) visible.assign(shown, '*');
  // The value is shown as typed: its braces are text, not tags.
  visible = LiteralMarkup(visible);

  std::string label = label_;
  const int labelColumns = areaWidth - 5 - w;
  if (labelColumns > 0 && label.size() < static_cast<size_t>(labelColumns)) label.resize(labelColumns, ' ');

  std::string line = label + " [ ";
  if (IsFocused()) {
    line += replaceOnType_ ? "{bgcolor:white}{color:black}" : "{bgcolor:black}{color:white}";
    line += visible;
    line += "{/color}{/bgcolor}";
    if (shown < width) line.append(width - shown, ' ');
  } else {
    line += visible;
  }
  line += " ]";

  if (cursorColumn)
    *cursorColumn = areaWidth - 2 - w + static_cast<int>(cursor_ - std::min(offset_, cursor_));
  return line;
}

void InputItem::Draw(TextArea& area) {
  int column = 0;
  area.SetText(Line(area.Width(), &column));
  if (IsFocused()) area.SetCursor(column, 0);  // only the focused field owns the cursor
}

void InputItem::HandleKey(int key) {
  switch (key) {
    case KEY_HOME:
      cursor_ = 0;
      offset_ = 0;
      replaceOnType_ = false;
      return;
    case KEY_END:
      replaceOnType_ = false;
      if (!value_.empty()) cursor_ = value_.size();
      return;
    case KEY_LEFT:
      replaceOnType_ = false;
      if (cursor_ > 0) {
        if (cursor_ == offset_) --offset_;
        --cursor_;
      }
      return;
    case KEY_RIGHT:
      replaceOnType_ = false;
      if (cursor_ < value_.size()) ++cursor_;
      return;
    case KEY_DC:
      if (replaceOnType_) {
        Clear();
      } else if (cursor_ < value_.size()) {
        value_.erase(cursor_, 1);
      }
      return;
    case KEY_BACKSPACE:
    case 8:
      if (replaceOnType_) {
        Clear();
      } else if (cursor_ > 0) {
        value_.erase(cursor_ - 1, 1);
        --cursor_;
        if (cursor_ < offset_) {
          // Deleting back past the left edge of the field shows the value from its start
          // with the cursor at the end: operators know the field this way.
          offset_ = 0;
          cursor_ = value_.size();
        }
      }
      return;
    default:
      if (replaceOnType_) Clear();
      if (key >= 0 && key <= 255 && std::isprint(key)) {
        value_.insert(cursor_, 1, static_cast<char>(key));
        ++cursor_;
      }
      return;
  }
}

}  // namespace Konu
