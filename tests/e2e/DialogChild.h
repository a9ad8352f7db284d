// The console's dialogs run on their own in a Terminal::Fork child, on a fresh simulated
// host: the child sets up the runtime the way start-up does (host root, log file, backend,
// curses with the console's colours and keys), runs one dialog modally over a plain
// full-screen frame, then shows what it returned and the session it left until "q".
#pragma once

#include <curses.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "app/Runtime.h"
#include "host/HostRoot.h"
#include "host/Log.h"
#include "host/sim/SimHost.h"
#include "tests/harness/Terminal.h"
#include "tests/screen/UiChild.h"
#include "ui/Frame.h"
#include "ui/TextArea.h"

namespace KonuTest {

// A full-screen frame standing in for the welcome screen.
class BackdropFrame : public Konu::Frame {
 public:
  BackdropFrame() : Frame(nullptr, 0, 0, COLS, LINES, 0, 7), text_(this, 2, LINES - 2, COLS - 4, 1, 7) {}
  int EventLoop() override { return 0; }
  void Say(const std::string& line) {
    text_.SetText(line);
    Update();
  }

 private:
  Konu::TextArea text_;
};

struct DialogChildSetup {
  std::string root;
  bool localConsole = false;
  std::string sessionUser;  // the logged-in user, for the password dialog
};

// Runs `run` (which builds and runs a dialog over the backdrop and returns its result) and
// then shows "RESULT=r USER=u CARD=0|1 EMPTY=0|1" until "q". Returns the child's status.
inline int RunDialogChild(const DialogChildSetup& setup, const std::function<int(Konu::Frame&)>& run) {
  Konu::SetHostRoot(setup.root);
  Konu::OpenLog("KONU");
  Konu::SetLogSink(std::make_unique<Konu::FileLogSink>(Konu::HostPath("/var/log/syslog.log")));
  HostCtl::Sim::SimHost host(setup.root);
  Konu::Runtime& runtime = Konu::Runtime::Get();
  runtime.SetHost(&host);
  runtime.localConsole = setup.localConsole;
  runtime.session.user = setup.sessionUser;
  UiCurses curses;
  if (!curses.Ok()) return 2;
  int result = -1;
  {
    BackdropFrame backdrop;
    backdrop.Update();
    runtime.topFrame = &backdrop;
    result = run(backdrop);
    const Konu::Session& session = runtime.session;
    backdrop.Say("RESULT=" + std::to_string(result) + " USER=" + session.user + " CARD=" +
                 std::to_string(session.smartCardLogin) + " EMPTY=" + std::to_string(session.emptyPassword));
    while (backdrop.GetKey(false) != 'q') {  // polls, as the console waits for keys
    }
  }
  return result;
}

// Forks a child on `term` that runs a `DialogType(&owner)` modally over the backdrop.
template <typename DialogType>
void ForkDialog(Terminal& term, const DialogChildSetup& setup) {
  term.Fork(
      [setup] {
        return RunDialogChild(setup, [](Konu::Frame& owner) {
          DialogType dialog(&owner);
          return dialog.RunModal();
        });
      },
      UiEnv());
}

}  // namespace KonuTest
