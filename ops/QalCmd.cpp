// qal-cmd on behalf of the session user, with its one fallback to the service account.
#include "ops/QalCmd.h"

#include <syslog.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "app/Runtime.h"
#include "host/Log.h"
#include "ops/CommandRunner.h"

namespace Konu {
namespace {

constexpr int kUserIndex = 2;
constexpr int kCommandIndex = 3;
constexpr int kRetryOutputCapacity = 256;
constexpr int kQueryTimeLimit = 120;

const char* OrEmpty(const char* text) { return text ? text : ""; }

}  // namespace

int RunQalCmd(const char* path, const char* const argv[], char* out, int* outLength, char* err,
              int* errLength, const char* input, int inputLength) {
  int rc = RunCommand(path, argv, out, outLength, err, errLength, input, inputLength, 0);
  if (rc != 255) return rc;

  std::vector<const char*> asService;
  for (const char* const* arg = argv; *arg; ++arg) asService.push_back(*arg);
  asService.push_back(nullptr);
  if (asService.size() <= kUserIndex + 1) return rc;  // no user element to replace

  const char* command = asService.size() > kCommandIndex + 1 ? asService[kCommandIndex] : nullptr;
  Log(LOG_INFO, "Unable to execute command qal-cmd %s using user %s. Using user %s", OrEmpty(command),
      OrEmpty(asService[kUserIndex]), konuServiceUser);
  asService[kUserIndex] = konuServiceUser;
  if (outLength) *outLength = kRetryOutputCapacity;
  if (errLength) *errLength = kRetryOutputCapacity;
  return RunCommand(path, asService.data(), out, outLength, err, errLength, input, inputLength, 0);
}

void RefreshHostServices() {
  std::string user = Runtime::Get().session.user;
  const char* argv[] = {"qal-cmd", "-U", user.c_str(), "internalsvc/refresh", nullptr};
  // Nothing waits for the answer, but a refresh that failed is worth a line.
  if (int status = RunQalCmd("/bin/qal-cmd", argv); status != 0)
    Log(LOG_WARNING, "qal-cmd internalsvc/refresh failed with status %d", status);
}

bool QalCmdGetBool(const char* query) {
  std::unique_ptr<char, decltype(&free)> copy(strdup(OrEmpty(query)), &free);
  if (!copy) {
    Log(LOG_ERR, "qal-cmd invocation failure: %s", strerror(ENOMEM));
    return false;
  }
  Log(LOG_INFO, "qal-cmd invocation: get %s", copy.get());

  char output[256] = {};
  int length = sizeof output - 1;
  const char* argv[] = {"qal-cmd", "-U", konuServiceUser, copy.get(), nullptr};
  int rc = RunCommand("/bin/qal-cmd", argv, output, &length, nullptr, nullptr, nullptr, 0, kQueryTimeLimit);
  output[length > 0 ? length : 0] = '\0';
  if (rc != 0) Log(LOG_ERR, "qal-cmd invocation failure: %m");
  return strncmp(output, "true", 4) == 0;
}

}  // namespace Konu
