// Window: position, colours, the curses window and the child list; activation, the cursor
// that top-level windows save while they are dimmed, and the one paint per change.
#include "ui/Window.h"

#include <algorithm>

#include "ui/CursesStyle.h"

namespace Konu {
namespace {

// Colours of a window without parent whose constructor got -1.
constexpr int kTopBackground = 0;
constexpr int kTopForeground = 7;

// The dimmed look: dark grey on black.
constexpr int kDimBackground = 0;
constexpr int kDimForeground = 6;

WINDOW* MakeCursesWindow(Window* parent, int x, int y, int width, int height) {
  if (width <= 0 || height <= 0) return nullptr;  // curses would read 0 as "to the edge"
  if (!parent) {
    // curses clears the whole terminal on the first refresh of a full-screen window; the
    // console paints over what is there instead (a clear costs a slow line a full repaint).
    WINDOW* window = newwin(height, width, y, x);
    if (window) clearok(window, FALSE);
    return window;
  }
  if (!parent->Curses()) return nullptr;
  return subwin(parent->Curses(), height, width, y, x);
}

}  // namespace

Window::CursorState& Window::ScreenCursor() {
  static CursorState cursor;
  return cursor;
}

Window::Window(Window* parent, int x, int y, int width, int height, int background, int foreground)
    : Window(parent, x, y, width, height, background, foreground, Start::kOverParent) {}

Window::Window(Window* parent, int x, int y, int width, int height, int background, int foreground,
               Start start)
    : x_(x + (parent ? parent->x_ : 0)),
      y_(y + (parent ? parent->y_ : 0)),
      width_(width),
      height_(height),
      parent_(parent),
      window_(MakeCursesWindow(parent, x_, y_, width, height)) {
  ResolveColors(background, foreground);
  if (parent_) parent_->children_.push_back(this);
  // A top-level window is new and blank; a child takes its colours over what its parent
  // drew there (a dialog's box stays round its content window), unless it starts blank.
  if (parent_ && start == Start::kOverParent) {
    SetWindowBackground(window_.get(), background_, foreground_);
  } else {
    SetBlankWindowBackground(window_.get(), background_, foreground_);
  }
}

Window::Window(int x, int y, int width, int height, int background, int foreground)
    : Window(nullptr, x, y, width, height, background, foreground) {}

Window::~Window() {
  // Children that outlive this window become top-level ones rather than point at it.
  for (Window* child : children_) child->parent_ = nullptr;
  if (parent_) std::erase(parent_->children_, this);
}

void Window::ResolveColors(int background, int foreground) {
  background_ = background != -1 ? background : parent_ ? parent_->background_ : kTopBackground;
  foreground_ = foreground != -1 ? foreground : parent_ ? parent_->foreground_ : kTopForeground;
}

void Window::ApplyBackground(int background, int foreground) {
  SetWindowBackground(window_.get(), background, foreground);
}

void Window::SetActive(bool active) {
  active_ = active;
  CursorState& cursor = ScreenCursor();
  if (active) {
    ApplyBackground(background_, foreground_);
    for (Window* child : children_) child->SetActive(true);
    Update();
    if (!parent_) {
      ShowCursor(saved_.visible);
      if (saved_.visible) {
        cursor.column = saved_.column;
        cursor.row = saved_.row;
      }
    }
  } else {
    if (!parent_) {
      saved_ = cursor;
      ShowCursor(false);
    }
    ApplyBackground(kDimBackground, kDimForeground);
    for (Window* child : children_) child->SetActive(false);
    Update();
  }
  flushinp();
}

void Window::SetColors(int background, int foreground) {
  ResolveColors(background, foreground);
  if (!active_) return;
  ApplyBackground(background_, foreground_);
  for (Window* child : children_) child->SetColors(background_, foreground_);
}

void Window::SetCursor(int column, int row) {
  CursorState& cursor = ScreenCursor();
  cursor.column = x_ + column;
  cursor.row = y_ + row;
}

void Window::ShowCursor(bool visible) { ScreenCursor().visible = visible; }

void Window::Redraw() {
  if (window_.get()) wredrawln(window_.get(), 0, height_);
  for (Window* child : children_) child->Redraw();
}

void Window::Redraw(int first, int count) {
  if (window_.get()) wredrawln(window_.get(), first, count);
}

void Window::Update() {
  if (!window_.get()) return;
  touchwin(window_.get());
  wnoutrefresh(window_.get());
}

void Window::Clear() {
  if (window_.get()) werase(window_.get());
}

void Window::ClearFramed(OpenSide open) {
  if (!window_.get()) return;
  werase(window_.get());
  DrawFrame(window_.get(), open);
}

void Window::RepaintAll() { clearok(curscr, TRUE); }

void Window::Paint() {
  const CursorState& cursor = ScreenCursor();
  // Hidden before the update and shown after it, so the cursor never wanders visibly.
  if (!cursor.visible) curs_set(0);
  if (newscr) {
    // A hidden cursor stays wherever the update leaves it: moving it would cost bytes.
    leaveok(newscr, cursor.visible ? FALSE : TRUE);
    if (cursor.visible) wmove(newscr, cursor.row, cursor.column);
  }
  doupdate();
  if (cursor.visible) curs_set(1);
}

void Window::DeleteChildren() {
  while (!children_.empty()) delete children_.front();
}

}  // namespace Konu
