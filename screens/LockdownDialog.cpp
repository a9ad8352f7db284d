// LockdownDialog: 70 x 11, one check box; the enter and exit commands of qal-cmd.
#include "screens/LockdownDialog.h"

#include <curses.h>
#include <syslog.h>

#include <string>

#include "host/Log.h"
#include "ops/CommandRunner.h"
#include "ops/QalCmd.h"
#include "ui/FormKeys.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 11;
constexpr int kHeaderHeight = 6;
constexpr int kTitleId = 245;  // "Configure Lockdown Mode"
constexpr int kTextId = 246;
constexpr int kBoxId = 247;  // "Enable lockdown mode"
constexpr const char kFooter[] =
    "{color:black}<Space>{/color} {color:dark-grey}Toggle "
    "Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";
constexpr const char kQalCmd[] = "/bin/qal-cmd";
constexpr int kOutputLimit = 255;

struct Direction {
  const char* command;
  const char* done;
  const char* failed;
};
constexpr Direction kEnter{"qalsvc/auth/lockdown_mode_enter", "Lockdown mode enabled",
                           "Enabling lockdown mode failed with error: %s"};
constexpr Direction kExit{"qalsvc/auth/lockdown_mode_exit", "Lockdown mode disabled",
                          "Disabling lockdown mode failed with error: %s"};

}  // namespace

LockdownDialog::LockdownDialog(Frame* owner)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight),
      enabled_(QalCmdGetBool("qalsvc/auth/lockdown_is_enabled")) {
  box_ = std::make_unique<CheckItem>(GetString(kBoxId), enabled_);
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems({box_.get()});
}

LockdownDialog::~LockdownDialog() = default;

void LockdownDialog::Switch(bool enable) {
  const Direction& direction = enable ? kEnter : kExit;
  const char* argv[] = {"qal-cmd", "-U", konuServiceUser, direction.command, nullptr};
  char out[kOutputLimit + 1] = {};
  char err[kOutputLimit + 1] = {};
  int outLength = kOutputLimit;
  int errLength = kOutputLimit;
  const int rc = RunCommand(kQalCmd, argv, out, &outLength, err, &errLength);
  if (rc == 0) {
    Log(LOG_INFO, "%s", direction.done);
    enabled_ = enable;
    return;
  }
  std::string message(err, errLength > 0 ? static_cast<size_t>(errLength) : 0);
  while (!message.empty() && message.back() == '\n') message.pop_back();
  Log(LOG_ERR, direction.failed, message.c_str());
}

int LockdownDialog::EventLoop() {
  SetTitle(GetString(kTitleId));
  SetText(GetString(kTextId));
  SetFooter(kFooter);
  list_->Draw();
  for (;;) {
    const int key = GetKey(true);
    if (key == kKeyEsc) return 0;
    if (key == ' ') {
      box_->SetChecked(!box_->IsChecked());
      list_->Draw();
    } else if (key == KEY_DOWN) {
      list_->Down();
    } else if (key == KEY_UP) {
      list_->Up();
    } else if (IsEnterKey(key)) {
      if (box_->IsChecked() != enabled_) Switch(box_->IsChecked());
      return 1;
    }
  }
}

}  // namespace Konu
