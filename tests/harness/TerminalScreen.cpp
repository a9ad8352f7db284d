// Test terminal: reading the emulator's screen back as text and cell colours.
#include <stdexcept>
#include <string>

#include "tests/harness/Terminal.h"
#include "tests/harness/TerminalImpl.h"

namespace KonuTest {

namespace {

// The second half of a double-width character holds this instead of a character.
constexpr uint32_t kWideContinuation = 0xffffffffu;

void AppendUtf8(std::string& out, uint32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xc0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3f));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xe0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
    out += static_cast<char>(0x80 | (c & 0x3f));
  } else if (c < 0x110000) {
    out += static_cast<char>(0xf0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3f));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
    out += static_cast<char>(0x80 | (c & 0x3f));
  } else {
    out += '?';
  }
}

// A colour as a palette index: the default colour is -1; a direct colour that matches no
// palette entry is -2.
int PaletteIndex(VTerm* vt, VTermColor color, bool foreground) {
  if (foreground ? VTERM_COLOR_IS_DEFAULT_FG(&color) : VTERM_COLOR_IS_DEFAULT_BG(&color)) {
    return -1;
  }
  if (VTERM_COLOR_IS_INDEXED(&color)) return color.indexed.idx;
  const VTermState* state = vterm_obtain_state(vt);
  for (int i = 0; i < 256; ++i) {
    VTermColor entry;
    vterm_state_get_palette_color(state, i, &entry);
    if (entry.rgb.red == color.rgb.red && entry.rgb.green == color.rgb.green &&
        entry.rgb.blue == color.rgb.blue) {
      return i;
    }
  }
  return -2;
}

}  // namespace

void Terminal::Impl::CheckPosition(int row, int col) const {
  if (row < 0 || row >= rows || col < 0 || col >= cols) {
    throw std::out_of_range("Terminal: position " + std::to_string(row) + "," + std::to_string(col) +
                            " is off the " + std::to_string(rows) + "x" + std::to_string(cols) + " screen");
  }
}

std::string Terminal::Impl::RowText(int row, int col, int count, std::vector<int>* columns) const {
  CheckPosition(row, col);
  if (count < 0 || col + count > cols) CheckPosition(row, col + count - 1);
  std::string text;
  for (int c = col; c < col + count;) {
    VTermScreenCell cell;
    vterm_screen_get_cell(screen, VTermPos{row, c}, &cell);
    if (cell.chars[0] == 0 || cell.chars[0] == kWideContinuation) {
      text += ' ';
    } else {
      for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && cell.chars[i] != 0; ++i) {
        AppendUtf8(text, cell.chars[i]);
      }
    }
    if (columns != nullptr) columns->resize(text.size(), c);
    // A double-width character is written once; it covers the next column too.
    c += (cell.chars[0] != 0 && cell.chars[0] != kWideContinuation && cell.width > 1) ? cell.width : 1;
  }
  return text;
}

std::string Terminal::Row(int row) const { return impl_->RowText(row, 0, impl_->cols, nullptr); }

std::string Terminal::Region(int row, int col, int rows, int cols) const {
  if (rows <= 0 || cols <= 0) throw std::invalid_argument("Terminal::Region: empty region");
  impl_->CheckPosition(row + rows - 1, col + cols - 1);
  std::string text;
  for (int r = row; r < row + rows; ++r) {
    if (r > row) text += '\n';
    text += impl_->RowText(r, col, cols, nullptr);
  }
  return text;
}

std::string Terminal::Screen() const { return Region(0, 0, impl_->rows, impl_->cols); }

CellColors Terminal::Colors(int row, int col) const {
  impl_->CheckPosition(row, col);
  VTermScreenCell cell;
  vterm_screen_get_cell(impl_->screen, VTermPos{row, col}, &cell);
  CellColors colors;
  colors.foreground = PaletteIndex(impl_->vt, cell.fg, true);
  colors.background = PaletteIndex(impl_->vt, cell.bg, false);
  colors.reverse = cell.attrs.reverse != 0;
  colors.bold = cell.attrs.bold != 0;
  return colors;
}

bool Terminal::Find(std::string_view text, int* row, int* col) const {
  if (text.empty()) return false;
  for (int r = 0; r < impl_->rows; ++r) {
    std::vector<int> columns;
    std::string line = impl_->RowText(r, 0, impl_->cols, &columns);
    size_t at = line.find(text);
    if (at == std::string::npos) continue;
    if (row != nullptr) *row = r;
    if (col != nullptr) *col = columns[at];
    return true;
  }
  return false;
}

void Terminal::CursorPosition(int* row, int* col) const {
  VTermPos pos;
  vterm_state_get_cursorpos(vterm_obtain_state(impl_->vt), &pos);
  if (row != nullptr) *row = pos.row;
  if (col != nullptr) *col = pos.col;
}

}  // namespace KonuTest
