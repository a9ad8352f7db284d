// GeneralWindow: the information pane's body for each kind of entry.
#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "screens/GeneralWindow.h"
#include "screens/SupportPane.h"
#include "screens/SystemLogs.h"
#include "screens/WelcomeHostFacts.h"
#include "ui/Markup.h"

namespace Konu {
namespace {

constexpr int kPasswordTextId = 21;
constexpr int kLockdownTextId = 22;
constexpr int kNetworkTextId = 23;
constexpr int kLogsTextId = 27;
constexpr int kDhcpIdentityId = 31;
constexpr int kKeyboardTextId = 32;
constexpr int kIpv4AddressId = 35;
constexpr int kIpv6AddressesId = 36;
constexpr int kHostnameId = 40;
constexpr int kSetId = 111;
constexpr int kNotSetId = 112;
constexpr int kEnabledId = 113;
constexpr int kDisabledId = 114;

std::string White(const std::string& text) { return "{color:white}" + text + "{/color}"; }

}  // namespace

std::string GeneralWindow::StringPane(int id) const { return GetString(id); }

std::string GeneralWindow::PasswordPane() const {
  const int state = Runtime::Get().session.emptyPassword ? kNotSetId : kSetId;
  return White(GetString(state)) + "\n\n" + GetString(kPasswordTextId);
}

std::string GeneralWindow::LockdownPane() const {
  return White(GetString(lockdownEnabled_ ? kEnabledId : kDisabledId)) + "\n\n" + GetString(kLockdownTextId);
}

std::string GeneralWindow::NetworkPane() const {
  const ManagementFacts facts = ReadManagementFacts(DnsConfig());
  std::string text =
      White(std::string(GetString(kHostnameId)) + ":") + "\n  " + LiteralMarkup(facts.hostname) + "\n\n";
  const bool hasIpv4 = !facts.ipv4Disabled && facts.ipv4Address != "0.0.0.0" && !facts.ipv4Address.empty();
  text += White(std::string(GetString(kIpv4AddressId)) + ":") + "\n  " +
          (hasIpv4 ? facts.ipv4Address : GetString(kNotSetId)) + "\n";
  if (facts.useDhcp) text += std::string(GetString(kDhcpIdentityId)) + "\n";
  text += "\n" + White(std::string(GetString(kIpv6AddressesId)) + ":") + "\n";
  if (facts.ipv6Networks.empty()) text += "  " + std::string(GetString(kNotSetId)) + "\n";
  for (const HostCtl::Network::Ipv6Network& network : facts.ipv6Networks)
    text += "  " + network.GetStringAddress() + "/" + std::to_string(network.GetPrefixLength()) + "\n";
  return text + "\n" + GetString(kNetworkTextId);
}

std::string GeneralWindow::SupportPane() const {
  return SupportPageWithHints(supportPages_, supportPage_, InformationText().Height());
}

std::string GeneralWindow::LogsPane() const {
  std::string text;
  int number = 0;
  for (const SystemLog* log : AvailableLogs())
    text += "{color:white}<" + std::to_string(++number) + "> {color:light-grey}" + log->name + "{/color}\n";
  return text + "\n" + GetString(kLogsTextId);
}

std::string GeneralWindow::KeyboardPane() const {
  std::string layout;
  try {
    layout = Runtime::Get().Host().CreateSystemInfo()->GetKeyboardLayout();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Cannot read the keyboard layout: %s", e.what());
  }
  return "{color:white}" + LiteralMarkup(layout) + "{/color}\n\n{color:light-grey}" +
         GetString(kKeyboardTextId) + "{/color}";
}

}  // namespace Konu
