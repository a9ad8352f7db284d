// Test terminal: keys by name, sent as the bytes an xterm-256color terminal sends.
#include <string>

#include "tests/harness/Terminal.h"
#include "tests/harness/TerminalImpl.h"

namespace KonuTest {

namespace {

struct NamedKey {
  const char* name;
  const char* bytes;
  // Sent instead while the program has cursor keys in application mode (as curses sets
  // them with keypad()); null when the mode makes no difference.
  const char* applicationBytes;
};

constexpr NamedKey kNamedKeys[] = {
    {"F1", "\x1bOP", nullptr},
    {"F2", "\x1bOQ", nullptr},
    {"F3", "\x1bOR", nullptr},
    {"F4", "\x1bOS", nullptr},
    {"F5", "\x1b[15~", nullptr},
    {"F6", "\x1b[17~", nullptr},
    {"F7", "\x1b[18~", nullptr},
    {"F8", "\x1b[19~", nullptr},
    {"F9", "\x1b[20~", nullptr},
    {"F10", "\x1b[21~", nullptr},
    {"F11", "\x1b[23~", nullptr},
    {"F12", "\x1b[24~", nullptr},
    {"Up", "\x1b[A", "\x1bOA"},
    {"Down", "\x1b[B", "\x1bOB"},
    {"Right", "\x1b[C", "\x1bOC"},
    {"Left", "\x1b[D", "\x1bOD"},
    {"Home", "\x1b[H", "\x1bOH"},
    {"End", "\x1b[F", "\x1bOF"},
    {"Insert", "\x1b[2~", nullptr},
    {"Delete", "\x1b[3~", nullptr},
    {"PgUp", "\x1b[5~", nullptr},
    {"PgDn", "\x1b[6~", nullptr},
    {"Backspace", "\x7f", nullptr},
    {"Tab", "\t", nullptr},
    // The terminal sends CR; curses in nl mode hands it over as '\n'.
    {"Enter", "\r", nullptr},
    {"Esc", "\x1b", nullptr},
    {"Space", " ", nullptr},
};

const NamedKey* FindKey(std::string_view name) {
  for (const auto& key : kNamedKeys) {
    if (name == key.name) return &key;
  }
  return nullptr;
}

}  // namespace

void Terminal::Press(std::string_view key) {
  const NamedKey* named = FindKey(key);
  if (named == nullptr) {
    impl_->WriteAll(key);
    return;
  }
  impl_->Drain();  // the mode the program has set by now decides the cursor keys' bytes
  bool application = named->applicationBytes != nullptr && impl_->ApplicationCursorKeys();
  impl_->WriteAll(application ? named->applicationBytes : named->bytes);
}

void Terminal::Type(std::string_view text) { impl_->WriteAll(text); }

std::string Terminal::KeyBytes(std::string_view key, bool applicationCursorKeys) {
  const NamedKey* named = FindKey(key);
  if (named == nullptr) return std::string(key);
  if (applicationCursorKeys && named->applicationBytes != nullptr) return named->applicationBytes;
  return named->bytes;
}

}  // namespace KonuTest
