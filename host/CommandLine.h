// Shell command lines that name host paths: the programs, the script a shell runs and the
// files of redirections are host paths, placed on this machine by one function.
#pragma once

#include <functional>
#include <string>

namespace Konu {

// Applies `mapPath` to every absolute path word that names a program ("/sbin/backup.sh"),
// the script given to a shell ("/bin/sh /sbin/services.sh stop") or a redirection's file
// ("> /dev/null", ">/dev/console"). Other arguments are left as they are.
std::string MapCommandLine(const std::string& commandLine,
                           const std::function<std::string(const std::string&)>& mapPath);

// The command line with its host paths resolved through HostPath ("/dev/null" stays).
std::string HostCommandLine(const std::string& commandLine);

// Runs `shell -c command` with `envp` as its whole environment, in `directory` when one is
// given, its standard streams on /dev/null (the console owns the terminal), and waits for
// it. Gives its exit status, or 128 + the signal that ended it; throws a HostCtlException
// naming `shownAs` when it cannot be started or waited for.
int RunQuietShell(const std::string& shell, const std::string& command, const char* const envp[],
                  const std::string& shownAs, const char* directory = nullptr);

}  // namespace Konu
