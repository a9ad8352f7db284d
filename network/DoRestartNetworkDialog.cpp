// DoRestartNetworkDialog: 70 x 19; logs and posts the restart, then down, refresh, up, and
// the addresses the interface came back with.
#include "network/DoRestartNetworkDialog.h"

#include <syslog.h>

#include "host/IpConfig.h"
#include "host/Log.h"
#include "host/NukNic.h"
#include "ops/Events.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 19;
constexpr int kHeaderHeight = 5;
constexpr int kTitle = 8;        // "Restart Management Network"
constexpr int kText = 126;       // "Please wait while the management network restarts."
constexpr int kStopping = 127;   // "Stopping management network."
constexpr int kStarting = 128;   // "Starting management network."
constexpr int kAddressIs = 129;  // "IP address is "
constexpr int kDone = 115;       // "Done."
constexpr const char* kFooter =
    "{align:right}{color:black}<Enter>{/color}{color:dark-grey} OK{/color}{/align}";
constexpr int kEnter = 10;
constexpr size_t kShownIpv6 = 2;
// With exactly this many entries the list is shown whole, past the cap.
constexpr size_t kWholeListSize = 3;

}  // namespace

std::string RestartAddressLines(const HostCtl::Network::IpConfig& current, bool showIpv4,
                                const std::string& label) {
  std::string lines;
  if (showIpv4) lines += "\n   " + label + " " + current.GetIpv4Address().GetStringAddress() + "\n";
  const auto& networks = current.GetIpv6Network();
  if (networks.empty()) return lines;
  if (!showIpv4) lines += "\n";
  size_t shown = 0;
  for (const auto& network : networks) {
    if (shown == kShownIpv6 && networks.size() != kWholeListSize) {
      lines += "   ...\n";
      break;
    }
    if (network.GetIpv6AddressType() != HostCtl::Network::Ipv6AddressType::kStatic ||
        network.GetIpv6Scope() == HostCtl::Network::Ipv6Scope::kLink)
      continue;
    lines += "\n" + label + " " + network.GetStringAddress() + "\n";
    ++shown;
  }
  return lines;
}

DoRestartNetworkDialog::DoRestartNetworkDialog(Frame* owner, HostCtl::Network::NukNic& nic)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), nic_(nic) {
  Window* content = Content();
  progress_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), content->Height(), 0);
}

DoRestartNetworkDialog::~DoRestartNetworkDialog() = default;

void DoRestartNetworkDialog::Append(const std::string& text) {
  progress_->AppendText(text);
  Update();
  Paint();  // each step shows before the next one runs
}

int DoRestartNetworkDialog::EventLoop() {
  if (nic_.IsStale()) nic_.Refresh();
  const bool dhcp = nic_.GetConfiguredIpConfig().GetUseDhcp();
  const std::string name = nic_.GetName();
  Log(LOG_INFO, "Restarting %s", name.c_str());
  PostEvent(KonuEvent::NetworkRestart, name);

  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter("");
  Append(std::string(GetString(kStopping)) + " ");
  nic_.TakeDown();
  nic_.Refresh();
  Append(std::string(GetString(kDone)) + "\n");
  nic_.BringUp();
  Append(std::string(GetString(kStarting)) + " ");
  Append(RestartAddressLines(nic_.GetCurrentIpConfig(), !dhcp, GetString(kAddressIs)));
  Append(GetString(kDone));
  SetFooter(kFooter);
  while (GetKey(true) != kEnter) {
  }
  return 1;
}

}  // namespace Konu
