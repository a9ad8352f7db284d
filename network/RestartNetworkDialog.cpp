// RestartNetworkDialog: 70 x 12, the question under the text; only F11 goes ahead.
#include "network/RestartNetworkDialog.h"

#include "network/DoRestartNetworkDialog.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 12;
constexpr int kHeaderHeight = 7;
constexpr int kTitle = 122;     // "Restart Management Network: Confirm"
constexpr int kText = 123;      // "Restarting the management network will result in a brief ..."
constexpr int kQuestion = 124;  // "Restart management network now?"

}  // namespace

RestartNetworkDialog::RestartNetworkDialog(Frame* owner, HostCtl::Network::NukNic& nic)
    : Dialog(owner, kWidth, kHeight, kHeaderHeight), nic_(nic) {
  Window* content = Content();
  question_ = std::make_unique<TextArea>(content, 0, 0, content->Width(), content->Height(), 0);
}

RestartNetworkDialog::~RestartNetworkDialog() = default;

int RestartNetworkDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  question_->SetText(GetString(kQuestion));
  if (!AwaitF11()) return 0;
  {
    DoRestartNetworkDialog restart(this, nic_);
    restart.RunModal();
  }
  return 1;
}

}  // namespace Konu
