// Making a fresh simulated host in a directory.
#include "hostsim/Create.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "host/sim/DefaultState.h"
#include "host/sim/StateFile.h"
#include "hostsim/HostFiles.h"
#include "hostsim/Tools.h"
#include "hostsim/pam/PasswordHash.h"

extern char** environ;

namespace Konu::Sim {
namespace {

// Host paths that link to this machine's own programs (the first candidate that exists).
struct MachineLink {
  const char* hostPath;
  std::vector<const char*> targets;
};

const std::vector<MachineLink>& MachineLinks() {
  static const std::vector<MachineLink> kLinks = {
      {"/bin/sh", {"/bin/sh", "/usr/bin/sh"}},
      {"/bin/less", {"/usr/bin/less", "/bin/less"}},
      {"/usr/lib/corbel/openssh/bin/ssh-keygen", {"/usr/bin/ssh-keygen", "/bin/ssh-keygen"}},
  };
  return kLinks;
}

const char* const kDirectories[] = {
    "/bin",
    "/sbin",
    "/etc/init.d",
    "/etc/pam.d",
    "/etc/konu-sim",
    "/etc/corbel/ssl",
    "/etc/corbel/support",
    "/etc/ssh",
    "/var/log",
    "/var/run/corbel",
    "/var/core",
    "/usr/lib/konu-sim",
    "/usr/lib/corbel/openssh/bin",
    "/tmp",
};

std::string Errno() { return std::strerror(errno); }

void MakeDirs(const std::string& path) {
  std::string partial;
  std::istringstream parts(path);
  std::string piece;
  while (std::getline(parts, piece, '/')) {
    if (piece.empty()) continue;
    partial += "/" + piece;
    if (mkdir(partial.c_str(), 0755) != 0 && errno != EEXIST)
      throw std::runtime_error(partial + ": cannot create directory: " + Errno());
  }
}

bool IsEmptyDirectory(const std::string& path) {
  DIR* dir = opendir(path.c_str());
  if (!dir) return false;
  bool empty = true;
  while (struct dirent* entry = readdir(dir)) {
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
      empty = false;
      break;
    }
  }
  closedir(dir);
  return empty;
}

std::string ShellQuote(const std::string& text) {
  std::string quoted = "'";
  for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

// Runs a program of this machine with its output thrown away; returns its exit code or -1.
int RunQuiet(const std::vector<std::string>& argv) {
  std::vector<char*> args;
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  int rc = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (rc != 0) return -1;
  int status = 0;
  while (waitpid(pid, &status, 0) < 0)
    if (errno != EINTR) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void CopyFile(const std::string& from, const std::string& to, int mode) {
  std::ifstream in(from, std::ios::binary);
  if (!in) throw std::runtime_error(from + ": cannot read: " + Errno());
  std::stringstream data;
  data << in.rdbuf();
  WriteTextFile(to, data.str(), mode);
}

std::string DirectoryOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

void WriteTools(const std::string& root, const std::string& exe) {
  for (const ToolEntry& tool : ToolTable()) {
    // Two lines: the tool knows its root and its name without any environment.
    std::string script = "#!/bin/sh\nexec " + ShellQuote(exe) + " --tool " + ShellQuote(root) + " " +
                         ShellQuote(tool.name) + " \"$@\"\n";
    WriteTextFile(root + tool.hostPath, script, 0755);
  }
  for (const MachineLink& link : MachineLinks()) {
    const char* target = nullptr;
    for (const char* candidate : link.targets)
      if (access(candidate, X_OK) == 0) {
        target = candidate;
        break;
      }
    if (!target) {
      std::cerr << "konu-hostsim: warning: no " << link.targets.front() << " on this machine; "
                << link.hostPath << " left out\n";
      continue;
    }
    if (symlink(target, (root + link.hostPath).c_str()) != 0)
      throw std::runtime_error(root + link.hostPath + ": cannot link: " + Errno());
  }
}

// The host's openssl prints "SHA1 Fingerprint=" where OpenSSL 3 prints "sha1 Fingerprint=";
// the console reads the capitals, so the root's openssl is the machine's behind that one fix.
void WriteOpenssl(const std::string& root) {
  const char* machine = access("/usr/bin/openssl", X_OK) == 0 ? "/usr/bin/openssl" : "/bin/openssl";
  WriteTextFile(root + "/bin/openssl",
                "#!/bin/sh\n"
                "out=$(" +
                    ShellQuote(machine) +
                    " \"$@\"); rc=$?\n"
                    "case $out in \"sha1 Fingerprint=\"*) out=\"SHA1${out#sha1}\" ;; esac\n"
                    "[ -z \"$out\" ] || printf '%s\\n' \"$out\"\n"
                    "exit $rc\n",
                0755);
}

void WritePam(const std::string& root, const std::string& pamModule) {
  std::string module = root + "/usr/lib/konu-sim/pam_konusim.so";
  CopyFile(pamModule, module, 0755);
  WriteTextFile(root + "/etc/pam.d/konu", PamServiceFile(root, module));
}

// The support information pages, one file each, shown in name order.
void WriteSupportPages(const std::string& root) {
  struct Page {
    const char* name;
    const char* text;
  };
  const Page pages[] = {
      {"10-certificate",
       "{color:white}Host certificate{/color}\n\nSHA-1 thumbprint of the host's SSL "
       "certificate:\n\n{ssl-thumbprint}\n"},
      {"20-ssh-keys",
       "{color:white}SSH host keys{/color}\n\nRSA key fingerprint:\n{ssh-rsa-fingerprint}\n\n"
       "DSA key fingerprint:\n{ssh-dsa-fingerprint}\n"},
      {"30-support-contract",
       "{color:white}Support contract{/color}\n\nProduct: {orinproduct} {orinversion}\nService tag: "
       "{servicetag}\n"
       "Asset tag: {assettag}\nSupport start: {supportstart}\nSupport period: {supportperiod}\n"},
      {"40-firmware",
       "{color:white}Firmware versions{/color}\n\nBIOS: {BIOSversion}\nBMC: {BMCversion}\nCPLD: "
       "{CPLDversion}\n"
       "PLSA: {PLSAversion}\n"},
  };
  for (const Page& page : pages) WriteTextFile(root + "/etc/corbel/support/" + page.name, page.text);
}

void WriteKeys(const std::string& root, const nlohmann::json& state) {
  std::string fqdn = state["host"].value("hostname", "konu-host") + "." + state["host"].value("domain", "");
  std::string ssl = root + "/etc/corbel/ssl/";
  // An EC key keeps create fast; the console only reads the certificate's fingerprint.
  if (RunQuiet({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                "-nodes", "-days", "3650", "-subj", "/CN=" + fqdn, "-keyout", ssl + "rui.key", "-out",
                ssl + "rui.crt"}) != 0)
    throw std::runtime_error(ssl + "rui.crt: openssl could not make the host certificate");
  struct KeyType {
    const char* type;
    const char* bits;
    bool required;
  };
  for (const KeyType& key :
       {KeyType{"rsa", "2048", true}, KeyType{"dsa", "1024", false}, KeyType{"ed25519", "", false}}) {
    std::string path = root + "/etc/ssh/ssh_host_" + key.type + "_key";
    std::vector<std::string> argv = {"ssh-keygen", "-q", "-t",           key.type, "-N",
                                     "",           "-C", "root@" + fqdn, "-f",     path};
    if (*key.bits) argv.insert(argv.begin() + 4, {"-b", key.bits});
    if (RunQuiet(argv) != 0 && key.required)
      throw std::runtime_error(path + ": ssh-keygen could not make the key");
  }
}

}  // namespace

std::string AbsoluteRoot(const std::string& root) {
  if (root.empty() || root.front() == '/') {
    std::string r = root;
    while (r.size() > 1 && r.back() == '/') r.pop_back();
    return r;
  }
  char cwd[PATH_MAX];
  if (!getcwd(cwd, sizeof cwd)) throw std::runtime_error("cannot read the current directory: " + Errno());
  return AbsoluteRoot(std::string(cwd) + "/" + root);
}

nlohmann::json FactoryHostState() {
  nlohmann::json state = DefaultHostState();
  state["users"]["root"]["passwordHash"] = HashPassword(kFactoryRootPassword);
  return state;
}

void CreateHost(const CreateOptions& options) {
  std::string root = AbsoluteRoot(options.root);
  if (root.empty() || root == "/") throw std::runtime_error("refusing to make a simulated host in \"/\"");
  // The PAM service file separates module arguments by blanks and cannot quote them.
  if (root.find_first_of(" \t\n[]") != std::string::npos)
    throw std::runtime_error(root + ": a host root must not hold blanks or brackets");
  struct stat info;
  if (stat(root.c_str(), &info) == 0 && !(S_ISDIR(info.st_mode) && IsEmptyDirectory(root)))
    throw std::runtime_error(root + ": exists and is not an empty directory");
  MakeDirs(root);
  for (const char* dir : kDirectories) MakeDirs(root + dir);

  nlohmann::json state = FactoryHostState();
  StateFile(root).Write(state);
  WriteTools(root, options.hostsimExe);
  WriteOpenssl(root);
  std::string pamModule =
      options.pamModule.empty() ? DirectoryOf(options.hostsimExe) + "/pam_konusim.so" : options.pamModule;
  WritePam(root, pamModule);
  for (const LogFile& log : FreshLogFiles(state)) {
    std::string text;
    for (const std::string& line : log.lines) text += line + "\n";
    WriteTextFile(root + log.hostPath, text);
  }
  WriteTextFile(root + "/var/run/corbel/show-konu-login", "");
  std::string fqdn = state["host"].value("hostname", "") + "." + state["host"].value("domain", "");
  std::string address =
      state.value("/network/nukNics/nuk0/ipv4/address"_json_pointer, std::string("127.0.1.1"));
  WriteTextFile(root + "/etc/hosts", "127.0.0.1\tlocalhost\n::1\tlocalhost\n" + address + "\t" + fqdn + "\t" +
                                         state["host"].value("hostname", "") + "\n");
  WriteKeys(root, state);
  WriteSupportPages(root);
}

}  // namespace Konu::Sim
