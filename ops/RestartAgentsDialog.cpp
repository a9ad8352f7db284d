// RestartAgentsDialog: 71 x 20; services.sh stop and start, and the live-core thread.
#include "ops/RestartAgentsDialog.h"

#include <syslog.h>

#include <cerrno>
#include <cstring>
#include <exception>

#include "app/Runtime.h"
#include "host/ChildRegistry.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "ops/Events.h"
#include "ops/WorkerThread.h"
#include "ui/Footers.h"
#include "ui/FormKeys.h"

namespace Konu {
namespace {
constexpr int kWidth = 71;
constexpr int kHeight = 20;
constexpr int kHeaderHeight = 9;
constexpr int kLabelRows = 4;
constexpr int kTitle = 237;       // "Restart Management Agents: Confirm"
constexpr int kWarning = 238;     // all remote management software is disconnected ...
constexpr int kQuestion = 239;    // "Restart management agents now?"
constexpr int kStopping = 240;    // "Stopping management agents."
constexpr int kStarting = 241;    // "Starting management agents."
constexpr int kCollect = 242;     // "Collect extra troubleshooting information"
constexpr int kCollecting = 243;  // "Collecting host agent live core information."
constexpr int kDone = 115;        // "Done."

// The thread gets the host backend, nothing of the console: it logs and asks the host only.
// Only the end of the console stops it, by killing nukbacktrace: a failure that stop caused
// is the console's end, not the collection's, and is not logged.
void CollectLiveCore(const HostCtl::Host& host, const WorkerStop& stop) {
  try {
    Log(LOG_INFO, "Executing nukbacktrace -c against mgmtd");
    const int status = host.CreateShellExec()->NukCtl_Exec(
        "/sbin/nukbacktrace -w -n mgmtd -o mgmtd-restart% -d /var/log/", false, true, false);
    if (stop.Requested()) return;
    if (status == 0) {
      host.CreateSystemInfo()->SetSystemAlert("Mgmtd core dump completed");
    } else {
      Log(LOG_ERR, "nukbacktrace failed, probably mgmtd was down");
    }
  } catch (const HostCtl::Lib::HostCtlException& e) {
    if (!stop.Requested()) Log(LOG_ERR, "%s", e.what());
  } catch (const std::exception& e) {
    // Nothing may leave the thread: an escaping exception would end the whole console.
    if (!stop.Requested()) Log(LOG_ERR, "Live core collection failed: %s", e.what());
  }
}

}  // namespace

bool StartLiveCoreThread() {
  const HostCtl::Host& host = Runtime::Get().Host();
  // The signal mask blocked at start-up is inherited, so signals stay with the signal thread.
  WorkerThread worker([&host](const WorkerStop& stop) { CollectLiveCore(host, stop); });
  if (worker.Error() == ECANCELED) return false;  // the console is ending
  if (worker.Error() != 0) {
    Log(LOG_ERR, "failed to create live core generation thread: %s", std::strerror(worker.Error()));
    return false;
  }
  worker.Detach();
  return true;
}

RestartAgentsDialog::RestartAgentsDialog(Frame* owner)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), collect_(GetString(kCollect), false) {
  Window* content = Content();
  label_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), kLabelRows, 0);
  list_ = std::make_unique<ItemList>(content, 0, kLabelRows + 1, content->Width(), 1);
  list_->SetItems({&collect_});
  progress_ << "{color:dark-grey}";
}

RestartAgentsDialog::~RestartAgentsDialog() = default;

void RestartAgentsDialog::ShowProgress(const std::string& text) {
  progress_ << text;
  label_->SetText(progress_.str());
  Update();
  Paint();  // each step shows before the next one runs
}

int RestartAgentsDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kWarning));
  label_->SetText(GetString(kQuestion));
  list_->Draw();
  const bool confirmed = AwaitF11([this](int key) {
    if (key != ' ') return;
    collect_.SetChecked(!collect_.IsChecked());
    list_->Draw();
  });
  if (!confirmed) return 0;

  SetFooter("");
  Log(LOG_INFO, "Restarting host agents");
  PostEvent(KonuEvent::RestartingHostAgents);
  label_->SetText("");
  if (collect_.IsChecked() && StartLiveCoreThread()) {
    // Only started: the collection goes on while the agents restart.
    ShowProgress(std::string(GetString(kCollecting)) + " " + GetString(kDone) + "\n");
  }
  const struct {
    int text;
    const char* command;
  } kSteps[] = {{kStopping, "/bin/sh /sbin/services.sh stop"},
                {kStarting, "/bin/sh /sbin/services.sh start"}};
  for (const auto& step : kSteps) {
    ShowProgress(GetString(static_cast<uint32_t>(step.text)));
    try {
      // The agents' own failures are not reported: the operator always sees "Done.".
      Runtime::Get().Host().CreateShellExec()->NukCtl_Exec(step.command, false, true, false);
    } catch (const HostCtl::Lib::HostCtlException& e) {
      Log(LOG_ERR, "%s", e.what());
    }
    // Killed because the console ends: the user-interface thread ends it now.
    if (ChildrenEnding()) ExitConsole(0);
    ShowProgress(std::string(" ") + GetString(kDone) + "\n");
  }

  SetFooter(kFooterOk);
  while (!IsEnterKey(GetKey(true))) {
  }
  return 1;
}

}  // namespace Konu
