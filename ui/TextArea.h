// A rectangle that shows one mark-up text, laid out and drawn again whenever the text or
// the active state changes.
#pragma once

#include <string>
#include <string_view>

#include "ui/MarkupTables.h"
#include "ui/Window.h"

namespace Konu {

class TextArea : public Window {
 public:
  // The background is the parent's.
  TextArea(Window* parent, int x, int y, int width, int height, int foreground);
  ~TextArea() override;
  // As Window, then the text is shown again, so colour tags apply only while active.
  void SetActive(bool active) override;

  // Store (or append to) the source text, erase, lay out and draw. A null C string is "".
  void SetText(const char* text);
  void SetText(std::string_view text);
  void AppendText(const char* text);
  void AppendText(std::string_view text);

  const std::string& Text() const { return source_; }
  const VariableTable& Variables() const { return *variables_; }
  // The variables this area expands (the standard table unless replaced; not owned).
  void SetVariables(const VariableTable& variables) { variables_ = &variables; }

 private:
  void Show();

  std::string source_;
  const VariableTable* variables_;
};

}  // namespace Konu
