// The attribute reset curses writes after every update, made as short as the terminal allows.
#pragma once

namespace Konu {

// Once at start-up, after newterm and after the emergency restore has copied the terminal's
// own sgr0. Drops the character-set switch from the loaded sgr0 when curses never needs it
// there; otherwise changes nothing.
void TrimAttributeReset();

}  // namespace Konu
