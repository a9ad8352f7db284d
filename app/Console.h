// Process start-up and shutdown of the console.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace HostCtl {
class Host;
}

namespace Konu {

// What only the top of the program knows: the backends and the first screen.
struct ConsoleHooks {
  // The backend for a host root ("/" is the real host, anything else a simulated host).
  std::function<std::unique_ptr<HostCtl::Host>(const std::string& root)> makeHost;
  // Builds the first screen, runs it modally and deletes it.
  std::function<void()> runFirstScreen;
};

// The command line: [--host-root DIR] [VT], --help, --version; KONU_HOST_ROOT stands in for the option.
struct ConsoleOptions {
  std::string hostRoot = "/";
  const char* vtArgument = nullptr;  // argv[1]-style: the first argument that is no option
  bool help = false;
  bool version = false;
  std::string error;  // a bad option: the message to print
};
ConsoleOptions ParseConsoleOptions(int argc, char** argv, const char* envHostRoot);
const char* ConsoleUsage();
const char* ConsoleVersion();

// The virtual terminal selected by the argument, 1 to 63, or 0 (logged) for anything else.
int ParseVirtualTerminal(const char* argument);

// Everything main does: options, signal thread, terminal, logging, pid file, curses, the
// first screen run modally, and the shutdown sequence. Returns the process status.
int ConsoleMain(int argc, char** argv, const ConsoleHooks& hooks);

}  // namespace Konu
