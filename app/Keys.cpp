// The escape sequences taught to curses: function, cursor and editing keys as the console and
// common remote terminals send them, plus ESC-letter fallbacks for keyboards without them.
#include "app/Keys.h"

#include <curses.h>

namespace Konu {
namespace {

// In definition order. ESC R is a resize, so typing ESC then R ends the console like a real
// one. The ESC O series stops at F9 and sends ESC O Y for F12: no F10 or F11 there.
constexpr KeySequence kKeySequences[] = {
    {"\033R", KEY_RESIZE},

    {"\033[11~", KEY_F(1)},  {"\033[12~", KEY_F(2)},  {"\033[13~", KEY_F(3)},  {"\033[14~", KEY_F(4)},
    {"\033[15~", KEY_F(5)},  {"\033[17~", KEY_F(6)},  {"\033[18~", KEY_F(7)},  {"\033[19~", KEY_F(8)},
    {"\033[20~", KEY_F(9)},  {"\033[21~", KEY_F(10)}, {"\033[23~", KEY_F(11)}, {"\033[24~", KEY_F(12)},

    {"\0331", KEY_F(1)},     {"\0332", KEY_F(2)},     {"\0333", KEY_F(3)},     {"\0334", KEY_F(4)},
    {"\0335", KEY_F(5)},     {"\0336", KEY_F(6)},     {"\0337", KEY_F(7)},     {"\0338", KEY_F(8)},
    {"\0339", KEY_F(9)},     {"\0330", KEY_F(10)},    {"\033!", KEY_F(11)},    {"\033@", KEY_F(12)},

    {"\033h", KEY_HOME},     {"\033k", KEY_END},      {"\033+", KEY_IC},       {"\033-", KEY_DC},
    {"\033?", KEY_PPAGE},    {"\033/", KEY_NPAGE},

    {"\033[M", KEY_F(1)},    {"\033[N", KEY_F(2)},    {"\033[O", KEY_F(3)},    {"\033[P", KEY_F(4)},
    {"\033[Q", KEY_F(5)},    {"\033[R", KEY_F(6)},    {"\033[S", KEY_F(7)},    {"\033[T", KEY_F(8)},
    {"\033[U", KEY_F(9)},    {"\033[V", KEY_F(10)},   {"\033[W", KEY_F(11)},   {"\033[X", KEY_F(12)},

    {"\033OP", KEY_F(1)},    {"\033OQ", KEY_F(2)},    {"\033OR", KEY_F(3)},    {"\033OS", KEY_F(4)},
    {"\033OT", KEY_F(5)},    {"\033OU", KEY_F(6)},    {"\033OV", KEY_F(7)},    {"\033OW", KEY_F(8)},
    {"\033OX", KEY_F(9)},    {"\033OY", KEY_F(12)},

    {"\033OA", KEY_UP},      {"\033OB", KEY_DOWN},    {"\033OC", KEY_RIGHT},   {"\033OD", KEY_LEFT},
    {"\033[A", KEY_UP},      {"\033[B", KEY_DOWN},    {"\033[C", KEY_RIGHT},   {"\033[D", KEY_LEFT},

    {"\033[2~", KEY_IC},     {"\033[3~", KEY_DC},     {"\033[1~", KEY_HOME},   {"\033[4~", KEY_END},
    {"\033[5~", KEY_PPAGE},  {"\033[6~", KEY_NPAGE},

    {"\177", KEY_BACKSPACE},
};

}  // namespace

const KeySequence* KeySequences(int* count) {
  if (count != nullptr) *count = static_cast<int>(sizeof(kKeySequences) / sizeof(kKeySequences[0]));
  return kKeySequences;
}

void DefineKeys() {
  for (const KeySequence& sequence : kKeySequences) define_key(sequence.bytes, sequence.key);
}

}  // namespace Konu
