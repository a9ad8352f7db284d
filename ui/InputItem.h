// An input field in a list row: a label and an editable value shown through a window of
// the field's width, optionally masked.
#pragma once

#include <string>

#include "ui/Item.h"

namespace Konu {

class InputItem : public Item {
 public:
  // `fieldWidth` -1: half the row's width minus one. The cursor starts at the end and the
  // whole value is selected (the first printable key replaces it).
  InputItem(std::string label, std::string value, int fieldWidth);
  // Gaining or losing the focus selects the whole value again.
  void FocusChanged(bool focused) override;
  // Sets the row's text; when focused, puts the screen cursor on the editing position.
  void Draw(TextArea& area) override;

  void SetValue(std::string value);
  void SetLabel(std::string label) { label_ = std::move(label); }
  void SetMasked(bool masked) { masked_ = masked; }
  // Editing keys: Home, End, Left, Right, Delete, Backspace (KEY_BACKSPACE or 8); any other
  // printable key is typed at the cursor. No length limit: screens check values.
  void HandleKey(int key);

  // The row's mark-up for a row `areaWidth` columns wide, scrolling the visible part so
  // that the cursor is in it; *cursorColumn gets the cursor's column in the row.
  std::string Line(int areaWidth, int* cursorColumn);

  const std::string& Label() const { return label_; }
  const std::string& Value() const { return value_; }
  int FieldWidth() const { return fieldWidth_; }
  bool IsMasked() const { return masked_; }
  size_t Cursor() const { return cursor_; }
  size_t Offset() const { return offset_; }
  bool ReplaceOnType() const { return replaceOnType_; }

 private:
  void Clear();

  std::string label_;
  std::string value_;
  int fieldWidth_;
  bool masked_ = false;
  size_t cursor_;      // byte index into the value
  size_t offset_ = 0;  // byte index of the first visible byte
  bool replaceOnType_ = true;
};

}  // namespace Konu
