// sgr0 on xterm-like terminals ("\E(B\E[m") and on the Linux console ("\E[m^O") carries a
// copy of rmacs, the switch back to the ordinary character set. curses writes sgr0 (after
// the default-colour reset) at the end of every update whose last cell had a colour, which
// is nearly every key: "\E[39;49m\E(B\E[m", 14 of the 25 bytes a typed character costs on a
// serial line. With sgr defined, curses never relies on sgr0 to leave the alternate set: it
// writes rmacs itself before sgr0, and sgr names the set each time. So the copy is dropped
// from the description curses reads, in place; it only ever gets shorter.
//
// Start-up has already written the whole sgr0 (newterm resets the terminal with it), and the
// emergency restore keeps its own copy, so a terminal left in the alternate set by whatever
// ran before is still put right at both ends.
#include "app/AttributeReset.h"

#include <curses.h>
#include <term.h>

#include <cstring>

namespace Konu {
namespace {

char* Capability(const char* name) {
  char* text = tigetstr(const_cast<char*>(name));
  return text == reinterpret_cast<char*>(-1) || text == nullptr || *text == '\0' ? nullptr : text;
}

}  // namespace

void TrimAttributeReset() {
  char* reset = Capability("sgr0");
  const char* leaveAlternate = Capability("rmacs");
  if (!reset || !leaveAlternate || !Capability("sgr")) return;
  const size_t length = strlen(reset);
  const size_t cut = strlen(leaveAlternate);
  if (cut >= length) return;
  // Only a copy at either end: one in the middle could be part of another sequence.
  char* at = nullptr;
  if (strncmp(reset, leaveAlternate, cut) == 0) {
    at = reset;
  } else if (strcmp(reset + length - cut, leaveAlternate) == 0) {
    at = reset + length - cut;
  } else {
    return;
  }
  memmove(at, at + cut, strlen(at + cut) + 1);
}

}  // namespace Konu
