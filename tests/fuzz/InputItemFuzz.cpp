// Editing keys, focus changes and redraws at random widths on an input field: the cursor
// stays in the value and in the visible window, each key changes the value as its row of
// the editing table says, and the row shows the visible part as typed.
#include <curses.h>

#include <cctype>

#include "tests/fuzz/FuzzCheck.h"
#include "ui/InputItem.h"
#include "ui/Markup.h"

using namespace Konu;

namespace {

constexpr int kKeys[] = {KEY_HOME, KEY_END,  KEY_LEFT, KEY_RIGHT, KEY_DC, KEY_BACKSPACE,
                         8,        KEY_F(2), 9,        27,        -1,     1000};

// The row as the drawing pass shows it (tags take no room).
std::string Shown(const std::string& line) {
  std::string shown;
  for (const MarkupDrawOp& op :
       PlanMarkupDrawing(LayoutMarkup(1000, line, VariableTable({})), 1000, 1, 3, 0, true))
    if (op.kind == MarkupDrawOp::kWrite) shown += op.text;
  return shown;
}

void CheckKey(InputItem& item, int key) {
  const std::string before = item.Value();
  const size_t cursor = item.Cursor();
  const size_t offset = item.Offset();
  const bool replace = item.ReplaceOnType();
  item.HandleKey(key);
  const std::string& after = item.Value();
  FUZZ_CHECK(item.Cursor() <= after.size(), "cursor %zu past the value's %zu bytes", item.Cursor(),
             after.size());
  FUZZ_CHECK(item.Offset() <= item.Cursor(), "offset %zu right of cursor %zu", item.Offset(), item.Cursor());

  const bool printable = key >= 0 && key <= 255 && std::isprint(key);
  const bool moves = key == KEY_HOME || key == KEY_END || key == KEY_LEFT || key == KEY_RIGHT;
  if (moves) {
    FUZZ_CHECK(after == before && !item.ReplaceOnType(),
               "a movement key changed the value or kept the selection");
    if (key == KEY_HOME)
      FUZZ_CHECK(item.Cursor() == 0 && item.Offset() == 0, "Home left the cursor at %zu", item.Cursor());
    if (key == KEY_END && !after.empty())
      FUZZ_CHECK(item.Cursor() == after.size(), "End left the cursor inside");
    if (key == KEY_LEFT)
      FUZZ_CHECK(item.Cursor() == (cursor > 0 ? cursor - 1 : 0), "Left moved to %zu", item.Cursor());
    if (key == KEY_RIGHT)
      FUZZ_CHECK(item.Cursor() == std::min(cursor + 1, before.size()), "Right moved to %zu", item.Cursor());
  } else if (replace) {
    // The selected value goes first; a printable key then replaces it.
    FUZZ_CHECK(after == (printable ? std::string(1, static_cast<char>(key)) : std::string()),
               "key %d on a selected value left %zu bytes", key, after.size());
    FUZZ_CHECK(!item.ReplaceOnType(), "the selection survived a key");
  } else if (printable) {
    std::string want = before;
    want.insert(cursor, 1, static_cast<char>(key));
    FUZZ_CHECK(after == want && item.Cursor() == cursor + 1, "typing did not insert at the cursor");
  } else if (key == KEY_DC) {
    FUZZ_CHECK(after == (cursor < before.size() ? std::string(before).erase(cursor, 1) : before) &&
                   item.Cursor() == cursor,
               "Delete did not take the byte at the cursor");
  } else if (key == KEY_BACKSPACE || key == 8) {
    if (cursor == 0) {
      FUZZ_CHECK(after == before && item.Cursor() == 0, "Backspace at the start changed something");
    } else {
      FUZZ_CHECK(after == std::string(before).erase(cursor - 1, 1), "Backspace did not take the byte before");
      // Past the left edge of the field the cursor jumps to the end (kept on purpose).
      const size_t want = cursor - 1 < offset ? after.size() : cursor - 1;
      FUZZ_CHECK(item.Cursor() == want, "Backspace left the cursor at %zu, not %zu", item.Cursor(), want);
    }
  } else {
    FUZZ_CHECK(after == before && item.Cursor() == cursor, "key %d changed the value", key);
  }
}

void CheckLine(InputItem& item, int areaWidth) {
  int column = -1;
  const std::string line = item.Line(areaWidth, &column);
  const int w = item.FieldWidth() == -1 ? areaWidth / 2 - 1 : item.FieldWidth();
  if (w < 0) return;
  FUZZ_CHECK(item.Offset() <= item.Cursor() && item.Cursor() - item.Offset() <= static_cast<size_t>(w),
             "cursor %zu outside the field from %zu, %d wide", item.Cursor(), item.Offset(), w);
  FUZZ_CHECK(column == areaWidth - 2 - w + static_cast<int>(item.Cursor() - item.Offset()),
             "cursor column %d", column);
  std::string visible = item.Value().substr(item.Offset(), static_cast<size_t>(w));
  if (item.IsMasked()) visible.assign(visible.size(), '*');
  const std::string shown = Shown(line);
  const size_t open = shown.find(" [ ");
  FUZZ_CHECK(open != std::string::npos && shown.compare(open + 3, visible.size(), visible) == 0,
             "the field shows \"%s\", not \"%s\"", shown.c_str(), visible.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Fuzz::Input in(data, size);
  const int fieldWidth = in.Between(-1, 20);
  InputItem item("Name", std::string(in.Between(0, 30), 'v'), fieldWidth);
  item.SetMasked(in.Byte() & 1);
  while (!in.Empty()) {
    const uint8_t op = in.Byte();
    if (op < 96) {
      CheckKey(item, kKeys[op % std::size(kKeys)]);
    } else if (op < 240) {
      CheckKey(item, in.Byte());
    } else if (op < 248) {
      CheckLine(item, in.Between(1, 120));
    } else if (op < 252) {
      item.SetFocus(op & 1);
    } else {
      item.SetValue(std::string(in.Between(0, 40), static_cast<char>(in.Between(32, 126))));
      FUZZ_CHECK(item.Cursor() == item.Value().size() && item.Offset() == 0 && item.ReplaceOnType(),
                 "a new value is not selected with the cursor at its end");
    }
  }
  return 0;
}
