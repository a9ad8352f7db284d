// Item: the focus flag and the enabled state.
#include "ui/Item.h"

namespace Konu {

void Item::SetFocus(bool focused) {
  if (focused == focused_) return;
  focused_ = focused;
  FocusChanged(focused);
}

void Item::SetEnabled(bool enabled) {
  enabled_ = enabled;
  foreground_ = enabled ? 0 : 6;
}

}  // namespace Konu
