// konu: the local text console of the host. The one place that knows the backends and the
// first screen.
#include "app/Console.h"
#include "host/linux/LinuxHost.h"
#include "host/linux/LinuxPathMap.h"
#include "host/sim/SimHost.h"
#include "screens/FirstScreen.h"

int main(int argc, char** argv) {
  Konu::ConsoleHooks hooks;
  hooks.makeHost = [](const std::string& root) -> std::unique_ptr<HostCtl::Host> {
    if (root == "/") {
      static const HostCtl::Linux::LinuxPathMap paths;
      Konu::SetHostPathMap(&paths);
      return std::make_unique<HostCtl::Linux::LinuxHost>(root);
    }
    return std::make_unique<HostCtl::Sim::SimHost>(root);
  };
  hooks.runFirstScreen = Konu::RunFirstScreen;
  return Konu::ConsoleMain(argc, argv, hooks);
}
