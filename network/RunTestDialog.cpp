// RunTestDialog: the progress lines and the key loop around the worker.
#include "network/RunTestDialog.h"

#include "app/Runtime.h"
#include "ui/Footers.h"
#include "ui/FormKeys.h"
#include "ui/Markup.h"

namespace Konu {
namespace {

constexpr int kWidth = 68;
constexpr int kHeight = 13;
constexpr int kHeaderHeight = 5;

enum StringId {
  kTitle = 212,      // "Testing Management Network"
  kText = 213,       // "You may interrupt the test at any time."
  kPinging = 214,    // "Pinging address"
  kResolving = 215,  // "Resolving hostname"
  kFailed = 216,     // "Failed."
  kOk = 217          // "OK."
};

constexpr const char* kFooterInterrupt =
    "{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

}  // namespace

RunTestDialog::RunTestDialog(Frame* owner, std::vector<NetworkProbe> probes, std::string interfaceName,
                             std::vector<std::string> ownNames)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight),
      probes_(std::move(probes)),
      interfaceName_(std::move(interfaceName)),
      ownNames_(std::move(ownNames)) {
  Window* content = Content();
  progress_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), content->Height(), 0);
}

RunTestDialog::~RunTestDialog() = default;

void RunTestDialog::ShowProgress() {
  std::string text;
  for (size_t i = 0; i < probes_.size() && i <= results_.size(); ++i) {
    const NetworkProbe& probe = probes_[i];
    text += GetString(probe.kind == NetworkProbe::Kind::kPing ? kPinging : kResolving);
    text += " " + LiteralMarkup(probe.target) + " ... ";
    if (i < results_.size()) text += GetString(results_[i] ? kOk : kFailed);
    text += "\n";
  }
  progress_->SetText(text);
  Update();
}

int RunTestDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(probes_.empty() ? kFooterOk : kFooterInterrupt);
  ShowProgress();
  NetworkTestRun run(Runtime::Get().Host(), probes_, interfaceName_, ownNames_);
  for (;;) {
    const bool finished = results_.size() >= probes_.size();
    const int key = GetKey(true, finished ? -1 : run.ResultFd());
    if (key == kWoken) {
      for (bool ok : run.TakeResults()) results_.push_back(ok);
      if (results_.size() >= probes_.size()) SetFooter(kFooterOk);
      ShowProgress();
    } else if (key == kKeyEsc) {
      run.Stop();
      return 0;
    } else if (finished && IsEnterKey(key)) {
      return 1;
    }
  }
}

}  // namespace Konu
