// KonuTimeoutDialog: one minute field over "/UserVars/KonuTimeOut".
#include "ops/KonuTimeoutDialog.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "app/Session.h"
#include "host/Log.h"

namespace Konu {
namespace {
constexpr int kHeight = 14;
constexpr int kHeaderHeight = 9;
constexpr int kTitle = 264;  // "Set idle timeout for KONU access"
constexpr int kText = 265;   // what the timeout means, in minutes, at most 1440
constexpr int kLabel = 266;  // "KONU idle timeout"
}  // namespace

KonuTimeoutDialog::KonuTimeoutDialog(Frame* owner) : KonuTimeoutDialog(owner, GetKonuTimeout()) {}

KonuTimeoutDialog::KonuTimeoutDialog(Frame* owner, unsigned seconds)
    : TimeoutDialog(owner, kHeight, kHeaderHeight, kTitle, kText, {kLabel}, {seconds / 60}),
      seconds_(seconds) {}

KonuTimeoutDialog::~KonuTimeoutDialog() = default;

void KonuTimeoutDialog::Apply() {
  if (Value(0).empty()) return;
  const uint32_t minutes = Minutes(Value(0));
  // Seconds compared: a stored value that is no whole number of minutes is rewritten.
  if (!Acceptable(minutes) || minutes * 60 == seconds_) return;
  SetKonuTimeout(minutes * 60);
  Runtime::Get().session.idleTimeout = GetKonuTimeout();
  if (minutes == 0) {
    Log(LOG_INFO, "Disabled Konu timeout");
  } else {
    Log(LOG_INFO, "Modified Konu timeout to %d minutes", static_cast<int>(minutes));
  }
}

}  // namespace Konu
