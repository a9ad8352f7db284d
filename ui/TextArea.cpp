// TextArea: keeps its source text and shows it through the layout and drawing passes.
#include "ui/TextArea.h"

#include "ui/Markup.h"

namespace Konu {

TextArea::TextArea(Window* parent, int x, int y, int width, int height, int foreground)
    // Blank from the start, as every showing of its text leaves it before drawing.
    : Window(parent, x, y, width, height, -1, foreground, Start::kBlank),
      variables_(&VariableTable::Standard()) {}

TextArea::~TextArea() = default;

void TextArea::SetActive(bool active) {
  Window::SetActive(active);
  Show();
}

void TextArea::SetText(const char* text) { SetText(std::string_view(text ? text : "")); }

void TextArea::SetText(std::string_view text) {
  source_.assign(text);
  Show();
}

void TextArea::AppendText(const char* text) { AppendText(std::string_view(text ? text : "")); }

void TextArea::AppendText(std::string_view text) {
  source_.append(text);
  Show();
}

void TextArea::Show() {
  if (Curses()) werase(Curses());
  Render(*this, Layout(*this, source_));
}

}  // namespace Konu
