// Dialog: the layout of the standard modal box.
#include "ui/Dialog.h"

#include <curses.h>

#include "ui/CursesStyle.h"
#include "ui/Footers.h"
#include "ui/FormKeys.h"

namespace Konu {

Dialog::Dialog(Frame* owner, int width, int height, int headerHeight)
    : Frame(owner, (COLS - width) / 2, (LINES - height) / 2, width, height, 0, 7) {
  if (Curses()) {
    werase(Curses());
    DrawFrame(Curses());
  }
  const int bodyHeight = height - headerHeight;
  header_ = std::make_unique<Window>(this, 0, 0, width, headerHeight, 6, 7);
  body_ = std::make_unique<Window>(this, 0, headerHeight, width, bodyHeight, 3, 7);
  title_ = std::make_unique<TextArea>(header_.get(), 3, 1, width - 6, 1, 7);
  description_ = std::make_unique<TextArea>(header_.get(), 3, 3, width - 6, headerHeight - 4, 2);
  footer_ = std::make_unique<TextArea>(body_.get(), 2, bodyHeight - 2, width - 4, 1, 0);
  if (bodyHeight - 4 >= 1) {
    content_ = std::make_unique<Window>(body_.get(), 2, 1, width - 4, bodyHeight - 4, 3, 6);
  }
}

Dialog::~Dialog() = default;

void Dialog::SetActive(bool active) {
  if (active && Owner()) Owner()->Update();
  Frame::SetActive(active);
}

bool Dialog::AwaitF11(const std::function<void(int)>& otherKey) {
  SetFooter(kFooterF11OkCancel);
  for (;;) {
    const int key = GetKey(true);
    if (key == kKeyEsc) return false;
    if (key == KEY_F(11)) return true;
    if (otherKey) otherKey(key);
  }
}

int Dialog::RunList(ItemList& list, const std::function<void(int index)>& space,
                    const std::function<int()>& enter, const std::function<void(int)>& otherKey) {
  list.Draw();
  for (;;) {
    const int key = GetKey(true);
    if (key == KEY_DOWN) {
      list.Down();
    } else if (key == KEY_UP) {
      list.Up();
    } else if (key == ' ') {
      const int index = list.Focus().FocusedIndex();
      if (index < 0 || index >= static_cast<int>(list.Items().size())) continue;
      space(index);
      list.Draw();
    } else if (key == kKeyEsc) {
      return 0;
    } else if (IsEnterKey(key)) {
      const int answer = enter();
      if (answer >= 0) return answer;
    } else if (otherKey) {
      otherKey(key);
    }
  }
}

}  // namespace Konu
