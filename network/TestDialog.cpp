// TestDialog: the fields, their values from the host and the key loop.
#include "network/TestDialog.h"

#include <curses.h>
#include <syslog.h>

#include <exception>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/DnsFieldKeys.h"
#include "network/RunTestDialog.h"
#include "ops/HostFacts.h"
#include "ui/FormKeys.h"

namespace Konu {
namespace {

constexpr int kWidth = 68;
constexpr int kHeight = 14;
constexpr int kHeaderHeight = 6;
constexpr int kFieldWidth = 40;

enum StringId {
  kTitle = 9,           // "Test Management Network"
  kText = 209,          // "By default, this test will attempt to ping your default gateway and ..."
  kPingLabel = 210,     // "Ping Address"
  kResolveLabel = 211,  // "Resolve Hostname"
};

constexpr const char* kFooter =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

}  // namespace

TestDialog::TestDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  std::vector<Item*> items;
  for (int i = 0; i <= kPingFields; ++i) {
    fields_[i] =
        std::make_unique<InputItem>(GetString(i < kPingFields ? kPingLabel : kResolveLabel), "", kFieldWidth);
    items.push_back(fields_[i].get());
  }
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems(items);
  FillFromHost();
}

TestDialog::~TestDialog() = default;

void TestDialog::FillFromHost() {
  const HostCtl::Host& host = Runtime::Get().Host();
  try {
    auto gateway = host.CreateRoutingInfo(HostCtl::kDefaultTcpipStack)->GetNuKernelDefaultGateway();
    fields_[0]->SetValue(gateway.GetStringAddress());
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Network test: default gateway unknown: %s", e.what());
  }
  try {
    auto dns = host.CreateDnsConfig(HostCtl::kDefaultTcpipStack);
    std::vector<std::string> servers;
    for (const auto& server : dns->GetNameServers()) servers.push_back(server.GetStringAddress());
    for (const auto& server : dns->GetIpv6NameServers()) servers.push_back(server.GetStringAddress());
    for (size_t i = 0; i < servers.size() && i + 1 < kPingFields; ++i) fields_[i + 1]->SetValue(servers[i]);
    const std::string hostname = dns->GetHostname();
    const std::string domain = dns->GetDomain();
    const std::string fqdn = domain.empty() ? hostname : hostname + "." + domain;
    fields_[kPingFields]->SetValue(fqdn);
    for (const std::string& name : {hostname, fqdn})
      if (!name.empty()) ownNames_.push_back(name);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Network test: DNS settings unknown: %s", e.what());
  }
  try {
    interfaceName_ = ManagementInterfaceName();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Network test: management interface unknown: %s", e.what());
  }
}

void TestDialog::Draw() {
  ShowCursor(true);
  list_->Draw();
}

void TestDialog::RunTest() {
  std::vector<NetworkProbe> probes;
  for (int i = 0; i < kPingFields; ++i) {
    const std::string& address = fields_[i]->Value();
    if (!address.empty() && address != "0.0.0.0") probes.push_back({NetworkProbe::Kind::kPing, address});
  }
  const std::string& name = fields_[kPingFields]->Value();
  if (!name.empty()) probes.push_back({NetworkProbe::Kind::kResolve, name});
  std::vector<std::string> ownNames = ownNames_;
  if (!name.empty()) ownNames.push_back(name);
  ShowCursor(false);
  {
    RunTestDialog run(this, std::move(probes), interfaceName_, std::move(ownNames));
    run.RunModal();
  }
  Draw();
}

int TestDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooter);
  Draw();
  for (;;) {
    const int key = GetKey(true);
    const int focused = list_->Focus().ordinal;
    if (key == kKeyEsc) {
      ShowCursor(false);
      return 0;
    } else if (IsEnterKey(key)) {
      RunTest();
    } else if (key == KEY_UP) {
      list_->Up();
    } else if (key == KEY_DOWN || key == kKeyTab) {
      list_->Down();
    } else if (focused < kPingFields ? AcceptsServerAddressKey(key) : AcceptsHostnameKey(key)) {
      fields_[focused]->HandleKey(key);
      list_->Draw();
    }
  }
}

}  // namespace Konu
