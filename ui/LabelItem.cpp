// LabelItem and the marked items (check boxes, radio buttons).
#include "ui/LabelItem.h"

#include "ui/TextArea.h"

namespace Konu {

void LabelItem::Draw(TextArea& area) { area.SetText(text_); }

MarkedItem::MarkedItem(std::string label, bool checked, const char* checkedMark, const char* uncheckedMark)
    : LabelItem("", true),
      label_(std::move(label)),
      checked_(checked),
      checkedMark_(checkedMark),
      uncheckedMark_(uncheckedMark) {
  Rebuild();
}

void MarkedItem::SetChecked(bool checked) {
  checked_ = checked;
  Rebuild();
}

void MarkedItem::SetLabel(std::string label) {
  label_ = std::move(label);
  Rebuild();
}

void MarkedItem::Rebuild() { SetText((checked_ ? checkedMark_ : uncheckedMark_) + label_); }

}  // namespace Konu
