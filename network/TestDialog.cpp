// TestDialog: the fields and their values from the host.
#include "network/TestDialog.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/RunTestDialog.h"
#include "ops/HostFacts.h"

namespace Konu {
namespace {

constexpr int kWidth = 68;
constexpr int kHeight = 14;
constexpr int kHeaderHeight = 6;

enum StringId {
  kTitle = 9,           // "Test Management Network"
  kText = 209,          // "By default, this test will attempt to ping your default gateway and ..."
  kPingLabel = 210,     // "Ping Address"
  kResolveLabel = 211,  // "Resolve Hostname"
};

constexpr const char* kFooter =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

// What the host says now: the gateway, then the name servers (IPv4 before IPv6), and the
// host's names; each query that fails is logged and leaves its part empty.
struct HostValues {
  std::vector<std::string> addresses;
  std::string fqdn;
  std::vector<std::string> ownNames;
  std::string interfaceName;
};

HostValues ReadHost() {
  HostValues values;
  const HostCtl::Host& host = Runtime::Get().Host();
  try {
    auto routing = host.CreateRoutingInfo(HostCtl::kDefaultTcpipStack);
    values.addresses.push_back(routing->GetNuKernelDefaultGateway().GetStringAddress());
  } catch (const HostCtl::Lib::HostCtlException& e) {
    values.addresses.push_back("");
    Log(LOG_ERR, "Network test: default gateway unknown: %s", e.what());
  }
  try {
    auto dns = host.CreateDnsConfig(HostCtl::kDefaultTcpipStack);
    for (const auto& server : dns->GetNameServers()) values.addresses.push_back(server.GetStringAddress());
    for (const auto& server : dns->GetIpv6NameServers())
      values.addresses.push_back(server.GetStringAddress());
    const std::string hostname = dns->GetHostname();
    const std::string domain = dns->GetDomain();
    values.fqdn = domain.empty() ? hostname : hostname + "." + domain;
    for (const std::string& name : {hostname, values.fqdn})
      if (!name.empty()) values.ownNames.push_back(name);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Network test: DNS settings unknown: %s", e.what());
  }
  try {
    values.interfaceName = ManagementInterfaceName();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Network test: management interface unknown: %s", e.what());
  }
  return values;
}

}  // namespace

TestDialog::TestDialog(Frame* owner)
    : NetworkFormDialog(owner, kWidth, kHeight, kHeaderHeight, kTitle, kText, kFooter) {
  HostValues host = ReadHost();
  for (int i = 0; i < kPingFields; ++i) {
    const std::string value = static_cast<size_t>(i) < host.addresses.size() ? host.addresses[i] : "";
    fields_[i] = AddInput(GetString(kPingLabel), value, DnsServerChar);
  }
  fields_[kPingFields] = AddInput(GetString(kResolveLabel), host.fqdn, HostnameChar);
  Finish(nullptr);
  interfaceName_ = std::move(host.interfaceName);
  ownNames_ = std::move(host.ownNames);
}

TestDialog::~TestDialog() = default;

bool TestDialog::Accept() {
  std::vector<NetworkProbe> probes;
  for (int i = 0; i < kPingFields; ++i) {
    const std::string& address = fields_[i]->Value();
    if (!address.empty() && address != "0.0.0.0") probes.push_back({NetworkProbe::Kind::kPing, address});
  }
  const std::string& name = fields_[kPingFields]->Value();
  std::vector<std::string> ownNames = ownNames_;
  if (!name.empty()) {
    probes.push_back({NetworkProbe::Kind::kResolve, name});
    ownNames.push_back(name);
  }
  ShowCursor(false);
  {
    RunTestDialog run(this, std::move(probes), interfaceName_, std::move(ownNames));
    run.RunModal();
  }
  ShowCursor(true);
  return false;
}

}  // namespace Konu
