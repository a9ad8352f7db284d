// The layout pass of screen texts: variables, word wrap and alignment, byte by byte.
#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>

#include "ui/Markup.h"
#include "ui/TextArea.h"

namespace Konu {

MarkupTag SplitTag(std::string_view tag) {
  size_t colon = tag.find(':');
  if (colon == std::string_view::npos) return {tag, tag};
  return {tag.substr(0, colon), tag.substr(colon + 1)};
}

std::string LiteralMarkup(std::string_view text) {
  std::string markup;
  markup.reserve(text.size());
  for (char c : text) {
    if (c == '{') {
      markup += kLiteralBrace;
    } else {
      markup.push_back(c);
    }
  }
  return markup;
}

namespace {

constexpr size_t kNoSpace = std::string::npos;

// One run of the layout pass. The recorded output indexes (alignStart_, lastSpace_) are
// deliberately not moved when spaces are inserted before them later: screens were laid
// out against that behaviour, so it stays.
class Layouter {
 public:
  Layouter(int width, const VariableTable& variables) : width_(width), free_(width), variables_(variables) {}

  std::string Run(std::string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
      char c = text[i];
      if (c == '{') {
        size_t close = text.find('}', i + 1);
        if (close == std::string_view::npos) {
          // An unterminated tag: passed on like an unknown one (the drawing pass drops it).
          out_.append(text.substr(i));
          break;
        }
        Tag(text.substr(i + 1, close - i - 1));
        i = close;
      } else if (c == '\n') {
        out_.push_back('\n');
        StartLine();
      } else if (std::isspace(static_cast<unsigned char>(c))) {
        Whitespace(c);
      } else {
        Visible(std::string_view(&text[i], 1));
      }
    }
    return std::move(out_);
  }

 private:
  enum class Mode { kNone, kRight, kCenter, kPadding };

  void StartLine() {
    free_ = width_;
    lastSpace_ = kNoSpace;
    wordLen_ = 0;
    alignStart_ = out_.size();
  }

  void Tag(std::string_view tag) {
    if (tag.empty()) return;
    if (tag == kLiteralBrace.substr(1, 1)) {
      Visible(kLiteralBrace);  // one column; the drawing pass shows the brace
      return;
    }
    MarkupTag parts = SplitTag(tag);
    if (parts.name == "align") {
      OpenAlign(parts.value);
    } else if (parts.name == "/align") {
      CloseAlign();
    } else if (const MarkupVariable* variable = variables_.Find(parts.name)) {
      std::string value = variable->provider ? variable->provider() : std::string();
      for (const char& b : value) {
        // No word wrap inside a value: a full line just breaks.
        if (free_ == 0) {
          out_.push_back('\n');
          free_ = width_;
          lastSpace_ = kNoSpace;
          wordLen_ = 0;
        }
        // A value is the host's data, shown as it is: its braces are no tags.
        Append(b == '{' ? kLiteralBrace : std::string_view(&b, 1));
      }
    } else {
      out_.push_back('{');
      out_.append(tag);
      out_.push_back('}');
    }
  }

  void OpenAlign(std::string_view value) {
    if (mode_ != Mode::kNone) return;  // alignments do not nest
    if (value == "right") {
      mode_ = Mode::kRight;
    } else if (value == "center") {
      mode_ = Mode::kCenter;
    } else if (value.substr(0, 8) == "padding:") {
      pad_ = std::strtol(std::string(value.substr(8)).c_str(), nullptr, 10);
      mode_ = Mode::kPadding;
    } else {
      return;
    }
    alignStart_ = out_.size();
  }

  void CloseAlign() {
    switch (mode_) {
      case Mode::kRight:
        out_.insert(alignStart_, static_cast<size_t>(std::max(free_, 0LL)), ' ');
        free_ = 0;
        break;
      case Mode::kCenter:
        out_.insert(alignStart_, static_cast<size_t>(std::max(free_, 0LL) / 2), ' ');
        free_ = 0;
        break;
      case Mode::kPadding:
        if (pad_ > 0) {
          long long fill = std::min(pad_, free_);
          if (fill > 0) out_.append(static_cast<size_t>(fill), ' ');
          free_ = free_ > pad_ ? free_ - pad_ : 0;
        }
        break;
      case Mode::kNone:
        break;
    }
    mode_ = Mode::kNone;
  }

  void Whitespace(char c) {
    if (free_ == 0) {
      // A full line: this whitespace becomes the line break.
      out_.push_back('\n');
      StartLine();
      return;
    }
    if (FieldFull()) return;
    lastSpace_ = out_.size();
    out_.push_back(c);
    --free_;
    wordLen_ = 0;
    CountPad();
  }

  // One visible column: a byte, or the literal-brace tag that stands for one.
  void Visible(std::string_view shown) {
    if (free_ == 0) {
      if (lastSpace_ != kNoSpace) {
        // Carry the word to the next line; the part before the break keeps its alignment.
        out_[lastSpace_] = '\n';
        if (mode_ == Mode::kRight) out_.insert(alignStart_, static_cast<size_t>(wordLen_), ' ');
        if (mode_ == Mode::kCenter) out_.insert(alignStart_, static_cast<size_t>(wordLen_ / 2), ' ');
        // The new line already holds the carried word.
        free_ = width_ - wordLen_;
      } else {
        // No whitespace on the line: the word is broken hard.
        out_.push_back('\n');
        free_ = width_;
      }
      alignStart_ = out_.size();
      lastSpace_ = kNoSpace;
      wordLen_ = 0;
    }
    Append(shown);
  }

  bool FieldFull() const { return mode_ == Mode::kPadding && pad_ == 0; }

  void Append(std::string_view shown) {
    if (FieldFull()) return;
    out_.append(shown);
    --free_;
    ++wordLen_;
    CountPad();
  }

  void CountPad() {
    if (pad_ > LLONG_MIN) --pad_;
  }

  long long width_;
  long long free_;
  const VariableTable& variables_;
  std::string out_;
  Mode mode_ = Mode::kNone;
  size_t alignStart_ = 0;
  size_t lastSpace_ = kNoSpace;
  long long wordLen_ = 0;
  long long pad_ = 0;
};

}  // namespace

std::string LayoutMarkup(int width, std::string_view text, const VariableTable& variables) {
  return Layouter(width, variables).Run(text);
}

std::string Layout(const TextArea& area, std::string_view text) {
  return LayoutMarkup(area.Width(), text, area.Variables());
}

}  // namespace Konu
