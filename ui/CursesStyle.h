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
// The same background for a new top-level window, whose cells are all blanked: curses then
// fills the cells instead of comparing and re-rendering each one (wbkgd costs about twenty
// times as much per cell).
void SetBlankWindowBackground(WINDOW* window, int background, int foreground);

// Which side of a frame stays blank: the welcome screen draws one box across two windows.
enum class OpenSide { kNone, kTop, kBottom };

// Lines round the window in the window's own colours. box() and wborder() pass the colours
// through an attribute word, which holds pairs up to 255 only: on a 256-colour terminal every
// pair but those on a black background would be lost.
void DrawFrame(WINDOW* window, OpenSide open = OpenSide::kNone);
// A horizontal line of `length` cells from (row, column), colours kept the same way.
void DrawHorizontalLine(WINDOW* window, int row, int column, int length);

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
