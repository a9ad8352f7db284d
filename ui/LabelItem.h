// Items that show a line of mark-up: plain labels, check boxes and radio buttons.
#pragma once

#include <string>

#include "ui/Item.h"

namespace Konu {

class LabelItem : public Item {
 public:
  LabelItem(std::string text, bool focusable) : Item(focusable), text_(std::move(text)) {}
  void Draw(TextArea& area) override;
  void SetText(std::string text) { text_ = std::move(text); }
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

// A label behind a two-state mark; the text shown is the mark for the state, then the label.
class MarkedItem : public LabelItem {
 public:
  void SetChecked(bool checked);
  void SetLabel(std::string label);
  bool IsChecked() const { return checked_; }
  const std::string& Label() const { return label_; }

 protected:
  MarkedItem(std::string label, bool checked, const char* checkedMark, const char* uncheckedMark);

 private:
  void Rebuild();
  std::string label_;
  bool checked_;
  const char* checkedMark_;
  const char* uncheckedMark_;
};

// "[X] label" or "[ ] label".
class CheckItem : public MarkedItem {
 public:
  explicit CheckItem(std::string label, bool checked = false)
      : MarkedItem(std::move(label), checked, "[X] ", "[ ] ") {}
};

// "(o) label" or "( ) label". Checking one item leaves the others of its group alone:
// keeping a group exclusive is the screen's business.
class RadioItem : public MarkedItem {
 public:
  explicit RadioItem(std::string label, bool checked = false)
      : MarkedItem(std::move(label), checked, "(o) ", "( ) ") {}
};

}  // namespace Konu
