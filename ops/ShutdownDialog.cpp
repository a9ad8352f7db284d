// ShutdownDialog: 60 x 19, one check box, F2 shuts down and F11 restarts.
#include "ops/ShutdownDialog.h"

#include <curses.h>
#include <syslog.h>

#include "host/Log.h"
#include "ops/Events.h"
#include "ops/PowerConfirmDialog.h"
#include "ui/FormKeys.h"

namespace Konu {
namespace {
constexpr int kWidth = 60;
constexpr int kHeight = 19;
constexpr int kHeaderHeight = 13;
constexpr int kTitle = 161;      // "Shut Down/Restart"
constexpr int kText = 162;       // remote management software is preferred ...
constexpr int kTerminate = 163;  // "Forcefully terminate running VMs, if any ..."
constexpr const char* kFooter =
    "{color:black}<F2>{/color} {color:dark-grey}Shut Down{/color}  {color:black}<F11>{/color} "
    "{color:dark-grey}Restart{/color}{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}"
    "{/align}";
}  // namespace

ShutdownDialog::ShutdownDialog(Frame* owner)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), terminate_(GetString(kTerminate), false) {
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems({&terminate_});
}

ShutdownDialog::~ShutdownDialog() = default;

int ShutdownDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooter);
  list_->Draw();
  for (;;) {
    const int key = GetKey(true);
    if (key == ' ') {
      terminate_.SetChecked(!terminate_.IsChecked());
      list_->Draw();
    } else if (key == KEY_F(2) || key == KEY_F(11)) {
      const bool keepRunning = !terminate_.IsChecked();
      // The event goes out before anything is powered off, so a shutdown that fails to
      // start still leaves it behind.
      if (key == KEY_F(2)) {
        Log(LOG_INFO, "Shutting down host");
        PostEvent(KonuEvent::ShutdownHost);
        ShutdownConfirmDialog(this, keepRunning).RunModal();
      } else {
        Log(LOG_INFO, "Rebooting host");
        PostEvent(KonuEvent::RebootHost);
        RebootConfirmDialog(this, keepRunning).RunModal();
      }
      list_->Draw();
    } else if (key == kKeyEsc) {
      return 0;
    }
  }
}

}  // namespace Konu
