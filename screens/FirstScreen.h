// The first screen the console runs after start-up.
#pragma once

namespace Konu {

// Builds the first screen, runs it modally and deletes it.
void RunFirstScreen();

}  // namespace Konu
