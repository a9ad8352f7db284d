// The two passes that show a screen text: layout (variables, word wrap, alignment) and
// drawing (colour tags, rows). Widths are counted in bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/MarkupTables.h"

namespace Konu {

class TextArea;

// A tag's text (between the braces) split at its first ':'; without one, name and value
// are both the whole tag.
struct MarkupTag {
  std::string_view name;
  std::string_view value;
};
MarkupTag SplitTag(std::string_view tag);

// The tag "{{}" shows one "{" and takes one column: the way data (what an operator typed)
// goes into a text without its braces being read as tags.
constexpr std::string_view kLiteralBrace = "{{}";

// `text` as mark-up that shows exactly `text`: every "{" becomes the literal-brace tag.
std::string LiteralMarkup(std::string_view text);

// The layout pass on its own: `text` laid out for an area `width` columns wide. The result
// still holds the colour tags and every tag the layout pass does not know.
std::string LayoutMarkup(int width, std::string_view text, const VariableTable& variables);

// One step of the drawing pass. Colours are (background, foreground) colour indexes.
struct MarkupDrawOp {
  enum Kind {
    kWrite,    // write `text` at (row, column)
    kAttrOff,  // turn the colour attribute of (background, foreground) off
    kAttrOn,   // turn the colour attribute of (background, foreground) on
  };
  Kind kind;
  int row = 0;
  int column = 0;
  std::string text;
  int background = 0;
  int foreground = 0;

  bool operator==(const MarkupDrawOp&) const = default;
};

// The drawing pass without curses: what to write where and which attributes to switch,
// for an area of the given size and colours. An inactive area switches no attributes.
std::vector<MarkupDrawOp> PlanMarkupDrawing(std::string_view laidOut, int width, int height, int background,
                                            int foreground, bool active);

// The layout pass for `area` (its width and its variable table).
std::string Layout(const TextArea& area, std::string_view text);

// The drawing pass into `area`'s curses window, then touch and refresh it.
void Render(TextArea& area, std::string_view laidOut);

}  // namespace Konu
