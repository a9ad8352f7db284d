// Process-wide state of the console: the host backend, the clock, the session, the
// terminal flags and the top frame. Touched only by the user-interface thread, except the
// session user, which runner calls on worker threads read after it was set at login.
#pragma once

#include <termios.h>

#include <string>

namespace HostCtl {
class Host;
}

namespace Konu {

class Clock;
class Frame;

struct Session {
  std::string user;             // the logged-in user (sessionUser); empty before any login
  bool smartCardLogin = false;  // the login used a smart card
  bool active = false;          // inside the customisation screens
  bool deferredExit = false;    // SIGUSR2 arrived during the session
  unsigned idleTimeout = 600;   // seconds, 0 = never
  std::string cardUserId;       // user id of the last smart card found outside a session
  bool emptyPassword = false;   // the user logged in with an empty password (the menu warns)
};

class Runtime {
 public:
  static Runtime& Get();

  // The host backend (not owned). Throws std::logic_error when none was set.
  HostCtl::Host& Host() const;
  void SetHost(HostCtl::Host* host) { host_ = host; }
  bool HasHost() const { return host_ != nullptr; }

  // The clock (not owned); the system clock until another is set.
  const Konu::Clock& Clock() const;
  void SetClock(const Konu::Clock* clock) { clock_ = clock; }

  Session session;
  bool localConsole = false;     // the console runs on the host's own terminal
  bool monochrome = false;       // the terminal cannot redefine colours
  bool alternateColors = false;  // the welcome screen's F4 flips it
  Frame* topFrame = nullptr;     // the frame whose EventLoop is running
  int signalReadFd = -1;         // read end of the signal pipe
  termios startupTerminal{};     // fd 1's attributes as start-up found them
  bool startupTerminalSaved = false;

 private:
  HostCtl::Host* host_ = nullptr;
  const Konu::Clock* clock_ = nullptr;
};

}  // namespace Konu
