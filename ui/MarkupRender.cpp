// The drawing pass into a TextArea's curses window.
#include <curses.h>

#include "app/Colors.h"
#include "ui/Markup.h"
#include "ui/TextArea.h"

namespace Konu {

void Render(TextArea& area, std::string_view laidOut) {
  WINDOW* window = area.Curses();
  if (!window) return;
  wattr_set(window, A_NORMAL, 0, nullptr);  // every pass starts in the area's own colours
  for (const MarkupDrawOp& op : PlanMarkupDrawing(laidOut, area.Width(), area.Height(), area.Background(),
                                                  area.Foreground(), area.IsActive())) {
    switch (op.kind) {
      case MarkupDrawOp::kWrite:
        mvwaddnstr(window, op.row, op.column, op.text.data(), static_cast<int>(op.text.size()));
        break;
      case MarkupDrawOp::kAttrOff:
        wattr_off(window, ColorAttr(op.background, op.foreground), nullptr);
        break;
      case MarkupDrawOp::kAttrOn:
        wattr_on(window, ColorAttr(op.background, op.foreground), nullptr);
        break;
    }
  }
  touchwin(window);
  wrefresh(window);
}

}  // namespace Konu
