// Window backgrounds and drawing attributes with whole pair numbers.
#include "ui/CursesStyle.h"

#include "app/Colors.h"

namespace Konu {

CursesStyle StyleOf(int background, int foreground) {
  return {ColorAttr(background, foreground) & ~A_COLOR, ColorPair(background, foreground)};
}

namespace {

// Sets the background through `set` (wbkgrnd: the window and every cell in it; SetOnly: the
// window alone), then the drawing attribute.
void SetBackground(WINDOW* window, int background, int foreground, int (*set)(WINDOW*, const cchar_t*)) {
  if (!window) return;
  CursesStyle style = StyleOf(background, foreground);
  wchar_t blank[] = L" ";
  cchar_t cell;
  setcchar(&cell, blank, style.attrs, 0, &style.pair);
  set(window, &cell);
  // Setting the background also makes it the window's drawing attribute, but through the
  // attribute word: a pair above 255 comes out as 255, and characters added later (the
  // scroll bar's) would draw in that pair. Set it again with the whole number.
  wattr_set(window, style.attrs, 0, &style.pair);
}

int SetOnly(WINDOW* window, const cchar_t* cell) {
  wbkgrndset(window, cell);
  return OK;
}

}  // namespace

void SetWindowBackground(WINDOW* window, int background, int foreground) {
  SetBackground(window, background, foreground, wbkgrnd);
}

void SetBlankWindowBackground(WINDOW* window, int background, int foreground) {
  SetBackground(window, background, foreground, SetOnly);
  if (window) werase(window);
}

void DrawFrame(WINDOW* window, OpenSide open) {
  if (!window) return;
  // The wide-character forms take their colour from the window's background cell, pair
  // number whole.
  wchar_t space[] = L" ";
  cchar_t blank;
  setcchar(&blank, space, A_NORMAL, 0, nullptr);
  const cchar_t* top = open == OpenSide::kTop ? &blank : WACS_HLINE;
  const cchar_t* bottom = open == OpenSide::kBottom ? &blank : WACS_HLINE;
  const cchar_t* upperLeft = open == OpenSide::kTop ? WACS_VLINE : WACS_ULCORNER;
  const cchar_t* upperRight = open == OpenSide::kTop ? WACS_VLINE : WACS_URCORNER;
  const cchar_t* lowerLeft = open == OpenSide::kBottom ? WACS_VLINE : WACS_LLCORNER;
  const cchar_t* lowerRight = open == OpenSide::kBottom ? WACS_VLINE : WACS_LRCORNER;
  wborder_set(window, WACS_VLINE, WACS_VLINE, top, bottom, upperLeft, upperRight, lowerLeft, lowerRight);
}

void DrawHorizontalLine(WINDOW* window, int row, int column, int length) {
  if (window) mvwhline_set(window, row, column, WACS_HLINE, length);
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
