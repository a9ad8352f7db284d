// Process start-up and shutdown: options, signals, terminal type, logging, pid file, the
// virtual-terminal switch, curses, the first screen, and the palette reset at the end.
#include "app/Console.h"

#include <curses.h>
#include <fcntl.h>
#include <linux/kd.h>
#include <linux/vt.h>
#include <sys/ioctl.h>
#include <syslog.h>
#include <termios.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "app/Clock.h"
#include "app/AttributeReset.h"
#include "app/Colors.h"
#include "app/Keys.h"
#include "app/PidFile.h"
#include "app/Runtime.h"
#include "app/Session.h"
#include "app/SignalThread.h"
#include "app/TerminalRestore.h"
#include "host/ChildRegistry.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/HostRoot.h"
#include "host/Log.h"

namespace Konu {

const char* ConsoleUsage() {
  return "Usage: konu [--host-root DIR] [VT]\n"
         "\n"
         "The local text console of the host.\n"
         "\n"
         "  VT                the virtual terminal (1 to 63) to switch to at start-up\n"
         "  --host-root DIR   run on the simulated host in DIR (made by 'konu-hostsim create DIR');\n"
         "                    the environment variable KONU_HOST_ROOT does the same.\n"
         "                    Without either, the console runs on the real host (\"/\").\n"
         "  --help            this text\n"
         "  --version         the version of the console\n";
}

#ifndef KONU_VERSION
#define KONU_VERSION "unknown"
#endif

const char* ConsoleVersion() { return "konu " KONU_VERSION "\n"; }

ConsoleOptions ParseConsoleOptions(int argc, char** argv, const char* envHostRoot) {
  ConsoleOptions options;
  if (envHostRoot && *envHostRoot) options.hostRoot = envHostRoot;
  for (int i = 1; i < argc; ++i) {
    const char* arg = argv[i];
    if (strcmp(arg, "--help") == 0 || strcmp(arg, "-h") == 0) {
      options.help = true;
    } else if (strcmp(arg, "--version") == 0) {
      options.version = true;
    } else if (strcmp(arg, "--host-root") == 0) {
      if (i + 1 >= argc || !*argv[i + 1]) {
        options.error = "konu: --host-root needs a directory";
        return options;
      }
      options.hostRoot = argv[++i];
    } else if (strncmp(arg, "--host-root=", 12) == 0) {
      if (!arg[12]) {
        options.error = "konu: --host-root needs a directory";
        return options;
      }
      options.hostRoot = arg + 12;
    } else if (strncmp(arg, "--", 2) == 0 && arg[2] != '\0') {
      options.error = std::string("konu: unknown option '") + arg + "'";
      return options;
    } else if (!options.vtArgument) {
      options.vtArgument = arg;  // extra arguments are ignored
    }
  }
  return options;
}

int ParseVirtualTerminal(const char* argument) {
  if (!argument) return 0;
  long vt = strtol(argument, nullptr, 10);
  if (vt >= 1 && vt <= 63) return static_cast<int>(vt);
  Log(LOG_ERR, "Invalid VT specified for KONU: %s", argument);
  return 0;
}

namespace {

void RedirectStderr() {
  int fd = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (fd < 0) return;
  dup2(fd, 2);
  close(fd);
}

// The local-console flag and TERM / TERMINFO, from what stdout is.
void SetTerminalType() {
  Runtime& rt = Runtime::Get();
  int kbType = 0;
  if (ioctl(1, KDGKBTYPE, &kbType) == 0) {
    rt.localConsole = true;
    setenv("TERM", "linux", 1);
  } else {
    const char* term = getenv("TERM");
    if (term && strcmp(term, "linux") == 0) setenv("TERM", "vt102", 1);
    term = getenv("TERM");
    if (term && strcmp(term, "xterm") == 0 && !getenv("SSH_CLIENT")) rt.localConsole = true;
  }
  setenv("TERMINFO", "/usr/share/terminfo", 0);
  setenv("TERM", "vt102", 0);
}

void SwitchVirtualTerminal(int vt, termios& saved) {
  int fd = open(HostPath("/dev/console").c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) return;
  if (ioctl(fd, VT_ACTIVATE, vt) != 0) ioctl(fd, VT_WAITACTIVE, vt);
  close(fd);
  saved.c_cc[VSUSP] = 0;  // Ctrl-Z does nothing
  tcsetattr(1, TCSANOW, &saved);
}

// False (said on the terminal and in the syslog) when curses cannot run on this terminal.
bool StartCurses(const termios& saved) {
  if (!setlocale(LC_ALL, "en_US.UTF-8")) {
    // Without a UTF-8 locale the scroll bar's block characters would not draw.
    setlocale(LC_ALL, "C.UTF-8");
    Log(LOG_INFO, "Locale en_US.UTF-8 is not installed, using C.UTF-8");
  }
  // newterm rather than initscr: initscr would exit with its complaint on stderr, which
  // goes nowhere by now.
  if (newterm(nullptr, stdout, stdin) == nullptr) {
    const char* term = getenv("TERM");
    std::string message = std::string("konu: cannot start on terminal type '") + (term ? term : "") + "'";
    Log(LOG_ERR, "%s", message.c_str());
    message += "\r\n";
    fputs(message.c_str(), stdout);
    fflush(stdout);
    return false;
  }
  start_color();
  PrepareTerminalRestore(saved);
  atexit(RestoreTerminal);
  TrimAttributeReset();
  curs_set(0);
  cbreak();
  noecho();
  keypad(stdscr, TRUE);
  SetupColors();
  DefineKeys();
  refresh();
  return true;
}

// A simulated host's syslog is a file under its root, with its own host name on each line.
void UseSimulatedSyslog(const HostCtl::Host& host) {
  std::string hostname;
  try {
    hostname = host.CreateDnsConfig(HostCtl::kDefaultTcpipStack)->GetHostname();
  } catch (const HostCtl::Lib::HostCtlException&) {
    // this machine's name will do
  }
  SetLogSink(std::make_unique<FileLogSink>(HostPath("/var/log/syslog.log"), hostname));
}

// Tests run a simulated host faster than real time; a real host always uses the real clock.
void MaybeUseTestClock() {
  const char* speed = getenv("KONU_CLOCK_SPEED");
  if (!IsSimulatedHost() || !speed) return;
  double factor = strtod(speed, nullptr);
  if (factor <= 0) return;
  static ScaledClock clock(factor);
  Runtime::Get().SetClock(&clock);
}

// The screen cleared, then endwin and the Linux console's palette reset, undoing the
// colour redefinitions.
void EndCurses() {
  erase();
  refresh();
  RestoreTerminal();
}

}  // namespace

int ConsoleMain(int argc, char** argv, const ConsoleHooks& hooks) {
  ConsoleOptions options = ParseConsoleOptions(argc, argv, getenv("KONU_HOST_ROOT"));
  if (!options.error.empty()) {
    fprintf(stderr, "%s\n%s", options.error.c_str(), ConsoleUsage());
    return 2;
  }
  if (options.help || options.version) {
    fputs(options.help ? ConsoleUsage() : ConsoleVersion(), stdout);
    return 0;
  }
  SetHostRoot(options.hostRoot);
  std::unique_ptr<HostCtl::Host> host;
  try {
    host = hooks.makeHost(HostRoot());
  } catch (const std::exception& e) {
    fprintf(stderr, "konu: cannot open the host at %s: %s\n", HostRoot().c_str(), e.what());
    return 1;
  }
  Runtime::Get().SetHost(host.get());
  if (IsSimulatedHost()) UseSimulatedSyslog(*host);
  MaybeUseTestClock();

  int vt = ParseVirtualTerminal(options.vtArgument);
  StartSignalThread();
  Runtime::Get().session.idleTimeout = GetKonuTimeout();

  RedirectStderr();
  termios saved{};
  Runtime::Get().startupTerminalSaved = tcgetattr(1, &saved) == 0;
  SetTerminalType();

  OpenLog("KONU");
  Log(LOG_INFO, "Starting KONU");
  ClaimPidFile(HostPath("/var/run/konu.pid"));
  if (vt > 0) SwitchVirtualTerminal(vt, saved);
  Runtime::Get().startupTerminal = saved;

  if (!StartCurses(saved)) return 1;
  // A host error ends the console normally. Any other error is a fault of the console and
  // is not handled here: it is logged, the screen cleared and the terminal put back (the
  // palette reset included), and then it goes on out of main, so the host sees an abort and
  // keeps the core. Nothing is said on the terminal: after ESC ] R most terminals other
  // than the Linux console would take it for part of that sequence.
  try {
    hooks.runFirstScreen();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "KONU aborted by exception: %s", e.what());
  } catch (const std::exception& e) {
    Log(LOG_ERR, "KONU aborted by exception: %s", e.what());
    EndCurses();
    throw;
  }
  EndChildren();  // the workers are gone before the host they use
  EndCurses();
  Runtime::Get().SetHost(nullptr);
  return 0;
}

}  // namespace Konu
