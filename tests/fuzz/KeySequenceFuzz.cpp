// Random bytes typed into curses with the console's key table: every table sequence arrives
// as its key, every other byte as itself, and nothing is lost, held back or made up.
#include <curses.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <vector>

#include "app/Keys.h"
#include "tests/fuzz/FuzzCheck.h"

using namespace Konu;

namespace {

int typing[2];  // the keyboard: the fuzzer writes, curses reads

// A terminal with no key capabilities of its own, so only the table decodes sequences.
void StartCurses() {
  if (pipe(typing) != 0) std::abort();
  fcntl(typing[1], F_SETFL, O_NONBLOCK);
  FILE* in = fdopen(typing[0], "r");
  FILE* out = fopen("/dev/null", "w");
  if (newterm("dumb", out, in) == nullptr) std::abort();
  cbreak();
  noecho();
  keypad(stdscr, TRUE);
  meta(stdscr, TRUE);  // bytes above 127 as typed, whatever the terminal description says
  set_escdelay(1);     // the whole input is in the pipe before reading starts
  DefineKeys();
}

// What the keys must be: the table's sequences never prefix one another, so a sequence
// starting at a byte is the only reading; a carriage return reads as a newline.
std::vector<int> Expected(const std::string& bytes) {
  int count = 0;
  const KeySequence* table = KeySequences(&count);
  std::vector<int> keys;
  for (size_t i = 0; i < bytes.size();) {
    int key = -1;
    for (int s = 0; s < count && key < 0; ++s) {
      size_t n = std::strlen(table[s].bytes);
      if (bytes.compare(i, n, table[s].bytes) == 0) {
        key = table[s].key;
        i += n;
      }
    }
    if (key < 0) {
      key = static_cast<unsigned char>(bytes[i++]);
      if (key == '\r') key = '\n';
    }
    keys.push_back(key);
  }
  return keys;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  StartCurses();
  int count = 0;
  const KeySequence* table = KeySequences(&count);
  for (int a = 0; a < count; ++a)
    for (int b = 0; b < count; ++b)
      FUZZ_CHECK(a == b || std::strncmp(table[a].bytes, table[b].bytes, std::strlen(table[a].bytes)) != 0,
                 "sequence %d is a prefix of sequence %d", a, b);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string bytes(reinterpret_cast<const char*>(data), std::min<size_t>(size, 512));
  if (write(typing[1], bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
  std::vector<int> got;
  wtimeout(stdscr, 0);
  for (int key; (key = wgetch(stdscr)) != ERR;) got.push_back(key);
  const std::vector<int> want = Expected(bytes);
  FUZZ_CHECK(got.size() == want.size(), "%zu keys read, %zu typed", got.size(), want.size());
  for (size_t i = 0; i < got.size(); ++i)
    FUZZ_CHECK(got[i] == want[i], "key %zu is %d, typed %d", i, got[i], want[i]);
  return 0;
}
