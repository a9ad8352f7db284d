// Screen texts through the layout and the drawing plan: no shown line is wider than its area,
// the plan writes only inside the area and shows exactly the laid-out lines that fit, and
// layout makes up no text.
#include <map>
#include <vector>

#include "tests/fuzz/FuzzCheck.h"
#include "ui/Markup.h"

using namespace Konu;

namespace {

// The laid-out text's lines as the drawing pass shows them: tags take no room except the
// literal brace, which shows "{", and an unterminated tag hides the rest.
std::vector<std::string> ShownLines(std::string_view laidOut) {
  std::vector<std::string> lines(1);
  for (size_t i = 0; i < laidOut.size(); ++i) {
    if (laidOut[i] == '{') {
      size_t close = laidOut.find('}', i + 1);
      if (close == std::string_view::npos) break;
      if (laidOut.substr(i, close + 1 - i) == kLiteralBrace) lines.back().push_back('{');
      i = close;
    } else if (laidOut[i] == '\n') {
      lines.emplace_back();
    } else {
      lines.back().push_back(laidOut[i]);
    }
  }
  return lines;
}

std::map<char, int> NonBlank(std::string_view s) {
  std::map<char, int> counts;
  for (char c : s) {
    if (!std::isspace(static_cast<unsigned char>(c))) ++counts[c];
  }
  return counts;
}

// The values of the variables the text names, once per use.
std::string Expansions(std::string_view text, const VariableTable& variables) {
  std::string values;
  for (size_t open = text.find('{'); open != std::string_view::npos; open = text.find('{', open + 1)) {
    size_t close = text.find('}', open + 1);
    if (close == std::string_view::npos) break;
    if (const MarkupVariable* v = variables.Find(SplitTag(text.substr(open + 1, close - open - 1)).name))
      values += v->provider();
    open = close;
  }
  return values;
}

const VariableTable& Variables() {
  // A value with blanks in it: values are never word-wrapped, only broken at the edge.
  static VariableTable table = [] {
    VariableTable t({"ip", "memory"});
    t.SetProvider("ip", [] { return std::string("192.0.2.17"); });
    t.SetProvider("memory", [] { return std::string("16 GiB of memory"); });
    return t;
  }();
  return table;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Fuzz::Input in(data, size);
  const int width = in.Between(1, 100);
  const int height = in.Between(1, 30);
  const uint8_t look = in.Byte();
  const bool active = look & 1;
  const int background = (look >> 1) & 7, foreground = (look >> 4) & 7;
  const std::string text = in.Rest();

  const std::string laid = LayoutMarkup(width, text, Variables());
  const std::vector<std::string> lines = ShownLines(laid);
  // Alignment keeps its recorded indexes when it inserts spaces, which can push a line past
  // the edge; the drawing cuts those. Every other line fits.
  if (text.find("{align") == std::string::npos) {
    for (size_t i = 0; i < lines.size(); ++i)
      FUZZ_CHECK(lines[i].size() <= static_cast<size_t>(width), "width %d: line %zu is %zu wide", width, i,
                 lines[i].size());
  }

  // Layout adds only blanks and line breaks; every other byte comes from the text or a value.
  std::map<char, int> have = NonBlank(text + Expansions(text, Variables()));
  for (const auto& [c, n] : NonBlank(laid)) FUZZ_CHECK(n <= have[c], "layout made up '%c'", c);

  std::vector<std::string> drawn(static_cast<size_t>(height));
  for (const MarkupDrawOp& op : PlanMarkupDrawing(laid, width, height, background, foreground, active)) {
    if (op.kind != MarkupDrawOp::kWrite) {
      FUZZ_CHECK(active, "an inactive area switched a colour");
      continue;
    }
    FUZZ_CHECK(op.row >= 0 && op.row < height && op.column >= 0 &&
                   op.column + op.text.size() <= static_cast<size_t>(width),
               "write of %zu bytes at (%d,%d) outside %dx%d", op.text.size(), op.row, op.column, width,
               height);
    std::string& row = drawn[static_cast<size_t>(op.row)];
    FUZZ_CHECK(static_cast<size_t>(op.column) == row.size(), "write at column %d after %zu drawn", op.column,
               row.size());
    FUZZ_CHECK(op.text.find('\n') == std::string::npos, "a line break drawn as text");
    row += op.text;
  }
  for (size_t r = 0; r < drawn.size(); ++r) {
    const std::string expected =
        r < lines.size() ? lines[r].substr(0, static_cast<size_t>(width)) : std::string();
    FUZZ_CHECK(drawn[r] == expected, "row %zu drawn \"%s\", laid out \"%s\"", r, drawn[r].c_str(),
               expected.c_str());
  }

  // A zero or negative width (a terminal too small for the area) must not break the passes.
  (void)PlanMarkupDrawing(LayoutMarkup(width - 100, text, Variables()), width - 100, height, 0, 7, active);
  return 0;
}
