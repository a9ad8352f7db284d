// Shell command lines that name host paths, placed on this machine.
#include "host/CommandLine.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>

#include "host/ChildRegistry.h"
#include "host/HostCtlException.h"
#include "host/HostRoot.h"

namespace Konu {
namespace {

bool IsSeparator(const std::string& word) {
  return word == ";" || word == "&&" || word == "||" || word == "|";
}

// ">", "2>>", "<", "&>": the next word is a file.
bool IsRedirection(const std::string& word) {
  return !word.empty() && word.find_first_not_of("<>&012") == std::string::npos &&
         word.find_first_of("<>") != std::string::npos;
}

}  // namespace

std::string MapCommandLine(const std::string& commandLine,
                           const std::function<std::string(const std::string&)>& mapPath) {
  std::string out;
  bool expectProgram = true, expectScript = false, expectFile = false;
  size_t i = 0;
  while (i < commandLine.size()) {
    if (commandLine[i] == ' ' || commandLine[i] == '\t') {
      out += commandLine[i++];
      continue;
    }
    size_t end = commandLine.find_first_of(" \t", i);
    std::string word = commandLine.substr(i, end == std::string::npos ? std::string::npos : end - i);
    i = end == std::string::npos ? commandLine.size() : end;
    std::string tail;  // a ";" glued to the end of a word ends the command
    while (word.size() > 1 && word.back() == ';') {
      tail += ';';
      word.pop_back();
    }
    size_t glued = word.find('/');
    if (IsSeparator(word)) {
      expectProgram = true;
    } else if (IsRedirection(word)) {
      expectFile = true;
    } else if (glued != std::string::npos && glued > 0 && IsRedirection(word.substr(0, glued))) {
      word = word.substr(0, glued) + mapPath(word.substr(glued));  // ">/dev/console"
    } else if (expectFile) {
      expectFile = false;
      if (word.front() == '/') word = mapPath(word);
    } else if (expectProgram) {
      expectProgram = false;
      std::string name = word.substr(word.rfind('/') + 1);
      expectScript = name == "sh" || name == "bash";
      if (word.front() == '/') word = mapPath(word);
    } else if (expectScript && word.front() != '-') {
      expectScript = false;
      if (word.front() == '/') word = mapPath(word);
    }
    out += word + tail;
    if (!tail.empty()) expectProgram = true;
  }
  return out;
}

std::string HostCommandLine(const std::string& commandLine) {
  return MapCommandLine(commandLine,
                        [](const std::string& path) { return path == "/dev/null" ? path : HostPath(path); });
}

int RunQuietShell(const std::string& shell, const std::string& command, const char* const envp[],
                  const std::string& shownAs, const char* directory) {
  const char* argv[] = {"sh", "-c", command.c_str(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (directory) posix_spawn_file_actions_addchdir_np(&actions, directory);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  const int error = SpawnChild(&pid, shell.c_str(), &actions, nullptr, argv, envp);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0)
    throw HostCtl::Lib::HostCtlException("Cannot run '" + shownAs + "': " + std::strerror(error));
  int status = 0;
  if (WaitChild(pid, &status, true) < 0)
    throw HostCtl::Lib::HostCtlException("Cannot wait for '" + shownAs + "': " + std::strerror(errno));
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
  return -1;
}

}  // namespace Konu
