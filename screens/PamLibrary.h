// PamLibrary: libpam's calls, from the library loaded at the first login or password change.
// Most starts of the console show the welcome screen and nothing else, which needs no PAM.
#pragma once

#include <security/pam_appl.h>

namespace Konu {

struct PamLibrary {
  decltype(&pam_start) start;
  decltype(&pam_start_confdir) startConfdir;
  decltype(&pam_end) end;
  decltype(&pam_authenticate) authenticate;
  decltype(&pam_acct_mgmt) acctMgmt;
  decltype(&pam_chauthtok) chauthtok;
  decltype(&pam_setcred) setcred;
  decltype(&pam_strerror) strerror;
};

// libpam's calls, or null when the library (or one of the calls) cannot be loaded; that is
// logged once.
const PamLibrary* LoadPam();

}  // namespace Konu
