// Session-level operations that key reading and the welcome screen share.
#pragma once

#include <string>

namespace Konu {

// The integer advanced option "/UserVars/KonuTimeOut", or 600 when it is missing, not an
// integer option, or its read throws. The session's idle timer keeps a copy of it.
unsigned GetKonuTimeout();

// Sets "/UserVars/KonuTimeOut" to `seconds`; a missing or non-integer option, or a host
// failure, is ignored.
void SetKonuTimeout(unsigned seconds);

// Sets the session flag; when `on`, reads the idle time-out again.
void SetSessionActive(bool on);

// Records the logged-in user and whether a smart card carrying that name is present
// (the smart-card session flag). A reader that cannot be asked counts as no card.
void SetLoggedInUser(const std::string& name);

// A card user id is kept (a card was found outside a session).
bool CardUserPresent();

// Outside a session: remember the user id of the smart card present (log when found).
// Inside a smart-card session: exit(0) when that user's card is gone.
void CheckSmartCard();

}  // namespace Konu
