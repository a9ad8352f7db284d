// Process start-up and shutdown of the console.
#pragma once

namespace Konu {

// Everything main does: options, signal thread, terminal, logging, pid file, curses, the
// first screen run modally, and the shutdown sequence. Returns the process status.
int ConsoleMain(int argc, char** argv);

}  // namespace Konu
