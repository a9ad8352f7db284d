// Idle time-out, the session flag and the smart-card check.
#include "app/Session.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "host/AdvancedOptions.h"
#include "host/ChildRegistry.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/SmartCardInfo.h"

namespace Konu {
namespace {
constexpr const char kKonuTimeoutOption[] = "/UserVars/KonuTimeOut";
}  // namespace

unsigned GetKonuTimeout() {
  constexpr unsigned kDefault = 600;
  try {
    auto options = Runtime::Get().Host().CreateAdvancedOptions();
    auto option = options->FindOption(kKonuTimeoutOption);
    auto* integer = dynamic_cast<HostCtl::Adv::AdvancedIntegerOption*>(option.get());
    if (!integer || integer->GetValue() < 0) return kDefault;
    return static_cast<unsigned>(integer->GetValue());
  } catch (const HostCtl::Lib::HostCtlException&) {
    return kDefault;
  }
}

void SetKonuTimeout(unsigned seconds) {
  try {
    auto options = Runtime::Get().Host().CreateAdvancedOptions();
    auto option = options->FindOption(kKonuTimeoutOption);
    if (!dynamic_cast<HostCtl::Adv::AdvancedIntegerOption*>(option.get())) return;
    options->SetIntegerValue(kKonuTimeoutOption, seconds);
  } catch (const HostCtl::Lib::HostCtlException&) {
    // Silently without effect, as a missing option is.
  }
}

void SetSessionActive(bool on) {
  Session& session = Runtime::Get().session;
  session.active = on;
  if (on) session.idleTimeout = GetKonuTimeout();
}

namespace {
// The user id of the first token found in any slot, or "".
std::string PresentCardUser() {
  auto cards = Runtime::Get().Host().CreateSmartCardInfo();
  for (const auto& slot : cards->GetSlots()) {
    if (slot.token) return slot.token->userId;
  }
  return "";
}

bool CardOfUserPresent(const std::string& user) {
  auto cards = Runtime::Get().Host().CreateSmartCardInfo();
  for (const auto& slot : cards->GetSlots()) {
    if (slot.token && slot.token->userId == user) return true;
  }
  return false;
}
}  // namespace

void SetLoggedInUser(const std::string& name) {
  Session& session = Runtime::Get().session;
  session.user = name;
  try {
    session.smartCardLogin = CardOfUserPresent(name);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Smart card check failed: %s", e.what());
    session.smartCardLogin = false;
  }
}

bool CardUserPresent() { return !Runtime::Get().session.cardUserId.empty(); }

void CheckSmartCard() {
  Session& session = Runtime::Get().session;
  try {
    if (!session.active) {
      session.cardUserId = PresentCardUser();
      if (!session.cardUserId.empty()) {
        Log(LOG_INFO, "Found smart card with user id '%s'", session.cardUserId.c_str());
      }
    } else if (session.smartCardLogin && !CardOfUserPresent(session.user)) {
      Log(LOG_INFO, "Logging out user id '%s'", session.user.c_str());
      ExitConsole(0);
    }
  } catch (const HostCtl::Lib::HostCtlException&) {
    // No user id from a reader that cannot be asked; a session goes on as it is.
    Log(LOG_ERR, "Error trying to lookup smart card tokens.");
    if (!session.active) session.cardUserId.clear();
  }
}

}  // namespace Konu
