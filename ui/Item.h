// One row of an ItemList: focus, enabled state and colours; subclasses draw themselves.
#pragma once

namespace Konu {

class TextArea;

class Item {
 public:
  // `focusable` false for headings and spacer lines.
  explicit Item(bool focusable) : focusable_(focusable) {}
  // Called when the focus flag changes.
  virtual void FocusChanged(bool /*focused*/) {}
  virtual ~Item() = default;
  // Draws the item as mark-up into its row.
  virtual void Draw(TextArea& area) = 0;
  // Stores the flag and calls FocusChanged when it differs.
  virtual void SetFocus(bool focused);

  // A disabled item is drawn dark grey and skipped by Up and Down.
  void SetEnabled(bool enabled);

  bool IsFocusable() const { return focusable_; }
  bool IsFocused() const { return focused_; }
  bool IsEnabled() const { return enabled_; }
  int Background() const { return background_; }
  int Foreground() const { return foreground_; }

 private:
  bool focusable_;
  bool focused_ = false;
  bool enabled_ = true;
  int background_ = 3;
  int foreground_ = 0;
};

}  // namespace Konu
