// One run of a simulated host tool: its root, name, arguments, state, output and journal line.
#include "hostsim/ToolRun.h"

#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "host/sim/Faults.h"
#include "hostsim/ConsoleSignal.h"
#include "hostsim/Journal.h"

namespace Konu::Sim {
namespace {

std::string ProcessUser() {
  struct passwd* pw = getpwuid(geteuid());
  return pw ? pw->pw_name : std::to_string(geteuid());
}

void WriteFd(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n <= 0) return;
    done += static_cast<size_t>(n);
  }
}

}  // namespace

ToolRun::ToolRun(std::string root, std::string name, std::vector<std::string> args)
    : root_(std::move(root)),
      name_(std::move(name)),
      args_(std::move(args)),
      state_(root_),
      user_(ProcessUser()) {}

std::vector<std::string> ToolRun::Argv() const {
  std::vector<std::string> argv{name_};
  argv.insert(argv.end(), args_.begin(), args_.end());
  return argv;
}

std::string ToolRun::HostFile(const std::string& absolutePath) const {
  if (absolutePath.empty() || absolutePath.front() != '/') return root_ + "/" + absolutePath;
  return root_ + absolutePath;
}

void ToolRun::Flush() {
  WriteFd(STDOUT_FILENO, out_);
  WriteFd(STDERR_FILENO, err_);
  out_.clear();
  err_.clear();
}

void ToolRun::Journal(const nlohmann::json& exit) { AppendJournal(root_, Argv(), user_, exit); }

int ToolRun::Run(int (*body)(ToolRun&)) {
  int code = 0;
  try {
    std::optional<ToolFault> fault;
    if (MatchingFaultKey(state_.Read(), Argv()))
      state_.Update([&](nlohmann::json& state) { fault = TakeToolFault(state, Argv()); });
    if (fault) {
      // The fault stands in for the tool's whole action.
      Out(fault->out);
      Err(fault->err);
      if (fault->hang) {
        if (fault->ignoreHangup) signal(SIGHUP, SIG_IGN);
        Flush();
        Journal("hang");
        for (;;) pause();
      }
      code = fault->exitCode & 0xff;
    } else {
      code = body(*this);
    }
  } catch (const StateFileError& e) {
    Err(name_ + ": " + e.what() + "\n");
    code = 2;
  } catch (const nlohmann::json::exception& e) {
    Err(name_ + ": unexpected host state in " + state_.Path() + ": " + e.what() + "\n");
    code = 2;
  }
  Flush();
  Journal(code);
  std::string why;
  if (consoleSignal_ != 0 && !SignalConsole(root_, consoleSignal_, &why))
    fprintf(stderr, "%s: console not signalled: %s\n", name_.c_str(), why.c_str());
  return code;
}

}  // namespace Konu::Sim
