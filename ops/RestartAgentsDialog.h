// "Restart Management Agents": stops and starts the host's management agents, optionally
// starting the collection of a live core of the host agent first.
#pragma once

#include <memory>
#include <sstream>
#include <string>

#include "ui/Dialog.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"
#include "ui/TextArea.h"

namespace Konu {

class RestartAgentsDialog : public Dialog {
 public:
  explicit RestartAgentsDialog(Frame* owner);
  ~RestartAgentsDialog() override;

  // Space flips the check box; Esc returns 0 before anything ran; F11 restarts the agents
  // (the progress in the label), then Enter returns 1.
  int EventLoop() override;

 private:
  void ShowProgress(const std::string& text);

  std::unique_ptr<TextArea> label_;
  CheckItem collect_;
  std::unique_ptr<ItemList> list_;
  std::ostringstream progress_;
};

// Starts the live core collection of the host agent on a worker thread of its own, which the
// dialog does not wait for (only the end of the console does). False when no thread could be
// created (logged) or the console is ending.
bool StartLiveCoreThread();

}  // namespace Konu
