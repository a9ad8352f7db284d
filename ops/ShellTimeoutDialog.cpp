// ShellTimeoutDialog: orincfg-advcfg reads, orincli-then-localcli writes, service restarts.
#include "ops/ShellTimeoutDialog.h"

#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/Log.h"
#include "ops/CommandRunner.h"

namespace Konu {
namespace {
constexpr int kHeight = 21;
constexpr int kHeaderHeight = 15;
constexpr int kTitle = 258;         // "Set the timeouts for Orin Shell access (local and remote)"
constexpr int kText = 259;          // what the two timeouts mean
constexpr int kAvailability = 260;  // "Availability timeout"
constexpr int kIdle = 261;          // "Idle timeout"
constexpr const char kAvailabilityOption[] = "/UserVars/OrinShellTimeOut";
constexpr const char kIdleOption[] = "/UserVars/OrinShellInteractiveTimeOut";
constexpr const char* kServiceScripts[] = {"/etc/init.d/OrinShell", "/etc/init.d/SSH"};

// The option's value in seconds as whole minutes (the remainder dropped); 0 when unreadable.
uint32_t ReadMinutes(const char* option) {
  char out[256] = {};
  int length = sizeof out - 1;
  const char* argv[] = {"orincfg-advcfg", "-q", "-g", option, nullptr};
  RunCommand("/sbin/orincfg-advcfg", argv, out, &length);
  out[length > 0 ? length : 0] = '\0';
  return static_cast<uint32_t>(std::strtol(out, nullptr, 10) / 60);
}

// orincli, and localcli when orincli fails.
void WriteMinutes(const char* option, uint32_t minutes) {
  char seconds[6];
  std::snprintf(seconds, sizeof seconds, "%d", static_cast<int>(minutes * 60));
  const char* argv[] = {"orincli", "system", "settings", "advanced", "set",
                        "-o",      option,   "-i",       seconds,    nullptr};
  if (RunCommand("/sbin/orincli", argv) == 0) return;
  argv[0] = "localcli";
  RunCommand("/sbin/localcli", argv);
}

// The script with one action; 0 for a running service on "status".
int RunServiceScript(const char* script, const char* action) {
  // The runner places the script's host path on this machine, as it does the program's.
  const char* argv[] = {"sh", script, action, nullptr};
  return RunCommand("/bin/sh", argv);
}
}  // namespace

ShellTimeoutDialog::Stored ShellTimeoutDialog::ReadStored() {
  Stored stored{};
  stored.availabilityMinutes = ReadMinutes(kAvailabilityOption);
  stored.idleMinutes = ReadMinutes(kIdleOption);
  return stored;
}

ShellTimeoutDialog::ShellTimeoutDialog(Frame* owner) : ShellTimeoutDialog(owner, ReadStored()) {}

ShellTimeoutDialog::ShellTimeoutDialog(Frame* owner, const Stored& stored)
    : TimeoutDialog(owner, kHeight, kHeaderHeight, kTitle, kText, {kAvailability, kIdle},
                    {stored.availabilityMinutes, stored.idleMinutes}),
      availabilityMinutes_(stored.availabilityMinutes),
      idleMinutes_(stored.idleMinutes) {}

ShellTimeoutDialog::~ShellTimeoutDialog() = default;

void ShellTimeoutDialog::Apply() {
  if (!Value(0).empty()) {
    const uint32_t minutes = Minutes(Value(0));
    if (Acceptable(minutes) && minutes != availabilityMinutes_) {
      WriteMinutes(kAvailabilityOption, minutes);
      for (const char* script : kServiceScripts) {
        if (RunServiceScript(script, "status") == 0) RunServiceScript(script, "restart");
      }
      if (minutes == 0) {
        Log(LOG_INFO, "Disabled Shell timeout");
      } else {
        Log(LOG_INFO, "Modified Shell timeout to %d minutes", static_cast<int>(minutes));
      }
    }
  }
  if (Value(1).empty()) return;
  const uint32_t minutes = Minutes(Value(1));
  if (!Acceptable(minutes) || minutes == idleMinutes_) return;
  // No restart: the idle timeout applies to later logins.
  WriteMinutes(kIdleOption, minutes);
  if (minutes == 0) {
    Log(LOG_INFO, "Disabled shell interactive timeout");
  } else {
    Log(LOG_INFO, "Modified shell interactive timeout to %d minutes", static_cast<int>(minutes));
  }
}

}  // namespace Konu
