// Files of a simulated host that create writes: logs, PAM stack, certificates.
#include "hostsim/HostFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <stdexcept>

namespace Konu::Sim {
namespace {

// "May  1 10:00:00" for `minutesAgo` minutes before now.
std::string SyslogStamp(int minutesAgo) {
  time_t at = time(nullptr) - minutesAgo * 60;
  struct tm local;
  localtime_r(&at, &local);
  char stamp[32];
  strftime(stamp, sizeof stamp, "%b %e %H:%M:%S", &local);
  return stamp;
}

std::string IsoStamp(int minutesAgo) {
  time_t at = time(nullptr) - minutesAgo * 60;
  struct tm utc;
  gmtime_r(&at, &utc);
  char stamp[40];
  strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S.000Z", &utc);
  return stamp;
}

}  // namespace

std::vector<LogFile> FreshLogFiles(const nlohmann::json& state) {
  std::string host = state["host"].value("hostname", "konu-host");
  std::string nic = state["network"].value("managementInterface", "nuk0");
  std::string address = state["network"]["nukNics"][nic]["ipv4"].value("address", "0.0.0.0");
  auto sys = [&](int ago, int pri, const std::string& ident, const std::string& text) {
    return "<" + std::to_string(pri) + ">" + SyslogStamp(ago) + " " + host + " " + ident + ": " + text;
  };
  auto iso = [&](int ago, const std::string& text) { return IsoStamp(ago) + " " + text; };
  return {
      {"/var/log/syslog.log",
       {sys(190, 30, "init[1]", "Starting system services"),
        sys(189, 30, "ntpd[1342]", "ntpd 4.2.8p15 starting"),
        sys(188, 29, "mgmtd[2210]", "Management agent started"),
        sys(120, 86, "sshd[3011]", "pam_unix(sshd:session): session closed for user root"),
        sys(42, 30, "crond[1404]", "USER root pid 4100 cmd /sbin/backup.sh"),
        sys(5, 28, "smartd[1550]",
            "Device: /dev/disks/naa.5000c500a1b2c3d4, SMART Usage Attribute: 194 "
            "Temperature_Celsius changed from 31 to 32")}},
      {"/var/log/nukernel.log",
       {iso(191, "cpu0:1)Boot: NuKernel 8.0.2 build-21203435 starting"),
        iso(191, "cpu0:1)Memory: 131072 MB of memory detected"),
        iso(190, "cpu2:1043)nic0: link up, 10000 Mbps, full duplex"),
        iso(190, "cpu2:1043)nic1: link up, 10000 Mbps, full duplex"), iso(190, "cpu3:1044)nic3: link down"),
        iso(189, "cpu1:1101)Net: " + nic + " configured with address " + address)}},
      {"/var/log/sysboot.log",
       {iso(191, "sysboot: Loading modules"), iso(191, "sysboot: Loading host configuration from backup"),
        iso(190, "sysboot: Network configured"), iso(189, "sysboot: Boot complete")}},
      {"/var/log/mgmtd.log",
       {iso(188, "info mgmtd[2210] Management agent version 8.0.2 starting"),
        iso(188, "info mgmtd[2210] Inventory loaded: 2 virtual machines"),
        iso(30, "verbose mgmtd[2231] Session opened for user root from 10.0.0.20")}},
      {"/var/log/tmga.log",
       {iso(187, "info tmga[2305] Pallas agent starting"), iso(187,
                                                               "info tmga[2305] Not connected to a "
                                                               "central management server")}},
      {"/var/log/aam.log",
       {iso(186, "info aam[2350] High availability agent starting"),
        iso(186, "info aam[2350] Host is not part of a cluster; waiting for configuration")}},
      {"/var/log/zebd.log",
       {iso(186, "info zebd[2400] Observation service started"),
        iso(186, "info zebd[2400] Event zeb.host.boot posted: Host booted")}},
      {"/var/log/audit.log", {}},
      {"/var/log/hostsim.log", {}},
  };
}

std::string PamServiceFile(const std::string& root, const std::string& modulePath) {
  std::string ours = modulePath + " root=" + root;
  struct Line {
    const char* type;
    const char* control;
  };
  const Line lines[] = {
      {"auth", "required"},      // the password against the state's hash
      {"account", "required"},   // denied users, expired passwords
      {"password", "required"},  // password change: a new hash into the state
  };
  std::string text =
      "# PAM service konu of this simulated host (opened with pam_start_confdir).\n"
      "# Passwords are checked against the hashes in etc/konu-sim/host.json.\n";
  for (const Line& line : lines) {
    std::string type = line.type, control = line.control;
    text += type + std::string(9 - type.size(), ' ') + control + std::string(10 - control.size(), ' ') +
            ours + "\n";
  }
  return text;
}

void WriteTextFile(const std::string& path, const std::string& text, int mode) {
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode);
  if (fd < 0) throw std::runtime_error(path + ": cannot create: " + std::strerror(errno));
  size_t done = 0;
  while (done < text.size()) {
    ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n <= 0) {
      std::string why = std::strerror(errno);
      close(fd);
      throw std::runtime_error(path + ": cannot write: " + why);
    }
    done += static_cast<size_t>(n);
  }
  close(fd);
}

}  // namespace Konu::Sim
