// Random screen texts through the layout pass: line widths, nothing lost, nothing made up.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "ui/Markup.h"

namespace Konu {
namespace {

struct Generated {
  std::string text;
  std::string expandedVisible;  // every byte the text shows, variables expanded, tags removed
  std::string expansions;       // the variables' values, once per use
};

class TextGenerator {
 public:
  explicit TextGenerator(unsigned seed) : random_(seed) {}

  int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

  std::string Word(int maxLength) {
    std::string word;
    int length = Between(1, maxLength);
    for (int i = 0; i < length; ++i) word.push_back(static_cast<char>('a' + Between(0, 25)));
    return word;
  }

  // Words, whitespace, newlines, colour and unknown tags and variables; with `aligned`,
  // also alignment and padding tags and stray braces.
  Generated Text(bool aligned, const std::string& ipValue) {
    Generated out;
    int tokens = Between(0, 40);
    for (int i = 0; i < tokens; ++i) {
      int kind = Between(0, aligned ? 11 : 7);
      std::string word;
      switch (kind) {
        case 0:
        case 1:
        case 2:
          word = Word(Between(0, 3) == 0 ? 30 : 8);
          out.text += word;
          out.expandedVisible += word;
          break;
        case 3:
          out.text += Between(0, 4) == 0 ? "\t" : " ";
          break;
        case 4:
          out.text += "\n";
          break;
        case 5:
          out.text += Between(0, 1) ? "{color:red}" : "{/color}";
          break;
        case 6:
          out.text += Between(0, 1) ? "{unknown}" : "{bgcolor:black}";
          break;
        case 7:
          out.text += "{ip}";
          out.expandedVisible += ipValue;
          out.expansions += ipValue;
          break;
        case 8:
          out.text += Between(0, 1) ? "{align:right}" : "{align:center}";
          break;
        case 9:
          out.text += "{align:padding:" + std::to_string(Between(-3, 12)) + "}";
          break;
        case 10:
          out.text += "{/align}";
          break;
        default:
          out.text += Between(0, 1) ? "}" : "{";
          break;
      }
    }
    return out;
  }

 private:
  std::mt19937 random_;
};

// Lines of the laid-out text as they show (tags removed).
std::vector<std::string> ShownLines(const std::string& laidOut) {
  std::vector<std::string> lines(1);
  bool inTag = false;
  for (char c : laidOut) {
    if (c == '{') inTag = true;
    if (!inTag) {
      if (c == '\n') {
        lines.emplace_back();
      } else {
        lines.back().push_back(c);
      }
    }
    if (c == '}') inTag = false;
  }
  return lines;
}

std::map<char, int> NonBlankCounts(const std::string& s) {
  std::map<char, int> counts;
  for (char c : s) {
    if (!std::isspace(static_cast<unsigned char>(c))) ++counts[c];
  }
  return counts;
}

std::string WithoutBlanks(const std::string& s) {
  std::string out;
  for (char c : s) {
    if (!std::isspace(static_cast<unsigned char>(c))) out.push_back(c);
  }
  return out;
}

TEST(MarkupLayoutProperty, PlainTextFitsItsWidth) {
  TextGenerator generator(20240611);
  for (int round = 0; round < 4000; ++round) {
    const int width = generator.Between(1, 30);
    VariableTable variables({"ip"});
    const std::string ip = generator.Between(0, 2) ? generator.Word(12) : std::string();
    variables.SetProvider("ip", [ip] { return ip; });
    Generated text = generator.Text(false, ip);

    std::string laid = LayoutMarkup(width, text.text, variables);
    std::vector<std::string> lines = ShownLines(laid);
    SCOPED_TRACE("width " + std::to_string(width) + ", text \"" + text.text + "\"");

    // No line is wider than its area, a line that a carried word starts included.
    for (const std::string& line : lines) ASSERT_LE(line.size(), static_cast<size_t>(width)) << line;

    // Wrapping only moves and drops whitespace: the other bytes all arrive, in order.
    std::string shown;
    for (const std::string& line : lines) shown += line;
    ASSERT_EQ(WithoutBlanks(shown), WithoutBlanks(text.expandedVisible));
  }
}

TEST(MarkupLayoutProperty, AlignmentsNeverMakeUpTextAtAnyWidth) {
  TextGenerator generator(77);
  for (int round = 0; round < 4000; ++round) {
    const int width = generator.Between(-2, 30);
    VariableTable variables({"ip"});
    const std::string ip = generator.Word(10);
    variables.SetProvider("ip", [ip] { return ip; });
    Generated text = generator.Text(true, ip);
    SCOPED_TRACE("width " + std::to_string(width) + ", text \"" + text.text + "\"");

    std::string laid = LayoutMarkup(width, text.text, variables);
    // Layout inserts only spaces and newlines; every other byte comes from the text or a
    // variable (a stale index may turn a byte into a newline, so bytes can be lost).
    std::map<char, int> have = NonBlankCounts(text.text + text.expansions);
    for (const auto& [c, n] : NonBlankCounts(laid)) ASSERT_LE(n, have[c]) << "made up '" << c << "'";
  }
}

TEST(MarkupLayoutProperty, AlignedWordsLandAtTheirPlace) {
  TextGenerator generator(5);
  for (int round = 0; round < 2000; ++round) {
    const int width = generator.Between(1, 40);
    const std::string word = generator.Word(width);
    const bool right = generator.Between(0, 1);
    std::string text = std::string(right ? "{align:right}" : "{align:center}") + word + "{/align}after";
    SCOPED_TRACE("width " + std::to_string(width) + ", text \"" + text + "\"");

    std::vector<std::string> lines = ShownLines(LayoutMarkup(width, text, VariableTable({})));
    ASSERT_GE(lines.size(), 2u);
    const size_t lead = right ? width - word.size() : (width - word.size()) / 2;
    EXPECT_EQ(lines[0], std::string(lead, ' ') + word);
    EXPECT_EQ(lines[1], std::string("after").substr(0, static_cast<size_t>(width)));
  }
}

}  // namespace
}  // namespace Konu
