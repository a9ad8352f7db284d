// A centred modal box: a header with title and description, a body with an optional
// content window for the dialog's list or text, and a key-help footer.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "ui/Frame.h"
#include "ui/ItemList.h"
#include "ui/TextArea.h"

namespace Konu {

class Dialog : public Frame {
 public:
  // Centred in the screen as it is now (COLS x LINES).
  Dialog(Frame* owner, int width, int height, int headerHeight);
  ~Dialog() override;
  // Brings the (dimmed) owner up to date first when activated, so the screen beneath is
  // current.
  void SetActive(bool active) override;

  void SetTitle(std::string_view text) { title_->SetText(text); }
  void SetText(std::string_view text) { description_->SetText(text); }
  void SetFooter(std::string_view text) { footer_->SetText(text); }

  // Where the dialog's ItemList or TextArea goes; null when the body has no room for it
  // (height - header height <= 4).
  Window* Content() const { return content_.get(); }
  Window& Header() const { return *header_; }
  Window& Body() const { return *body_; }
  TextArea& Title() const { return *title_; }
  TextArea& Description() const { return *description_; }
  TextArea& Footer() const { return *footer_; }

 protected:
  // The confirmation of a disruptive action: shows the F11 OK / Esc Cancel footer and waits
  // for one of the two keys; true for F11, false for Esc. Every other key goes to
  // `otherKey` when one is given, and is ignored otherwise.
  bool AwaitF11(const std::function<void(int)>& otherKey = nullptr);
  // The key loop of a dialog around one list: Down and Up move its focus, Space calls
  // `space` with the focused index and redraws the list, Esc answers 0, and Enter answers
  // what `enter` gives unless that is negative (the dialog stays). Every other key goes to
  // `otherKey` when one is given.
  int RunList(ItemList& list, const std::function<void(int index)>& space, const std::function<int()>& enter,
              const std::function<void(int)>& otherKey = nullptr);

 private:
  // Children before their parents, so they are destroyed first.
  std::unique_ptr<Window> header_;
  std::unique_ptr<Window> body_;
  std::unique_ptr<TextArea> title_;
  std::unique_ptr<TextArea> description_;
  std::unique_ptr<TextArea> footer_;
  std::unique_ptr<Window> content_;
};

}  // namespace Konu
