// One run of a simulated host tool: its root, name, arguments, state, output and journal line.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/sim/StateFile.h"

namespace Konu::Sim {

class ToolRun {
 public:
  ToolRun(std::string root, std::string name, std::vector<std::string> args);

  const std::string& Root() const { return root_; }
  const std::string& Name() const { return name_; }
  // The arguments after the tool's name.
  const std::vector<std::string>& Args() const { return args_; }
  // The argument vector as the journal records it: the name, then the arguments.
  std::vector<std::string> Argv() const;

  // A host path ("/var/log/") inside this root.
  std::string HostFile(const std::string& absolutePath) const;

  StateFile& State() { return state_; }

  // The user the run acts as: the process's own user unless a tool says otherwise
  // (qal-cmd acts as its -U user).
  const std::string& User() const { return user_; }
  void SetUser(std::string user) { user_ = std::move(user); }

  // Text for standard output and error, written when the run ends.
  void Out(const std::string& text) { out_ += text; }
  void Err(const std::string& text) { err_ += text; }

  // Sends `signal` to the console once the run is journaled (a host going down ends the
  // console, which puts down a tool it is still waiting for).
  void SignalConsoleWhenDone(int signal) { consoleSignal_ = signal; }

  // Runs the tool: applies an injected fault if one matches, else `body`; writes the output,
  // appends the journal line and returns the exit code. A hanging fault never returns.
  int Run(int (*body)(ToolRun&));

 private:
  void Flush();
  void Journal(const nlohmann::json& exit);

  std::string root_;
  std::string name_;
  std::vector<std::string> args_;
  StateFile state_;
  std::string user_;
  std::string out_;
  std::string err_;
  int consoleSignal_ = 0;
};

}  // namespace Konu::Sim
