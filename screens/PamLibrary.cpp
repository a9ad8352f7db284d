// PamLibrary: libpam's calls, from the library loaded at the first login or password change.
#include "screens/PamLibrary.h"

#include <syslog.h>

#include <optional>

#include "host/Log.h"
#include "host/SharedLibrary.h"

namespace Konu {
namespace {

constexpr char kLibPam[] = "libpam.so.0";

std::optional<PamLibrary> Resolve(const SharedLibrary& library) {
  PamLibrary pam{
      library.Get<decltype(&pam_start)>("pam_start"),
      library.Get<decltype(&pam_start_confdir)>("pam_start_confdir"),
      library.Get<decltype(&pam_end)>("pam_end"),
      library.Get<decltype(&pam_authenticate)>("pam_authenticate"),
      library.Get<decltype(&pam_acct_mgmt)>("pam_acct_mgmt"),
      library.Get<decltype(&pam_chauthtok)>("pam_chauthtok"),
      library.Get<decltype(&pam_setcred)>("pam_setcred"),
      library.Get<decltype(&pam_strerror)>("pam_strerror"),
  };
  if (!pam.start || !pam.startConfdir || !pam.end || !pam.authenticate || !pam.acctMgmt || !pam.chauthtok ||
      !pam.setcred || !pam.strerror) {
    Log(LOG_AUTH | LOG_ERR, "%s lacks a call the console makes", kLibPam);
    return std::nullopt;
  }
  return pam;
}

}  // namespace

const PamLibrary* LoadPam() {
  // Loaded once and never unloaded, not even at exit, where unloading would only cost time
  // and leave the library's own leftovers nameless to a leak checker. The PAM modules it
  // loads in turn come and go with each transaction.
  static const SharedLibrary& library = *new SharedLibrary(kLibPam);
  static const std::optional<PamLibrary> pam = []() -> std::optional<PamLibrary> {
    if (library.Loaded()) return Resolve(library);
    Log(LOG_AUTH | LOG_ERR, "cannot load %s: %s", kLibPam, library.Error().c_str());
    return std::nullopt;
  }();
  return pam ? &*pam : nullptr;
}

}  // namespace Konu
