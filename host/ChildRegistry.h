// Every child process the console starts, whichever thread starts it, so that none outlives
// the console: a terminating signal kills them all, and every way out of the process reaps
// them and then undoes what they or the console's threads had set aside.
#pragma once

#include <spawn.h>
#include <sys/types.h>

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

// KillChild for every recorded child, and no new child from now on. For the
// moment a terminating signal arrives: whatever waits for a child returns at once. Safe from
// any thread.
void KillAllChildren();

// True once KillAllChildren ran: the console is ending.
bool ChildrenEnding();

// `undo` runs once in EndChildren, after the children are gone ("/etc/hosts" put back).
// At most a few; each must be safe from any thread.
void AtChildrenEnd(void (*undo)());

// KillAllChildren, then reaps the children (a child that does not go within a moment is left
// to init) and runs the undo steps. Every way out of the process calls it: exit() through
// atexit, the signal thread's last resort and the terminate handler. Idempotent.
void EndChildren();

}  // namespace Konu
