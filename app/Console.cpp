// Process start-up and shutdown (being written).
#include "app/Console.h"

namespace Konu {
int ConsoleMain(int, char**) { return 0; }
}  // namespace Konu
