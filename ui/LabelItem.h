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

// "[X] label" or "[ ] label".
class CheckItem : public LabelItem {
 public:
  explicit CheckItem(std::string label, bool checked = false);
  void SetChecked(bool checked);
  void SetLabel(std::string label);
  bool IsChecked() const { return checked_; }
  const std::string& Label() const { return label_; }

 private:
  void Rebuild();
  std::string label_;
  bool checked_;
};

// "(o) label" or "( ) label". Checking one item leaves the others of its group alone:
// keeping a group exclusive is the screen's business.
class RadioItem : public LabelItem {
 public:
  explicit RadioItem(std::string label, bool checked = false);
  void SetChecked(bool checked);
  void SetLabel(std::string label);
  bool IsChecked() const { return checked_; }
  const std::string& Label() const { return label_; }

 private:
  void Rebuild();
  std::string label_;
  bool checked_;
};

}  // namespace Konu
