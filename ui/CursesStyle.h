// Colours as curses draws them: the attribute bits and the whole pair number of a
// (background, foreground) pair, so that pair numbers above 255 (terminals with many
// colours) are not cut down to another pair inside an attribute word.
#pragma once

#include <curses.h>

namespace Konu {

struct CursesStyle {
  attr_t attrs = A_NORMAL;  // without the colour bits
  int pair = 0;
};

// What ColorAttr(background, foreground) stands for.
CursesStyle StyleOf(int background, int foreground);

// wbkgd(window, ColorAttr(background, foreground)) with the whole pair number.
void SetWindowBackground(WINDOW* window, int background, int foreground);

// The attribute state of a window being drawn, switched the way wattr_on and wattr_off
// switch an attribute word, and applied with the whole pair number.
class AttributeState {
 public:
  explicit AttributeState(WINDOW* window);  // starts from no attribute, the default pair
  void On(int background, int foreground);
  void Off(int background, int foreground);

 private:
  void Apply();
  WINDOW* window_;
  attr_t attrs_ = A_NORMAL;
  int pair_ = 0;
};

}  // namespace Konu
