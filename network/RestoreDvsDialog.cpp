// RestoreDvsDialog: the checks before the form, the form's keys and the rebuilt port.
#include "network/RestoreDvsDialog.h"

#include <curses.h>
#include <syslog.h>

#include "app/Runtime.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "network/DvsUplinksDialog.h"
#include "network/VlanDialog.h"
#include "ui/FormKeys.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"
#include "ui/QuestionDialog.h"

namespace Konu {
namespace {

using HostCtl::Lib::HostCtlException;

constexpr int kWidth = 70;
constexpr int kHeight = 16;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 188;              // "Restore DVS"
constexpr int kText = 189;               // "Enter the properties for new DVS host local port ..."
constexpr int kVlanLabel = 46;           // "VLAN (optional)"
constexpr int kUnblock = 185;            // "Restore to default blocked setting (unblocked) "
constexpr int kSelectUplinks = 186;      // "Select DVS uplinks"
constexpr int kInvalidVlanTitle = 88;    // "Invalid VLAN ID"
constexpr int kInvalidVlan = 187;        // "Please enter a valid VLAN ID (1-4094)."
constexpr int kErrorTitle = 190;         // "Restore DVS: Error"
constexpr int kCheckLogs = 191;          // "Unable to restore DVS. Check logs for details."
constexpr int kOtherVendor = 192;        // "... cannot be performed on 3rd party DVS."
constexpr int kNoneSelectedTitle = 195;  // "DVS Uplinks: Warning"
constexpr int kNoneSelected = 196;       // "No uplinks were selected."
constexpr int kContinue = 197;           // "Do you want to continue?"
constexpr int kNoUplinksTitle = 198;     // "No DVS Uplinks: Error"
constexpr int kNoUplinks = 199;          // "No uplinks are configured on the host for this DVS."
constexpr int kFieldWidth = 6;
constexpr const char* kFooter =
    "{color:black}<Space>{/color} {color:dark-grey}Mark Selected{/color}  {color:black}<Enter>{/color} "
    "{color:dark-grey}Select{/color}{align:right}{color:black}<F11>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : " ") + name;
  return text.empty() ? "none" : text;
}

}  // namespace

void RestoreDvs(Frame* owner) {
  const HostCtl::Host& host = Runtime::Get().Host();
  ManagementDvsPort found;
  std::string vendor;
  try {
    found = FindManagementDvsPort(host);
    vendor = host.CreateDistributedSwitchInfo()->GetVendor(found.dvsName);
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Restore DVS failed: %s", e.what());
    MessageDialog error(owner, kErrorTitle, kCheckLogs);
    error.RunModal();
    return;
  }
  if (vendor != HostCtl::Network::kOwnDvsVendor) {
    Log(LOG_ERR, "Restore DVS failed: %s is a switch of vendor %s", found.dvsName.c_str(), vendor.c_str());
    MessageDialog error(owner, kErrorTitle, kOtherVendor);
    error.RunModal();
    return;
  }
  RestoreDvsDialog dialog(owner, std::move(found));
  dialog.RunModal();
}

RestoreDvsDialog::RestoreDvsDialog(Frame* owner, ManagementDvsPort found)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight),
      found_(std::move(found)),
      selected_(found_.PortUplinks()),
      vlan_(GetString(kVlanLabel), found_.port.vlanId ? std::to_string(found_.port.vlanId) : "", kFieldWidth),
      spacer_("", false),
      unblock_(GetString(kUnblock), false),
      uplinks_("", true) {
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems({&vlan_, &spacer_, &unblock_, &uplinks_});
}

RestoreDvsDialog::~RestoreDvsDialog() = default;

void RestoreDvsDialog::Draw() {
  uplinks_.SetText(std::string(GetString(kSelectUplinks)) + ": " + LiteralMarkup(Joined(selected_)));
  list_->Draw();
  ShowCursor(list_->FocusedItem() == &vlan_);
}

void RestoreDvsDialog::SelectUplinks() {
  if (found_.switchUplinks.empty()) {
    MessageDialog error(this, kNoUplinksTitle, kNoUplinks);
    error.RunModal();
    return;
  }
  DvsUplinksDialog dialog(this, found_.switchUplinks, selected_);
  if (dialog.RunModal() == 1) selected_ = dialog.Result();
}

bool RestoreDvsDialog::Accept(uint16_t& vlanId) {
  const std::string& text = vlan_.Value();
  // Digits only; anything too long for the range is simply out of it.
  const unsigned long n = text.empty() ? 0 : text.size() > 9 ? 5000 : std::stoul(text);
  if (!text.empty() && (n < 1 || n > 4094)) {
    {
      MessageDialog refusal(this, kInvalidVlanTitle, kInvalidVlan);
      refusal.RunModal();
    }
    list_->FocusOrdinal(0);
    return false;
  }
  vlanId = static_cast<uint16_t>(n);
  if (selected_.empty()) {
    QuestionDialog question(this, kNoneSelectedTitle, kNoneSelected, kContinue);
    if (question.RunModal() != 1) return false;
  }
  return true;
}

void RestoreDvsDialog::Restore(uint16_t vlanId) {
  HostCtl::Network::DVSwitchPort properties = found_.port;
  properties.vlanId = vlanId;
  properties.uplinks = selected_;
  if (unblock_.IsChecked()) properties.blocked = false;
  const std::string nicName = found_.nic->GetName();
  Log(LOG_INFO, "Restoring DVS %s port %s of %s as a host local port: VLAN %u, uplinks %s, %s",
      found_.dvsName.c_str(), found_.port.key.c_str(), nicName.c_str(), static_cast<unsigned>(vlanId),
      Joined(selected_).c_str(), properties.blocked ? "blocked" : "unblocked");
  try {
    std::unique_ptr<HostCtl::Network::DistributedSwitchInfo> dvs =
        Runtime::Get().Host().CreateDistributedSwitchInfo();
    const std::string key = dvs->AddHostLocalPort(found_.dvsName, found_.port.key, properties);
    dvs->SetInterfacePort(nicName, found_.dvsName, key);
    Log(LOG_INFO, "Moved %s to host local port %s of DVS %s", nicName.c_str(), key.c_str(),
        found_.dvsName.c_str());
  } catch (const HostCtlException& e) {
    Log(LOG_ERR, "Restore DVS failed: %s", e.what());
    MessageDialog error(this, kErrorTitle, kCheckLogs);
    error.RunModal();
  }
}

int RestoreDvsDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooter);
  Draw();
  for (;;) {
    const int key = GetKey(true);
    const Item* focused = list_->FocusedItem();
    if (key == kKeyEsc) {
      ShowCursor(false);
      return 0;
    }
    if (key == KEY_F(11)) {
      uint16_t vlanId = 0;
      if (Accept(vlanId)) {
        ShowCursor(false);
        SetFooter("");
        Restore(vlanId);
        return 1;
      }
    } else if (key == KEY_UP) {
      list_->Up();
    } else if (key == KEY_DOWN) {
      list_->Down();
    } else if (focused == &vlan_) {
      if (IsVlanIdKey(key)) vlan_.HandleKey(key);
    } else if (focused == &unblock_ && key == ' ') {
      unblock_.SetChecked(!unblock_.IsChecked());
    } else if (focused == &uplinks_ && IsEnterKey(key)) {
      ShowCursor(false);
      SelectUplinks();
    }
    Draw();
  }
}

}  // namespace Konu
