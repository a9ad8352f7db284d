// konu-hostsim: the simulated host's tools (one multi-call binary) and its control command.
#include <limits.h>
#include <unistd.h>

#include <iostream>
#include <stdexcept>

#include "hostsim/Control.h"
#include "hostsim/Create.h"
#include "hostsim/Tools.h"

namespace {

const char* const kHelp =
    "Usage: konu-hostsim create DIR\n"
    "       konu-hostsim --root DIR get POINTER\n"
    "       konu-hostsim --root DIR set POINTER JSON\n"
    "       konu-hostsim --root DIR unset POINTER\n"
    "       konu-hostsim --root DIR password set|check USER PASSWORD\n"
    "       konu-hostsim --root DIR card insert USER | card remove\n"
    "       konu-hostsim --root DIR dvs [NAME [VENDOR]]\n"
    "       konu-hostsim --root DIR journal [--json]\n"
    "       konu-hostsim --tool DIR NAME [ARGUMENTS...]\n"
    "\n"
    "A simulated host for the konu console: a directory with the host state\n"
    "(etc/konu-sim/host.json), the host's tools, its PAM service and its logs.\n"
    "\n"
    "  create DIR     make a fresh host in DIR (absent or empty)\n"
    "  get POINTER    print the state's value at a JSON pointer (\"/power/state\")\n"
    "  set POINTER JSON\n"
    "                 replace or add a value; the value is JSON ('\"text\"', 600, true)\n"
    "  unset POINTER  remove a value\n"
    "  password set USER PASSWORD\n"
    "                 give a user of the state a new password (the state keeps its hash)\n"
    "  password check USER PASSWORD\n"
    "                 exit 0 when it is the user's password, 1 when not\n"
    "  card insert USER, card remove\n"
    "                 put a smart card for USER into the reader or take it out, then\n"
    "                 notify the console (SIGUSR1 through var/run/konu.pid)\n"
    "  dvs [NAME [VENDOR]]\n"
    "                 put the management interface on port 10 of a new distributed\n"
    "                 switch NAME (dvs0) of VENDOR (Corbel), with its standard switch's\n"
    "                 uplinks and its port group's VLAN\n"
    "  journal        the tools run so far (var/log/hostsim.log)\n"
    "  --tool DIR NAME\n"
    "                 run a tool of the host in DIR (the tool wrappers use this)\n"
    "\n"
    "Faults: set /faults/tools/\"WORDS\" to {\"exitCode\":N,\"stderr\":\"...\",\"hang\":true,\"times\":N}\n"
    "and every tool run whose arguments hold WORDS in order fails or hangs (with\n"
    "\"ignoreHangup\":true a hanging run ignores SIGHUP, so that only SIGKILL ends it);\n"
    "/faults/operations/\"Service.Operation\" to a message makes that host operation throw,\n"
    "to {\"unexpected\":\"...\"} throw a standard exception that is not the host library's own.\n"
    "(\"nukping -c 3 -I nuk0 10.0.0.1\" hangs that one ping; \"DnsConfig.ResolveHostname\"\n"
    "fails every name lookup, or with {\"hang\":true} holds it until the test is stopped.)\n"
    "\n"
    "Network test: nukping answers for the addresses listed in /network/reachable; a name\n"
    "resolves from etc/hosts, or from a server of /network/dns/defaultTcpipStack/nameServers\n"
    "that is reachable and lists the name under /network/dnsRecords/\"SERVER\".\n"
    "\n"
    "Network restore: the factory restore (\"NetworkInfo.RestoreFactoryNetwork\") leaves\n"
    "vSwitch0 on the first NIC with a link and the management interface on DHCP; a machine\n"
    "whose /vms entry is \"poweredOn\" counts as running (\"SystemInfo.HasRunningVms\").\n"
    "A fault on \"NetworkInfo.CanRestoreFactoryNetwork\" makes the host one that cannot\n"
    "restore its network: the console refuses before anything is stopped.\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 bad usage, malformed state or unknown pointer.\n";

std::string SelfExe() {
  char path[PATH_MAX];
  ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
  if (n <= 0) throw std::runtime_error("cannot find this program's own path");
  return std::string(path, static_cast<size_t>(n));
}

int Usage(const std::string& why) {
  std::cerr << "konu-hostsim: " << why << "\n"
            << "Try 'konu-hostsim --help'.\n";
  return Konu::Sim::kControlUsage;
}

int RunTool(int argc, char** argv) {
  if (argc < 4) return Usage("--tool needs a root and a tool name");
  const Konu::Sim::ToolEntry* tool = Konu::Sim::FindTool(argv[3]);
  if (!tool) {
    std::cerr << "konu-hostsim: no tool named \"" << argv[3] << "\"\n";
    return 127;
  }
  Konu::Sim::ToolRun run(argv[2], argv[3], std::vector<std::string>(argv + 4, argv + argc));
  return run.Run(tool->body);
}

}  // namespace

int main(int argc, char** argv) {
  std::string first = argc > 1 ? argv[1] : "";
  if (first == "--tool") return RunTool(argc, argv);
  if (first == "--help" || first == "-h") {
    std::cout << kHelp;
    return 0;
  }
  if (first == "create") {
    if (argc != 3 || argv[2][0] == '\0') return Usage("create needs one directory");
    try {
      Konu::Sim::CreateHost({argv[2], SelfExe(), ""});
      std::cout << "Simulated host created in " << Konu::Sim::AbsoluteRoot(argv[2]) << "\n";
      return 0;
    } catch (const std::exception& e) {
      std::cerr << "konu-hostsim: create: " << e.what() << "\n";
      return 1;
    }
  }
  if (first == "--root") {
    if (argc < 4) return Usage("--root needs a directory and a command");
    return Konu::Sim::RunControl(argv[2], std::vector<std::string>(argv + 3, argv + argc));
  }
  return Usage(argc > 1 ? "unknown command \"" + first + "\"" : "no command given");
}
