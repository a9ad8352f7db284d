// Support tools of a Linux host: live cores with gcore, the configuration backup and ping.
#include <dirent.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "host/ToolArguments.h"
#include "linuxtools/ToolRun.h"

namespace Konu::LinuxTools {
namespace {

// The first process whose name (/proc/PID/comm) is `name`, or 0.
long FindProcess(const std::string& name) {
  DIR* proc = opendir("/proc");
  if (!proc) return 0;
  long found = 0;
  while (dirent* entry = readdir(proc)) {
    char* end = nullptr;
    long pid = std::strtol(entry->d_name, &end, 10);
    if (pid <= 0 || *end != '\0') continue;
    std::string comm;
    std::getline(std::ifstream("/proc/" + std::string(entry->d_name) + "/comm"), comm);
    if (comm == name && (found == 0 || pid < found)) found = pid;
  }
  closedir(proc);
  return found;
}

}  // namespace

// nukbacktrace [-w] [-c] -n PROCESS [-o PATTERN] [-d DIR]: '%' in the pattern becomes the
// pid. The management agent ("mgmtd") is the configured agent process, libvirtd by default.
int NukBacktrace(ToolRun& run) {
  BacktraceArguments parsed = ParseBacktrace(run.Args());
  if (!parsed.ok) return run.Usage(BacktraceArguments::kUsage);
  const std::string& process = parsed.process;
  const std::string& pattern = parsed.pattern;
  std::string& dir = parsed.dir;
  std::string name = process == "mgmtd" ? run.Config("agent-process", "libvirtd") : process;
  long pid = FindProcess(name);
  if (pid == 0) return run.Fail("process " + name + " not found");
  std::string file = pattern;
  std::string pidText = std::to_string(pid);
  for (size_t at = file.find('%'); at != std::string::npos; at = file.find('%', at + pidText.size()))
    file.replace(at, 1, pidText);
  if (dir.empty() || dir.back() != '/') dir += '/';
  std::string prefix = run.File(dir + file);
  // gcore writes PREFIX.PID and stops the process only while it copies its memory.
  if (!run.RunOrReport({"gcore", "-o", prefix, pidText}, 300)) return 1;
  printf("Live core of %s written to %s.%s\n", name.c_str(), prefix.c_str(), pidText.c_str());
  return 0;
}

// backup.sh: KONU's configuration (/etc/konu and the shell idle timeout it wrote) into a
// dated archive under /var/backups/konu.
int BackupSh(ToolRun& run) {
  std::string folder = run.File("/var/backups/konu");
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  std::filesystem::create_directories(run.File("/etc/konu"), error);
  if (error) return run.Fail("cannot make " + folder + ": " + error.message());
  char stamp[32];
  time_t now = time(nullptr);
  tm local{};
  strftime(stamp, sizeof stamp, "%Y%m%d-%H%M%S", localtime_r(&now, &local));
  std::string archive = folder + "/konu-config-" + stamp + ".tar.gz";
  std::vector<std::string> argv = {"tar",     "-czf", archive, "-C", run.Root().empty() ? "/" : run.Root(),
                                   "etc/konu"};
  if (std::filesystem::exists(run.File("/etc/profile.d/konu-shell-timeout.sh")))
    argv.push_back("etc/profile.d/konu-shell-timeout.sh");
  if (!run.RunOrReport(argv, 120)) return 1;
  printf("Saved KONU's configuration to %s\n", archive.c_str());
  return 0;
}

// nukping [-c COUNT] [-I INTERFACE] ADDRESS through the machine's ping, with a deadline.
int NukPing(ToolRun& run) {
  const PingArguments words = ParsePing(run.Args());
  if (!words.ok) return run.Usage(PingArguments::kUsage, 2);
  const int count = words.count;
  std::vector<std::string> argv = {"ping", "-c", std::to_string(count), "-w", std::to_string(count + 5)};
  if (!words.interface.empty()) argv.insert(argv.end(), {"-I", words.interface});
  argv.push_back(words.address);
  HostCtl::Linux::CommandResult ping = run.Run(argv, count + 10);
  fputs(ping.out.c_str(), stdout);
  if (ping.missing || ping.timedOut) return run.Fail(HostCtl::Linux::DescribeFailure("ping", ping), 2);
  fputs(ping.err.c_str(), stderr);
  return ping.exitCode;
}

}  // namespace Konu::LinuxTools
