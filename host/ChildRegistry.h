// Every child process and worker thread the console starts, so that none outlives the
// console: a terminating signal kills the children and asks the workers to stop, and every
// way out of the process waits for the workers, reaps the children and then undoes what
// they had set aside.
#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <cstdint>
#include <functional>

namespace Konu {

// posix_spawn(pid, path, actions, attributes, argv, envp) (posix_spawnp with `searchPath`),
// recorded before any other thread can end the process. Returns 0 or the error number;
// ECANCELED once the console is ending (no child is started then).
int SpawnChild(pid_t* pid, const char* path, const posix_spawn_file_actions_t* actions,
               const posix_spawnattr_t* attributes, const char* const argv[], const char* const envp[],
               bool searchPath = false);

// waitpid(pid, status, block ? 0 : WNOHANG) for a recorded child, which is forgotten once it
// is reaped. The reaping is done under the record, so a child is never signalled after its
// process id was given back. A blocking wait goes on after EINTR; it gives -1 with ECHILD
// when EndChildren reaped the child first.
pid_t WaitChild(pid_t pid, int* status, bool block);

// SIGKILL to the child and to what it started (a shell's tools); it stays recorded until
// reaped.
void KillChild(pid_t pid);

// KillChild, and the child is forgotten without being reaped (it stays a zombie).
void KillAndForgetChild(pid_t pid);

// Asks every recorded worker to stop, then KillChild for every recorded child; no new child
// or worker from now on. For the moment a terminating signal arrives: whatever waits for a
// child returns at once. Safe from any thread.
void KillAllChildren();

// True once KillAllChildren ran: the console is ending.
bool ChildrenEnding();

// `undo` runs once in EndChildren, after the children are gone ("/etc/hosts" put back).
// At most a few; each must be safe from any thread.
void AtChildrenEnd(void (*undo)());

// A worker thread about to start. `stop` asks it to stop; it is called at most once by
// KillAllChildren, from any thread and with the record locked, so it must neither block nor
// call back in here. Gives false, recording nothing, once the console is ending: start no
// worker then. The worker itself calls WorkerEnded with `*id` as its last act.
bool AddWorker(uint64_t* id, std::function<void()> stop);
void WorkerEnded(uint64_t id);

// KillAllChildren, then waits for the workers to end and reaps the children, together for
// half a second at most, and runs the undo steps. A worker still running then is left behind
// (its host call ignored both the kill of its child and its stop), as is a child stuck in the
// kernel (to init). Every way out of the process calls it: ExitConsole, exit() through atexit,
// the signal thread's last resort and the terminate handler. Idempotent.
void EndChildren();

// EndChildren, then exit(status). The user-interface thread's way out: the workers are gone
// before exit() destroys the statics they use (the log, the host root, the host's state).
[[noreturn]] void ExitConsole(int status);

}  // namespace Konu
