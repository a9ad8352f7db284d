// The console session run from the welcome screen: login, the customisation menu or the
// shutdown dialog, logout with its log line and audit record, the idle time-out and the
// exit deferred until the session ends.
#include <syslog.h>
#include <unistd.h>

#include "app/KonuTimeout.h"
#include "app/Runtime.h"
#include "app/Session.h"
#include "host/ChildRegistry.h"
#include "host/HostRoot.h"
#include "host/Log.h"
#include "ops/Events.h"
#include "ops/ShutdownDialog.h"
#include "screens/LoginDialog.h"
#include "screens/LoginDisabledDialog.h"
#include "screens/SessionScreens.h"
#include "screens/WelcomeWindow.h"

namespace Konu {
namespace {

// Present when console login is allowed.
constexpr const char kShowLoginMarker[] = "/var/run/corbel/show-konu-login";

constexpr const char kLogoutRecord[] = "login.disconnect";

std::unique_ptr<Frame> MakeLogin(Frame* owner) {
  if (access(HostPath(kShowLoginMarker).c_str(), F_OK) == 0) return std::make_unique<LoginDialog>(owner);
  return std::make_unique<LoginDisabledDialog>(owner);
}

}  // namespace

void WelcomeWindow::RunSession(bool customize) {
  std::unique_ptr<Frame> login = MakeLogin(this);
  // No session is active yet, so neither the login form nor the shutdown dialog times out.
  if (login->RunModal() == 1) {
    if (customize) {
      RunCustomization();
    } else {
      RunShutdown();
    }
  }
  login.reset();
  SetSessionActive(false);
  if (Runtime::Get().session.deferredExit) ExitConsole(0);
}

void WelcomeWindow::RunCustomization() {
  const std::string user = Runtime::Get().session.user;
  SetSessionActive(true);
  std::unique_ptr<Frame> menu = MakeCustomizationWindow(this);
  // The menu's bottom border sits one row above this screen's. Curses would shift the rows
  // below up to reuse it, then paint them over; forgetting this screen's border row, which
  // the menu paints anyway, sends each cell once.
  menu->Redraw(menu->Height() - 1, 1);
  try {
    menu->RunModal();
  } catch (const KonuTimeout&) {
    Window::Redraw(Height() - 2, 1);  // the menu's border row, as below
    menu.reset();
    Log(LOG_INFO, "User %s logged out due to time out", user.c_str());
    WriteAudit(kLogoutRecord, user, 1, {{"reason", "Time out"}});
    SetActive(true);
    Redraw();
    return;
  }
  SetSessionActive(false);
  Log(LOG_INFO, "User %s logged out", user.c_str());
  WriteAudit(kLogoutRecord, user, 1, {{"reason", "Session closed"}});
  // Back the other way: forgetting the menu's border row keeps curses from shifting the
  // rows below down onto this screen's border.
  Window::Redraw(Height() - 2, 1);
  Redraw();
  menu.reset();
}

void WelcomeWindow::RunShutdown() {
  auto dialog = std::make_unique<ShutdownDialog>(this);
  dialog->RunModal();
  Redraw();
  dialog.reset();
}

}  // namespace Konu
