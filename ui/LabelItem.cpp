// LabelItem, CheckItem and RadioItem.
#include "ui/LabelItem.h"

#include "ui/TextArea.h"

namespace Konu {

void LabelItem::Draw(TextArea& area) { area.SetText(text_); }

CheckItem::CheckItem(std::string label, bool checked)
    : LabelItem("", true), label_(std::move(label)), checked_(checked) {
  Rebuild();
}

void CheckItem::SetChecked(bool checked) {
  checked_ = checked;
  Rebuild();
}

void CheckItem::SetLabel(std::string label) {
  label_ = std::move(label);
  Rebuild();
}

void CheckItem::Rebuild() { SetText((checked_ ? "[X] " : "[ ] ") + label_); }

RadioItem::RadioItem(std::string label, bool checked)
    : LabelItem("", true), label_(std::move(label)), checked_(checked) {
  Rebuild();
}

void RadioItem::SetChecked(bool checked) {
  checked_ = checked;
  Rebuild();
}

void RadioItem::SetLabel(std::string label) {
  label_ = std::move(label);
  Rebuild();
}

void RadioItem::Rebuild() { SetText((checked_ ? "(o) " : "( ) ") + label_); }

}  // namespace Konu
