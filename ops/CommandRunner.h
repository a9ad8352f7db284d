// The command runner. Run a host executable with a clean environment, feed it input,
// wait for it (optionally with a time limit) and collect what it wrote.
#pragma once

namespace Konu {

// Runs the host program at `path` (an absolute host path such as "/bin/sh", resolved
// through HostPath) with the null-terminated argument vector `argv` (element 0 the short
// name, e.g. "sh"). The child's environment is exactly "PYTHONHOME=/" and a PATH of the
// host's tool folders alone, so that nothing runs the machine's own command of a tool's name.
//
// Each output stream is captured when its buffer and in-out length are both given: on
// entry the capacity, on return the bytes read (-1 after a read error). No terminating
// zero is added. Output is read while the child runs, so a child that writes a lot never
// blocks; bytes beyond the capacity, and output nobody asked for, are read and dropped.
// On the user-interface thread a terminating signal during the wait kills the child and
// ends the console (status 0).
//
// `input` (if given) is written to the child's standard input, which is then closed.
// `timeLimit` in whole seconds; 0 or less waits without limit. A child still running
// when the limit expires is killed with SIGKILL, logged, and left unreaped.
//
// Returns the child's exit code 0..255, or -1 when no child could be started (errno set),
// it died of a signal, it was killed for its time limit, or the wait failed.
int RunCommand(const char* path, const char* const argv[], char* out = nullptr, int* outLength = nullptr,
               char* err = nullptr, int* errLength = nullptr, const char* input = nullptr,
               int inputLength = 0, int timeLimit = 0);

// Runs `path` as RunCommand does, without captured output (it is read and dropped while
// the child runs), input or time limit, and also watches `stopFd` while waiting: once it is
// readable (or its other end is closed) the child is killed and reaped and the call returns
// -1 at once. For worker threads whose owner must be able to end a run at any moment.
int RunCommandUntil(const char* path, const char* const argv[], int stopFd);

// RunCommand("/bin/sh", {"sh", "-c", command}): no outputs, no input, no time limit.
// Absolute host paths inside `command` are placed on this machine as the program's own path
// is; bare command names are found on the child's PATH (the simulated root's folders when
// simulated).
int RunShell(const char* command);

}  // namespace Konu
