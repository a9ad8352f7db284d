// The host management tool qal-cmd, run on behalf of the logged-in user (falling back to
// the console's own service account) or asked a yes/no question.
#pragma once

namespace Konu {

// The console's own service account: the fallback user and the user of boolean queries.
inline constexpr const char konuServiceUser[] = "konu";

// Runs `path` ("/bin/qal-cmd") with `argv` = {"qal-cmd", "-U", user, command, ...,
// nullptr}, no time limit, outputs and input as RunCommand. When the tool exits 255 (it
// cannot act as that user) it is logged and run once more as "konu"; each given output
// length is then set back to 256, so a caller capturing output gives buffers of at least
// 256 bytes. Returns the exit code of the last attempt, or -1.
int RunQalCmd(const char* path, const char* const argv[], char* out = nullptr, int* outLength = nullptr,
              char* err = nullptr, int* errLength = nullptr, const char* input = nullptr,
              int inputLength = 0);

// qal-cmd "internalsvc/refresh" as the logged-in user; the result is ignored.
void RefreshHostServices();

// Asks qal-cmd, as "konu" and within 120 seconds, the boolean query `query` (for example
// "qalsvc/auth/lockdown_is_enabled"). True exactly when the answer begins with "true";
// the exit code is logged but does not enter the answer.
bool QalCmdGetBool(const char* query);

}  // namespace Konu
