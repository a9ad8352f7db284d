// GeneralWindow: the entry table, the enable rules read from the host when the menu is
// built, and the key loop.
#include "screens/GeneralWindow.h"

#include <curses.h>
#include <syslog.h>

#include <iterator>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/NetworkRestoreWindow.h"
#include "network/NetworkWindow.h"
#include "network/RestartNetworkDialog.h"
#include "network/TestDialog.h"
#include "ops/KeyboardDialog.h"
#include "ops/QalCmd.h"
#include "ops/RestoreDialog.h"
#include "ops/TroubleShootingWindow.h"
#include "screens/ChangePasswordDialog.h"
#include "screens/LockdownDialog.h"
#include "screens/SupportPane.h"
#include "screens/SystemLogs.h"
#include "ui/FormKeys.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

constexpr const char kLockdownIsEnabled[] = "qalsvc/auth/lockdown_is_enabled";
constexpr const char kLockdownIsPossible[] = "qalsvc/auth/lockdown_is_possible";
constexpr const char kPxeBootOption[] = "PXEBootEnabled";

constexpr int kTitleId = 4;             // "System Customization"
constexpr int kDefaultPasswordId = 33;  // "Change default password to prevent unauthorized access"
constexpr int kRestartErrorTitleId = 16;
constexpr int kNoInterfaceId = 19;      // "Management network interface cannot be found."
constexpr int kInterfaceFailedId = 20;  // "Operation on the management network interface failed."

// The password footer closes its <Enter> colour; the lockdown footer does not. Operators
// know both as they are, so they stay two texts.
constexpr const char kFooterChange[] =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char kFooterLockdown[] =
    "{color:white}<Enter>{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char kFooterMore[] =
    "{color:white}<Enter>{/color}{color:light-grey} More{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
// The restore options entry shows this one too.
constexpr const char kFooterRestart[] =
    "{color:white}<Enter>{/color} {color:light-grey}Restart{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char kFooterRunTest[] =
    "{color:white}<Enter>{/color}{color:light-grey} Run Test{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char kFooterLogOut[] =
    "{align:right}{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
constexpr const char kFooterReset[] =
    "{color:white}<Enter>{/color}{color:light-grey} Reset{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";

// The menu's entries from top to bottom; `localOnly` entries exist only on the host's own
// console.
struct Slot {
  int kind;
  bool localOnly = false;
};
constexpr Slot kLayout[] = {
    {GeneralWindow::kPassword},        {GeneralWindow::kLockdown},       {GeneralWindow::kSeparator},
    {GeneralWindow::kNetwork},         {GeneralWindow::kRestartNetwork}, {GeneralWindow::kTestNetwork},
    {GeneralWindow::kRestoreNetwork},  {GeneralWindow::kSeparator},      {GeneralWindow::kKeyboard, true},
    {GeneralWindow::kTroubleshooting}, {GeneralWindow::kSeparator},      {GeneralWindow::kLogs},
    {GeneralWindow::kSeparator},       {GeneralWindow::kSupport},        {GeneralWindow::kSeparator},
    {GeneralWindow::kReset},
};

// Lockdown can be configured when it is on or could be switched on; a failing query is "no".
bool LockdownConfigurable() {
  return QalCmdGetBool(kLockdownIsEnabled) || QalCmdGetBool(kLockdownIsPossible);
}

// The management interface as the host names it now; null when there is none or the
// lookup fails (logged).
std::unique_ptr<HostCtl::Network::NukNic> FindManagementInterface() {
  try {
    std::unique_ptr<HostCtl::Network::NetworkInfo> info = Runtime::Get().Host().CreateNetworkInfo();
    info->UpdateManagementInterface();
    return info->GetManagementInterface();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Could not look up the management interface: %s", e.what());
    return nullptr;
  }
}

bool ManagementInterfaceUsable() {
  std::unique_ptr<HostCtl::Network::NukNic> nic = FindManagementInterface();
  try {
    return nic && nic->IsUsable();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Could not tell whether the management interface is usable: %s", e.what());
    return false;
  }
}

// A host booted from the network has the user option and cannot be reset from here.
bool BootedFromNetwork() {
  try {
    return Runtime::Get().Host().CreateAdvancedOptions()->UserOptionExists(kPxeBootOption);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_WARNING, "Cannot read the user option %s: %s", kPxeBootOption, e.what());
    return false;
  }
}

}  // namespace

// What an entry shows in the pane and does on Enter. A pane is either a string of the
// table (`textId`) or built by `pane`; `open` is null for entries handled in place.
struct GeneralWindow::KindInfo {
  int kind;
  const char* footer;
  int textId;
  std::string (GeneralWindow::*pane)() const;
  void (GeneralWindow::*open)();
};

const GeneralWindow::KindInfo& GeneralWindow::InfoFor(int kind) {
  static const KindInfo kKinds[] = {
      {kPassword, kFooterChange, 0, &GeneralWindow::PasswordPane, &GeneralWindow::OpenPassword},
      {kLockdown, kFooterLockdown, 0, &GeneralWindow::LockdownPane, &GeneralWindow::OpenLockdown},
      {kNetwork, kFooterMore, 0, &GeneralWindow::NetworkPane, &GeneralWindow::OpenNetwork},
      {kRestartNetwork, kFooterRestart, 24, nullptr, &GeneralWindow::OpenRestartNetwork},
      {kTestNetwork, kFooterRunTest, 25, nullptr, &GeneralWindow::OpenTestNetwork},
      {kRestoreNetwork, kFooterRestart, 26, nullptr, &GeneralWindow::OpenRestoreNetwork},
      {kSupport, kFooterLogOut, 0, &GeneralWindow::SupportPane, nullptr},
      {kLogs, kFooterLogOut, 0, &GeneralWindow::LogsPane, nullptr},
      {kTroubleshooting, kFooterMore, 28, nullptr, &GeneralWindow::OpenTroubleshooting},
      {kReset, kFooterReset, 29, nullptr, &GeneralWindow::OpenReset},
      {kKeyboard, kFooterMore, 0, &GeneralWindow::KeyboardPane, &GeneralWindow::OpenKeyboard},
      {kSeparator, "", 0, nullptr, nullptr},
  };
  for (const KindInfo& info : kKinds)
    if (info.kind == kind) return info;
  return kKinds[std::size(kKinds) - 1];
}

GeneralWindow::GeneralWindow(Frame* owner) : RootWindow(owner) {
  const bool lockdown = LockdownConfigurable();
  const bool network = ManagementInterfaceUsable();
  const bool reset = !BootedFromNetwork();
  auto enabled = [&](int kind) {
    switch (kind) {
      case kLockdown:
        return lockdown;
      case kNetwork:
      case kRestartNetwork:
      case kTestNetwork:
        return network;
      case kReset:
        return reset;
      default:
        return true;
    }
  };

  std::vector<Item*> items;
  for (const Slot& slot : kLayout) {
    if (slot.localOnly && !Runtime::Get().localConsole) continue;
    const bool on = enabled(slot.kind);
    auto item = std::make_unique<LabelItem>(GetString(slot.kind), slot.kind != kSeparator && on);
    item->SetEnabled(on);
    items.push_back(item.get());
    entries_.push_back({slot.kind, on, std::move(item)});
  }
  MenuList().SetItems(items);

  lockdownEnabled_ = QalCmdGetBool(kLockdownIsEnabled);
  supportPages_ = LayOutSupportPages(InformationText());
  supportPage_ = 0;

  warningLine_ = std::make_unique<TextArea>(&BottomLine(), 1, 0, BottomLine().Width() - 2, 1, 3);
  MenuTitle().SetText(GetString(kTitleId));
  MenuList().Draw();
  Refresh();
}

GeneralWindow::~GeneralWindow() = default;

int GeneralWindow::FocusedKind() const {
  const Item* focused = MenuList().FocusedItem();
  for (const Entry& entry : entries_)
    if (entry.item.get() == focused) return entry.kind;
  return kSeparator;
}

void GeneralWindow::Refresh() {
  const int kind = FocusedKind();
  const KindInfo& info = InfoFor(kind);
  InformationTitle().SetText(GetString(kind));
  InformationText().SetText(info.pane ? (this->*info.pane)() : StringPane(info.textId));
  RightFooter().SetText(info.footer);
  warningLine_->SetText(Runtime::Get().session.emptyPassword ? GetString(kDefaultPasswordId) : "");
  Update();
}

int GeneralWindow::EventLoop() {
  for (;;) {
    const int key = GetKey(true);
    const int kind = FocusedKind();
    if (key == kKeyEsc) return 1;
    if (key == KEY_UP || key == KEY_DOWN) {
      if (key == KEY_UP) {
        MenuList().Up();
      } else {
        MenuList().Down();
      }
      supportPage_ = 0;
      Refresh();
    } else if (kind == kSupport && (key == KEY_NPAGE || key == KEY_PPAGE)) {
      if (key == KEY_NPAGE && supportPage_ + 1 < supportPages_.size()) ++supportPage_;
      if (key == KEY_PPAGE && supportPage_ > 0) --supportPage_;
      Refresh();
    } else if (IsEnterKey(key)) {
      Open(kind);
    } else if (kind == kLogs && key >= '0' && key <= '9') {
      ViewLog(key - '0');
    }
  }
}

void GeneralWindow::Open(int kind) {
  const KindInfo& info = InfoFor(kind);
  if (!info.open) return;
  for (const Entry& entry : entries_)
    if (entry.kind == kind && !entry.enabled) return;
  (this->*info.open)();
  MenuList().Draw();
  Refresh();
}

void GeneralWindow::ViewLog(int digit) {
  const SystemLog* log = AvailableLogByNumber(digit);
  if (!log) return;
  ShowLogInPager(*this, *log);
}

void GeneralWindow::OpenPassword() { ChangePasswordDialog(this).RunModal(); }

void GeneralWindow::OpenLockdown() {
  if (LockdownDialog(this).RunModal() == 1) lockdownEnabled_ = QalCmdGetBool(kLockdownIsEnabled);
}

void GeneralWindow::OpenNetwork() { NetworkWindow(this).Run(); }

void GeneralWindow::OpenRestartNetwork() {
  std::unique_ptr<HostCtl::Network::NukNic> nic = FindManagementInterface();
  if (!nic) {
    MessageDialog(this, kRestartErrorTitleId, kNoInterfaceId).RunModal();
    return;
  }
  try {
    RestartNetworkDialog(this, *nic).RunModal();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Restarting the management network failed: %s", e.what());
    MessageDialog(this, kRestartErrorTitleId, kInterfaceFailedId).RunModal();
  }
}

void GeneralWindow::OpenTestNetwork() { TestDialog(this).RunModal(); }

void GeneralWindow::OpenRestoreNetwork() { NetworkRestoreWindow(this).RunModal(); }

void GeneralWindow::OpenTroubleshooting() { TroubleShootingWindow(this).RunModal(); }

void GeneralWindow::OpenReset() { RestoreDialog(this).RunModal(); }

void GeneralWindow::OpenKeyboard() { KeyboardDialog(this).RunModal(); }

}  // namespace Konu
