// Runs one shell command line on the host and answers its exit status.
#pragma once

#include <string>

namespace HostCtl {

class ShellExec {
 public:
  virtual ~ShellExec() = default;
  ShellExec() = default;
  ShellExec(const ShellExec&) = delete;
  ShellExec& operator=(const ShellExec&) = delete;

  // "/bin/sh -c commandLine", waited for, its input and output on /dev/null. Answers the exit status
  // (0..255), 128 + the signal number when the command was killed, or throws HostCtl::Lib::HostCtlException
  // when it could not be started. The three flags are the library's and are passed as given (the console
  // always passes false, true, false).
  virtual int NukCtl_Exec(const std::string& commandLine, bool flag1, bool flag2, bool flag3) = 0;
};

}  // namespace HostCtl
