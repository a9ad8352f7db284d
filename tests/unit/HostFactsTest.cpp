// Host facts tidied for one screen line.
#include <gtest/gtest.h>

#include "ops/HostFacts.h"

namespace Konu {
namespace {

TEST(CollapseWhitespace, TrimsAndJoinsRunsWithOneBlank) {
  struct Case {
    const char* in;
    const char* out;
  };
  const Case cases[] = {
      {"", ""},
      {" \t\n\v\f\r", ""},
      {"Acme", "Acme"},
      {"  Acme   Server\t\t9000  ", "Acme Server 9000"},
      {"Sample(R)\nServer(R)\r\nCPU", "Sample(R) Server(R) CPU"},
      {"a b", "a b"},
      {"\tx", "x"},
      {"x\t", "x"},
      {"caf\xc3\xa9  \xc3\xa9t\xc3\xa9", "caf\xc3\xa9 \xc3\xa9t\xc3\xa9"},  // bytes above 127 are text
  };
  for (const Case& c : cases) EXPECT_EQ(CollapseWhitespace(c.in), c.out) << '"' << c.in << '"';
}

}  // namespace
}  // namespace Konu
