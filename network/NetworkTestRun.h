// The network test's probes, run in order on a worker thread of their own: pings through
// "/bin/nukping" and one name lookup with the hosts file set aside. The screen learns each
// result through a pipe and can end the run at any moment.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ops/UniqueFd.h"
#include "ops/WorkerThread.h"

namespace HostCtl {
class Host;
}

namespace Konu {

struct NetworkProbe {
  enum class Kind { kPing, kResolve };
  Kind kind;
  std::string target;  // an address to ping, or a name to resolve
};

class NetworkTestRun {
 public:
  // Starts the worker at once. Pings go through `interfaceName` ("-I"), unless it is "".
  // `ownNames` are taken out of the hosts file while a name is resolved. `host` must outlive
  // the run; the worker asks it only for objects of its own.
  NetworkTestRun(HostCtl::Host& host, std::vector<NetworkProbe> probes, std::string interfaceName,
                 std::vector<std::string> ownNames);
  // Stop().
  ~NetworkTestRun();

  NetworkTestRun(const NetworkTestRun&) = delete;
  NetworkTestRun& operator=(const NetworkTestRun&) = delete;

  // Readable while finished results wait to be taken.
  int ResultFd() const { return results_.read.Get(); }
  // The results finished since the last call (true = OK), in probe order; never blocks.
  std::vector<bool> TakeResults();
  // Ends the running probe (a ping's child is killed and reaped, a lookup given up, the
  // hosts file put back) and waits for the worker. Calling it again does nothing. The end of
  // the console does the same.
  void Stop();

 private:
  Pipe results_;  // the worker writes '1' (OK) or '0' (Failed) per probe
  std::unique_ptr<WorkerThread> worker_;
};

}  // namespace Konu
