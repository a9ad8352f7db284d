// The escape sequences taught to curses so that function, cursor and editing keys work on
// the console and on common remote terminals.
#pragma once

namespace Konu {

struct KeySequence {
  const char* bytes;
  int key;  // curses key code
};

// The table, in the order it is defined.
const KeySequence* KeySequences(int* count);

// Once at start-up: define_key for every sequence of the table, in its order.
void DefineKeys();

}  // namespace Konu
