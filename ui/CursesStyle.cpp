// Window backgrounds and drawing attributes with whole pair numbers.
#include "ui/CursesStyle.h"

#include "app/Colors.h"

namespace Konu {

CursesStyle StyleOf(int background, int foreground) {
  return {ColorAttr(background, foreground) & ~A_COLOR, ColorPair(background, foreground)};
}

void SetWindowBackground(WINDOW* window, int background, int foreground) {
  if (!window) return;
  CursesStyle style = StyleOf(background, foreground);
  wchar_t blank[] = L" ";
  cchar_t cell;
  setcchar(&cell, blank, style.attrs, 0, &style.pair);
  wbkgrnd(window, &cell);
}

AttributeState::AttributeState(WINDOW* window) : window_(window) { Apply(); }

void AttributeState::On(int background, int foreground) {
  CursesStyle style = StyleOf(background, foreground);
  attrs_ |= style.attrs;
  if (style.pair > 0) pair_ = style.pair;
  Apply();
}

void AttributeState::Off(int background, int foreground) {
  CursesStyle style = StyleOf(background, foreground);
  attrs_ &= ~style.attrs;
  if (style.pair > 0) pair_ = 0;
  Apply();
}

void AttributeState::Apply() {
  if (window_) wattr_set(window_, attrs_, 0, &pair_);
}

}  // namespace Konu
