// The network test running: each probe's line ("Pinging address ...", "Resolving hostname
// ...") with "OK." or "Failed." as its result arrives from the worker; Esc interrupts at any
// moment, Enter closes once every probe has answered.
//
// Design: the probes run on a NetworkTestRun worker; this dialog waits on the keyboard and the
// worker's result pipe together, so it stays responsive. Esc stops the worker (the running
// ping's child killed and reaped, the hosts file put back) before the dialog closes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "network/NetworkTestRun.h"
#include "ui/Dialog.h"

namespace Konu {

class RunTestDialog : public Dialog {
 public:
  RunTestDialog(Frame* owner, std::vector<NetworkProbe> probes, std::string interfaceName,
                std::vector<std::string> ownNames);
  ~RunTestDialog() override;

  // 1 when the test ran to its end and was closed with Enter, 0 when interrupted with Esc.
  int EventLoop() override;

 private:
  // One line per probe started so far, with the results that have come.
  void ShowProgress();

  std::vector<NetworkProbe> probes_;
  std::string interfaceName_;
  std::vector<std::string> ownNames_;
  std::vector<bool> results_;
  std::unique_ptr<TextArea> progress_;
};

}  // namespace Konu
