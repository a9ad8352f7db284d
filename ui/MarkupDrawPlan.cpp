// The drawing pass of screen texts as a plan: rows at newlines, colours at colour tags.
#include <algorithm>

#include "ui/Markup.h"

namespace Konu {

std::vector<MarkupDrawOp> PlanMarkupDrawing(std::string_view laidOut, int width, int height, int background,
                                            int foreground, bool active) {
  std::vector<MarkupDrawOp> ops;
  if (height <= 0) return ops;

  int row = 0;
  int column = 0;
  std::string pending;
  int currentBackground = background;
  int currentForeground = foreground;
  bool changed = false;  // a colour change is in force
  bool attrOn = false;   // an attribute was turned on by this pass
  int onBackground = background;
  int onForeground = foreground;

  // Text is cut at the area's right edge: curses would carry the rest onto the next row.
  auto writePending = [&] {
    if (pending.empty()) return;
    int room = width - column;
    if (room > 0) {
      ops.push_back({MarkupDrawOp::kWrite, row, column,
                     pending.substr(0, std::min(pending.size(), static_cast<size_t>(room)))});
    }
    // Past the edge nothing more shows on this row; the column stops there.
    column = room > 0 && pending.size() < static_cast<size_t>(room)
                 ? column + static_cast<int>(pending.size())
                 : std::max(width, column);
    pending.clear();
  };
  auto turnOn = [&](int bg, int fg, bool replacing) {
    if (replacing && attrOn) {
      ops.push_back({MarkupDrawOp::kAttrOff, 0, 0, {}, onBackground, onForeground});
    }
    ops.push_back({MarkupDrawOp::kAttrOn, 0, 0, {}, bg, fg});
    attrOn = true;
    onBackground = bg;
    onForeground = fg;
  };

  for (size_t i = 0; i < laidOut.size(); ++i) {
    char c = laidOut[i];
    if (c == '\n') {
      writePending();
      ++row;
      column = 0;
      if (row == height) return ops;  // the rest is not shown
      continue;
    }
    if (c != '{') {
      pending.push_back(c);
      continue;
    }
    size_t close = laidOut.find('}', i + 1);
    if (close == std::string_view::npos) break;  // an unterminated tag hides the rest
    const std::string_view text = laidOut.substr(i + 1, close - i - 1);
    i = close;
    if (text == kLiteralBrace.substr(1, 1)) {
      pending.push_back('{');  // a brace shown as it stands
      continue;
    }
    MarkupTag tag = SplitTag(text);
    bool isColor = tag.name == "color" || tag.name == "bgcolor";
    bool isClose = tag.name == "/color" || tag.name == "/bgcolor";
    if (!isColor && !isClose) continue;  // not a drawing tag: takes no room
    writePending();
    if (isColor) {
      int index = FindColor(tag.value);
      if (index < 0) continue;  // an unknown colour changes nothing
      if (tag.name == "color") {
        currentForeground = index;
      } else {
        currentBackground = index;
      }
      changed = true;
      if (active) turnOn(currentBackground, currentForeground, true);
    } else if (changed) {
      // Only the attribute goes back to the area's; the current colours stay, so a later
      // {color:x} starts from the background set before.
      changed = false;
      if (active) turnOn(background, foreground, false);
    }
  }

  writePending();
  return ops;
}

}  // namespace Konu
