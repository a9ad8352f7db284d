// The layout pass of screen texts: alignment, padding, wrapping, variables and tags.
#include <gtest/gtest.h>

#include "ui/Markup.h"

namespace Konu {
namespace {

std::string Lay(int width, std::string_view text) {
  static VariableTable none({});
  return LayoutMarkup(width, text, none);
}

TEST(MarkupLayout, EachTextIsLaidOutByItsRule) {
  struct Case {
    const char* rule;
    int width;
    const char* text;
    const char* laidOut;
  };
  const Case cases[] = {
      {"a right-aligned footer ends at the right edge", 20,
       "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}",
       "          {color:black}<Enter>{/color} {color:dark-grey}OK{/color}"},
      {"centred text takes half the free columns", 10, "{align:center}abcd{/align}", "   abcd"},
      {"centred, odd free columns", 11, "{align:center}abcd{/align}", "   abcd"},
      {"centred after text", 10, "ab{align:center}cd{/align}", "ab   cd"},
      {"text after an alignment starts on the next line", 10, "{align:right}OK{/align}next",
       "        OK\nnext"},
      {"... after centred text too", 10, "{align:center}OK{/align}next", "    OK\nnext"},
      {"... its leading blank dropped", 10, "{align:right}OK{/align} next", "        OK\nnext"},
      {"... its newline not doubled", 10, "{align:right}OK{/align}\nnext", "        OK\nnext"},
      {"other align values are ignored", 10, "{align:left}ab{/align}", "ab"},
      {"a nested alignment is ignored", 5, "{align:right}a{align:center}b{/align}", "   ab"},
      {"a lone closing tag is ignored", 10, "a{/align}b", "ab"},
      {"padding fills a field of exactly its width", 20, "{align:padding:5}ab{/align}|", "ab   |"},
      {"padding cuts a longer text", 20, "{align:padding:3}abcdef{/align}|", "abc|"},
      {"padding 0 hides the text", 20, "{align:padding:0}hidden words{/align}shown", "shown"},
      {"padding cuts between words too", 20, "{align:padding:4}a b c{/align}|", "a b |"},
      {"padding is never wider than the room left", 5, "{align:padding:10}ab{/align}|", "ab   \n|"},
      {"a word longer than the width is broken hard", 4, "abcdefghij", "abcd\nefgh\nij"},
      {"... after a word that fits", 4, "ab cdefghij", "ab\ncdef\nghij"},
      {"whitespace at a full line is the break", 4, "abcd efgh", "abcd\nefgh"},
      {"a newline at a full line is one break", 4, "abcd\nef", "abcd\nef"},
      {"blank lines stay", 10, "ab\n\ncd", "ab\n\ncd"},
      {"a carried word counts on its new line", 10, "hello world again", "hello\nworld\nagain"},
      {"... and fits where it can", 11, "hello world again", "hello world\nagain"},
      // "ab cd" fills the line; at "e" the word "cd" moves down, two spaces (its length) go in
      // front of "ab", and the alignment goes on from "e", after the carried word.
      {"a wrap inside a right alignment shifts the part before the break", 5, "{align:right}ab cde{/align}",
       "  ab\ncd  e"},
      // The space recorded at index 1 is taken after three spaces were inserted in front of
      // it, so the break lands inside the inserted spaces, not between "a" and "b".
      {"recorded indexes are not moved by later insertions", 6, "{align:right}a b{/align}c", " \n a bc"},
      {"unknown tags pass through and take no columns", 4, "{unknown}abcd", "{unknown}abcd"},
      {"unknown colours too", 4, "ab{color:purple}cd", "ab{color:purple}cd"},
      {"an empty tag goes", 4, "a{}b", "ab"},
      {"an unterminated tag is left for the drawing pass to drop", 4, "ab{cd", "ab{cd"},
  };
  for (const Case& c : cases) EXPECT_EQ(Lay(c.width, c.text), c.laidOut) << c.rule;
}

TEST(MarkupLayout, VariablesAreExpandedWithoutWordWrap) {
  VariableTable table({"ip", "memory"});
  ASSERT_TRUE(table.SetProvider("ip", [] { return std::string("10.0.0.1"); }));
  EXPECT_EQ(LayoutMarkup(20, "IP: {ip}", table), "IP: 10.0.0.1");
  EXPECT_EQ(LayoutMarkup(6, "ab {ip}", table), "ab 10.\n0.0.1");
  EXPECT_EQ(LayoutMarkup(20, "[{memory}]", table), "[]");
  EXPECT_EQ(LayoutMarkup(20, "{align:padding:4}{ip}{/align}|", table), "10.0|");
  EXPECT_EQ(LayoutMarkup(20, "{align:right}{ip}{/align}", table), "            10.0.0.1");
  EXPECT_EQ(LayoutMarkup(20, "{servicetag}", table), "{servicetag}");
}

TEST(MarkupLayout, ProvidersAreCalledOnEveryPass) {
  VariableTable table({"ip"});
  int calls = 0;
  table.SetProvider("ip", [&calls] { return std::to_string(++calls); });
  EXPECT_EQ(LayoutMarkup(20, "{ip}", table), "1");
  EXPECT_EQ(LayoutMarkup(20, "{ip} {ip}", table), "2 3");
}

TEST(MarkupTables, StandardVariablesAllStartEmptyAndCanBeWired) {
  VariableTable& table = VariableTable::Standard();
  const char* names[] = {
      "ip",          "ssl-thumbprint", "ssh-dsa-fingerprint", "ssh-rsa-fingerprint", "orinproduct",
      "orinversion", "supportstart",   "supportperiod",       "servicetag",          "assettag",
      "BIOSversion", "BMCversion",     "CPLDversion",         "PLSAversion",         "memory"};
  EXPECT_EQ(table.Entries().size(), std::size(names));
  for (const char* name : names) {
    const MarkupVariable* variable = table.Find(name);
    ASSERT_NE(variable, nullptr) << name;
    EXPECT_EQ(variable->provider(), "") << name;
  }
  EXPECT_FALSE(table.SetProvider("hostname", [] { return std::string("x"); }));
  EXPECT_TRUE(table.SetProvider("memory", [] { return std::string("4 GiB"); }));
  EXPECT_EQ(LayoutMarkup(20, "{memory}", table), "4 GiB");
  EXPECT_TRUE(table.SetProvider("memory", nullptr));
  EXPECT_EQ(LayoutMarkup(20, "{memory}", table), "");
}

TEST(MarkupTables, ColourNames) {
  EXPECT_EQ(FindColor("white"), 7);
  EXPECT_EQ(FindColor("black"), 0);
  EXPECT_EQ(FindColor("dark-grey"), 6);
  EXPECT_EQ(FindColor("light-grey"), 2);
  EXPECT_EQ(FindColor("yellow"), 3);
  EXPECT_EQ(FindColor("red"), 1);
  EXPECT_EQ(FindColor("purple"), -1);
  EXPECT_EQ(FindColor("White"), -1);
}

}  // namespace
}  // namespace Konu
