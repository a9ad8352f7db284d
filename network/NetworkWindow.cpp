// NetworkWindow: entry, the summary panes, the keys and the exit confirmation.
#include "network/NetworkWindow.h"

#include <curses.h>
#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/AdaptersDialog.h"
#include "network/AddressDialogs.h"
#include "network/ApplyChangesDialog.h"
#include "network/ManagementUplinks.h"
#include "network/VlanDialog.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

using HostCtl::Lib::HostCtlException;

constexpr int kTitle = 7;             // "Configure Management Network"
constexpr int kErrorTitle = 17;       // "Enable Management Network: Error"
constexpr int kNoInterface = 19;      // "Management network interface cannot be found."
constexpr int kFirstEntryLabel = 45;  // "Network Adapters", then the other five in order
constexpr const char* kPaneFooter = "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}";
constexpr const char* kScreenFooter =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}{color:white}<Esc> "
    "{/color}{color:light-grey}Exit{/color}{/align}";
constexpr int kEsc = 27;

// The string ids of the entries' labels.
constexpr int kEntryLabels[NetworkWindow::kEntryCount] = {45, 46, 47, 48, 51, 52};
static_assert(kEntryLabels[0] == kFirstEntryLabel);

}  // namespace

NetworkWindow::NetworkWindow(Frame* owner) : RootWindow(owner) {
  std::vector<Item*> items;
  for (int id : kEntryLabels) {
    entries_.push_back(std::make_unique<LabelItem>(GetString(id), true));
    items.push_back(entries_.back().get());
  }
  MenuList().SetItems(items);
}

NetworkWindow::~NetworkWindow() = default;

int NetworkWindow::Selected() const { return MenuList().Focus().FocusedIndex(); }

int NetworkWindow::Run() {
  if (!Load()) {
    Log(LOG_ERR, "Could not get a suitable management interface");
    // Over the screen beneath: this one is never shown.
    MessageDialog error(Owner(), kErrorTitle, kNoInterface);
    error.RunModal();
    return 0;
  }
  RunModal();
  return 1;
}

bool NetworkWindow::Load() {
  model_.changed = false;
  model_.ipv6GatewayChanged = false;
  try {
    networkInfo_ = Runtime::Get().Host().CreateNetworkInfo();
    model_.ipv6Enabled = model_.ipv6EnabledAtEntry = networkInfo_->IsNukIpv6Enabled();
    nic_ = FindManagementInterface(*networkInfo_);
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Could not locate the management interface: %s", e.what());
    nic_.reset();
  }
  if (!nic_) return false;
  try {
    if (nic_->IsStale()) nic_->Refresh();
    model_.appliedConfig = nic_->GetConfiguredIpConfig();
    model_.pendingConfig = model_.appliedConfig;
    model_.ipv6Addresses = nic_->GetCurrentIpConfig().GetIpv6Network();
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting ip configuration failed: %s", e.what());
  }
  LoadAdaptersAndVlan();
  try {
    model_.appliedConfig.SetIpv4Gateway(RoutingInfo().GetNuKernelDefaultGateway());
    model_.appliedConfig.SetIpv6Gateway(RoutingInfo().GetIpv6NuKernelDefaultGateway());
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting default gateway failed: %s", e.what());
  }
  LoadDns();
  return true;
}

void NetworkWindow::LoadAdaptersAndVlan() {
  ManagementUplinks uplinks(*nic_, VirtualSwitchInfo());
  if (!IsOnDistributedSwitch(*networkInfo_)) uplinks.GetUplinks(model_.selectedAdapters);
  uplinks.GetMaxActiveUplinks(model_.maxActiveUplinks);
  uplinks.GetVlan(model_.vlanId);
}

void NetworkWindow::LoadDns() {
  using HostCtl::Network::Ipv4Address;
  using HostCtl::Network::Ipv6Address;
  try {
    DnsConfig().Refresh();
    model_.hostname = DnsConfig().GetHostname();
    // IPv4 servers first, then IPv6 ones: the primary slot takes the first, the alternate
    // slot the second (the IPv6 server when there is a single IPv4 one).
    std::vector<DnsServerAddress> servers;
    for (const Ipv4Address& a : DnsConfig().GetNameServers()) servers.emplace_back(a);
    for (const Ipv6Address& a : DnsConfig().GetIpv6NameServers()) servers.emplace_back(a);
    if (servers.size() > 0) model_.primaryDnsServer = std::make_unique<DnsServerAddress>(servers[0]);
    if (servers.size() > 1) model_.alternateDnsServer = std::make_unique<DnsServerAddress>(servers[1]);
    model_.suffixes.clear();
    for (const std::string& domain : DnsConfig().GetSearchDomains())
      model_.suffixes += (model_.suffixes.empty() ? "" : " ") + domain;
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting DNS configuration failed: %s", e.what());
  }
}

void NetworkWindow::Refresh() {
  const int entry = Selected();
  if (entry < 0 || entry >= kEntryCount) return;
  InformationTitle().SetText(GetString(kEntryLabels[entry]));
  InformationText().SetText(SummaryText(entry));
  // The footers share their row with the list and the pane text: drawn last, they stay.
  LeftFooter().SetText(kPaneFooter);
  RightFooter().SetText(kScreenFooter);
  Update();
}

int NetworkWindow::EventLoop() {
  MenuTitle().SetText(GetString(kTitle));
  MenuList().Draw();
  Refresh();
  for (;;) {
    const int key = GetKey(true);
    if (key == KEY_DOWN || key == KEY_UP) {
      if (key == KEY_DOWN)
        MenuList().Down();
      else
        MenuList().Up();
      Refresh();
    } else if (key == '\n') {
      Open(Selected());
      MenuList().Draw();
      Refresh();
    } else if (key == kEsc) {
      if (Leave()) return 1;
    }
  }
}

void NetworkWindow::Open(int entry) {
  switch (entry) {
    case kAdapters:
      OpenAdapters();
      break;
    case kVlan:
      OpenVlan();
      break;
    case kIpv4:
      EditIpv4(this, model_);
      break;
    case kIpv6:
      EditIpv6(this, model_);
      break;
    case kDns:
      EditDns(this, model_);
      break;
    case kSuffixes:
      EditSuffixes(this, model_);
      break;
    default:
      break;
  }
}

void NetworkWindow::OpenAdapters() {
  std::string switchName;
  try {
    switchName = ManagementUplinks(*nic_, VirtualSwitchInfo()).SwitchName();
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Getting switch name failed: %s", e.what());
    return;
  }
  AdaptersDialog dialog(this, model_.selectedAdapters, model_.maxActiveUplinks, switchName);
  if (dialog.RunModal() != 1) return;
  // Order matters: the first adapter gives the interface its MAC address.
  if (dialog.Result() == model_.selectedAdapters && dialog.MaxActiveUplinks() == model_.maxActiveUplinks)
    return;
  model_.selectedAdapters = dialog.Result();
  model_.maxActiveUplinks = dialog.MaxActiveUplinks();
  model_.changed = true;
  Refresh();
}

void NetworkWindow::OpenVlan() {
  VlanDialog dialog(this, model_.vlanId);
  if (dialog.RunModal() != 1 || dialog.VlanId() == model_.vlanId) return;
  model_.vlanId = dialog.VlanId();
  model_.changed = true;
  Refresh();
}

bool NetworkWindow::Leave() {
  const bool ipv6EnablementChanged = model_.ipv6Enabled != model_.ipv6EnabledAtEntry;
  if (!model_.changed && !ipv6EnablementChanged) return true;
  ApplyChangesDialog confirm(this, ipv6EnablementChanged);
  switch (confirm.RunModal()) {
    case ApplyChangesDialog::kYes:
      Apply();
      Log(LOG_INFO, "Network settings changed.");
      return true;
    case ApplyChangesDialog::kNo:
      return true;
    default:
      return false;
  }
}

void NetworkWindow::Step(const char* failure, const std::function<void()>& work) {
  try {
    work();
  } catch (const HostCtlException& e) {
    const std::string text = failure + std::string(e.what());
    Log(LOG_ERR, "%s", text.c_str());
    MessageDialog error(this, kErrorTitle, LiteralMarkup(text));
    error.RunModal();
  }
}

}  // namespace Konu
