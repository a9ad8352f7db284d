// A rectangle of the screen with colours and child windows: the base of every widget.
#pragma once

#include <vector>

#include "ui/CursesStyle.h"
#include "ui/CursesWindow.h"

namespace Konu {

class Window {
 public:
  // A child of `parent`: x and y are relative to the parent, and the curses window is a
  // subwindow sharing the parent's cells. A colour of -1 takes the parent's.
  Window(Window* parent, int x, int y, int width, int height, int background, int foreground);
  // A top-level window (its own curses window).
  Window(int x, int y, int width, int height, int background, int foreground);
  // How a new child starts: over what its parent drew there, in its own colours, or blank.
  enum class Start { kOverParent, kBlank };
  // A child that starts as `start` says.
  Window(Window* parent, int x, int y, int width, int height, int background, int foreground, Start start);
  // Removes the window from its parent's list. The children are not deleted: whoever made
  // them does that (before this window, so that their subwindows go first).
  virtual ~Window();
  // Active: own colours, children active. Inactive: the dimmed look (0, 6) on this window
  // and every descendant. A top-level window saves the cursor when it goes inactive and
  // restores it when it comes back. Typed-ahead keys are discarded either way.
  virtual void SetActive(bool active);

  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Stores the colours (-1 = the parent's); when active, applies them and passes them down
  // to every descendant.
  void SetColors(int background, int foreground);
  // The screen cursor goes to this window's position plus the offsets (or is shown or
  // hidden) at the next Paint.
  void SetCursor(int column, int row);
  void ShowCursor(bool visible);
  // Marks every row of this window and its descendants for redrawing.
  void Redraw();
  // Marks `count` rows from `first` for redrawing: curses forgets what the terminal shows
  // there, so it moves no other row onto them.
  void Redraw(int first, int count);
  // Touches every row and stages the window for the next Paint (nothing is sent yet).
  void Update();
  // Blanks the window in its colours; ClearFramed then draws the lines round it, the `open`
  // side left blank.
  void Clear();
  void ClearFramed(OpenSide open = OpenSide::kNone);
  // The next Paint sends every cell again, whatever the terminal is thought to show (what
  // the kernel wrote over the screen goes).
  static void RepaintAll();
  // Sends what every Update staged since the last Paint to the terminal in one update,
  // with the cursor where the focused field put it. The key reader paints before it waits;
  // a screen that shows progress before a long step paints itself.
  static void Paint();
  // Deletes the children one by one: only for children made with `new` and owned by no one
  // else.
  void DeleteChildren();

  int X() const { return x_; }  // absolute screen column
  int Y() const { return y_; }  // absolute screen row
  int Width() const { return width_; }
  int Height() const { return height_; }
  int Background() const { return background_; }
  int Foreground() const { return foreground_; }
  bool IsActive() const { return active_; }
  Window* Parent() const { return parent_; }
  const std::vector<Window*>& Children() const { return children_; }
  WINDOW* Curses() const { return window_.get(); }

 private:
  struct CursorState {
    bool visible = false;
    int column = 0;
    int row = 0;
  };
  static CursorState& ScreenCursor();
  void ApplyBackground(int background, int foreground);
  void ResolveColors(int background, int foreground);

  int x_;
  int y_;
  int width_;
  int height_;
  int background_ = 0;
  int foreground_ = 7;
  Window* parent_;
  std::vector<Window*> children_;
  bool active_ = true;
  CursorState saved_;  // top-level windows only
  CursesWindow window_;
};

}  // namespace Konu
