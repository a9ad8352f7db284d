// NetworkTestRun: the worker thread and what each probe does.
#include "network/NetworkTestRun.h"

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

#include "app/Input.h"
#include "host/Host.h"
#include "host/Log.h"
#include "network/HostsFileGuard.h"
#include "ops/CommandRunner.h"

namespace Konu {
namespace {

// Everything the worker uses, copied or owned by it; it shares only the result descriptor
// with the screen.
struct Probes {
  HostCtl::Host* host;
  std::vector<NetworkProbe> probes;
  std::string interfaceName;
  std::vector<std::string> ownNames;
  int resultFd;
};

bool Ping(const Probes& run, const std::string& address, const WorkerStop& stop) {
  std::vector<const char*> argv = {"nukping", "-c", "3"};
  if (!run.interfaceName.empty()) {
    argv.push_back("-I");
    argv.push_back(run.interfaceName.c_str());
  }
  argv.push_back(address.c_str());
  argv.push_back(nullptr);
  return RunCommandUntil("/bin/nukping", argv.data(), stop.Fd()) == 0;
}

bool Resolve(const Probes& run, const std::string& name, const WorkerStop& stop) {
  HostsFileGuard hostsSetAside(run.ownNames);
  return run.host->CreateDnsConfig(HostCtl::kDefaultTcpipStack)->ResolveHostname(name, stop.Flag());
}

// A stopped run reports nothing more: its screen has gone, or the console is ending.
void Work(const Probes& run, const WorkerStop& stop) {
  for (const NetworkProbe& probe : run.probes) {
    if (stop.Requested()) return;
    bool ok = false;
    try {
      ok = probe.kind == NetworkProbe::Kind::kPing ? Ping(run, probe.target, stop)
                                                   : Resolve(run, probe.target, stop);
    } catch (const std::exception& e) {  // nothing leaves the worker thread
      if (!stop.Requested()) Log(LOG_ERR, "Network test of %s failed: %s", probe.target.c_str(), e.what());
    }
    if (stop.Requested()) return;
    const char result = ok ? '1' : '0';
    while (write(run.resultFd, &result, 1) < 0 && errno == EINTR) {
    }
  }
}

}  // namespace

NetworkTestRun::NetworkTestRun(HostCtl::Host& host, std::vector<NetworkProbe> probes,
                               std::string interfaceName, std::vector<std::string> ownNames) {
  if (!results_.Open()) {
    LogErrno("Network test pipe failed");
    return;  // no worker: the screen waits for results that never come, and Esc still works
  }
  fcntl(results_.read.Get(), F_SETFL, O_NONBLOCK);
  Probes run{&host, std::move(probes), std::move(interfaceName), std::move(ownNames), results_.write.Get()};
  worker_ =
      std::make_unique<WorkerThread>([run = std::move(run)](const WorkerStop& stop) { Work(run, stop); });
  if (worker_->Error() != 0 && worker_->Error() != ECANCELED) {
    errno = worker_->Error();
    LogErrno("Network test thread failed");
  }
}

NetworkTestRun::~NetworkTestRun() { Stop(); }

std::vector<bool> NetworkTestRun::TakeResults() {
  std::vector<bool> taken;
  char bytes[16];
  ssize_t n;
  while ((n = read(results_.read.Get(), bytes, sizeof bytes)) > 0 || (n < 0 && errno == EINTR))
    for (ssize_t i = 0; i < n; ++i) taken.push_back(bytes[i] == '1');
  return taken;
}

void NetworkTestRun::Stop() {
  if (worker_) worker_->Stop();
}

}  // namespace Konu
