// Palette, colour pairs and the one function through which a colour becomes a curses
// attribute. Colour indexes: 0 black, 1 red, 2 light grey, 3 yellow, 6 dark grey, 7 white.
#pragma once

#include <curses.h>

namespace Konu {

// Once at start-up, after start_color.
void SetupColors();

// The attribute for wbkgd / wattr_on / wattr_off. Monochrome: A_STANDOUT for background 0
// or 6, otherwise 0; else COLOR_PAIR(foreground + COLORS * background + 1).
attr_t ColorAttr(int background, int foreground);

// The pair number behind ColorAttr: foreground + COLORS * background + 1, or 0 (the
// terminal's default pair) in monochrome. COLOR_PAIR keeps only the low 8 bits of a pair, so
// on a terminal with more than 8 colours the numbers for light backgrounds do not survive in
// an attribute word; drawing code there passes this number whole (wattr_set, setcchar with
// the extended-pair argument).
int ColorPair(int background, int foreground);

}  // namespace Konu
