// The palette, the colour pairs and the mapping from a (background, foreground) pair of
// colour indexes to a curses attribute.
#include "app/Colors.h"

#include "app/Runtime.h"

namespace Konu {
namespace {

struct ColorDefinition {
  short index;
  short red, green, blue;  // 0-1000
};

// Redefined in this order when the terminal allows it; 0 (black) keeps its own value.
constexpr ColorDefinition kRedefinedColors[] = {
    {3, 1000, 800, 0},      // yellow
    {6, 334, 334, 334},     // dark grey
    {2, 667, 667, 667},     // light grey
    {7, 1000, 1000, 1000},  // white
    {1, 1000, 0, 0},        // red
};

// Every colour a window, item or mark-up text may name; 4 and 5 are never used.
constexpr int kWorkingSet[] = {7, 0, 3, 2, 6, 1};

int PairNumber(int background, int foreground) { return foreground + COLORS * background + 1; }

}  // namespace

void SetupColors() {
  use_default_colors();
  if (!can_change_color()) {
    Runtime::Get().monochrome = true;
    return;
  }
  for (const ColorDefinition& color : kRedefinedColors) {
    init_color(color.index, color.red, color.green, color.blue);
  }
  // Pair numbers are computed, not allocated, so ColorAttr needs no lookup. When COLORS is
  // large against COLOR_PAIRS (a linux console has 8 colours but pairs 0-63 only, so white on
  // white, pair 64, is out) curses refuses the out-of-range pairs; the refusal is ignored and
  // those combinations draw in the terminal's default pair. The int form of init_pair keeps a
  // large pair number from being truncated into another, valid pair.
  for (int background : kWorkingSet) {
    for (int foreground : kWorkingSet) {
      (void)init_extended_pair(PairNumber(background, foreground), foreground, background);
    }
  }
}

attr_t ColorAttr(int background, int foreground) {
  if (Runtime::Get().monochrome) {
    // Black and dark-grey areas (frames, the dimmed state, the right-hand panes) stand out;
    // the rest is plain.
    return (background == 0 || background == 6) ? A_STANDOUT : 0;
  }
  return COLOR_PAIR(PairNumber(background, foreground));
}

int ColorPair(int background, int foreground) {
  return Runtime::Get().monochrome ? 0 : PairNumber(background, foreground);
}

}  // namespace Konu
