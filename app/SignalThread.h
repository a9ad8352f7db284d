// The signal thread: the six handled signals, blocked in every thread, become one byte each
// on a pipe that key reading polls.
#pragma once

namespace Konu {

// Blocks SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2 and SIGWINCH for the process,
// creates the pipe (its read end goes to Runtime::signalReadFd) and starts the detached
// thread. Exits with status 1 when the pipe or the thread cannot be made. A terminating
// signal that the user-interface thread has not acted on within 1.5 seconds ends the
// process from the signal thread, the terminal restored as far as it can be.
void StartSignalThread();

// The byte a signal becomes (1 SIGUSR1, 2 SIGUSR2, 3 SIGWINCH, 4 SIGHUP/SIGINT/SIGQUIT/
// SIGTERM: a hang-up ends the console like SIGTERM), or 0 for any other signal.
unsigned char SignalByte(int signal);

}  // namespace Konu
