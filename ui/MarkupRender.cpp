// The drawing pass into a TextArea's curses window.
#include <curses.h>

#include "ui/CursesStyle.h"
#include "ui/Markup.h"
#include "ui/TextArea.h"

namespace Konu {

void Render(TextArea& area, std::string_view laidOut) {
  WINDOW* window = area.Curses();
  if (!window) return;
  AttributeState attributes(window);  // every pass starts in the area's own colours
  for (const MarkupDrawOp& op : PlanMarkupDrawing(laidOut, area.Width(), area.Height(), area.Background(),
                                                  area.Foreground(), area.IsActive())) {
    switch (op.kind) {
      case MarkupDrawOp::kWrite:
        mvwaddnstr(window, op.row, op.column, op.text.data(), static_cast<int>(op.text.size()));
        break;
      case MarkupDrawOp::kAttrOff:
        attributes.Off(op.background, op.foreground);
        break;
      case MarkupDrawOp::kAttrOn:
        attributes.On(op.background, op.foreground);
        break;
    }
  }
  touchwin(window);
  wnoutrefresh(window);  // sent with the rest of the change at the next paint
}

}  // namespace Konu
