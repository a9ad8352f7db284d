// A fresh simulated host per test, made with konu-hostsim, and the console started on it in
// a test terminal. Paths given to the helpers are relative to the host root ("var/log/...").
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/harness/SimHost.h"
#include "tests/harness/Terminal.h"

namespace KonuTest {

class SimHostFixture : public ::testing::Test {
 public:
  static bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  // A dialog run by itself in a Terminal::Fork child shows "RESULT=N" when it returns;
  // checks N, then lets the child go and checks it ended with N.
  static void FinishDialogChild(Terminal& term, int expected);

 protected:
  void SetUp() override;

  const std::string& Root() const { return host_->Root(); }
  std::string HostFile(const std::string& relative) const { return Root() + "/" + relative; }
  std::string ReadFile(const std::string& relative) const;  // "" when missing
  void WriteFile(const std::string& relative, const std::string& text) const;

  std::string Syslog() const { return ReadFile("var/log/syslog.log"); }
  std::string Journal() const { return ReadFile("var/log/hostsim.log"); }
  std::string Events() const { return ReadFile("var/log/zebd.log"); }
  std::string Audit() const { return ReadFile("var/log/audit.log"); }
  // The tool runs journalled so far, in order, each as its argument words joined by blanks
  // ("powerOffVms --terminate"); a run still hanging ends in " (hang)".
  std::vector<std::string> JournalCommands() const;

  nlohmann::json State(const std::string& pointer) const;
  void SetState(const std::string& pointer, const nlohmann::json& value) const;

  // The welcome screen's product line as the host's version record makes it.
  std::string ProductLine() const;

  // Starts konu on this host. clockSpeed > 0 runs the console's clock that much faster.
  void StartKonu(Terminal& term, const std::vector<std::string>& args = {}, double clockSpeed = 0) const;

  // StartKonu, then waits until the welcome screen is drawn and reads keys.
  void StartOnWelcome(Terminal& term, const std::vector<std::string>& args = {}, double clockSpeed = 0) const;

  // StartOnWelcome, the F2 login, Down in the menu to the entry whose pane shows `entryPane`
  // and Enter; returns when `shown` is drawn and the console reads keys.
  void OpenFromMenu(Terminal& term, const std::string& entryPane, const std::string& shown,
                    double clockSpeed = 0) const;

  // Waits until `text` shows and the console reads keys.
  static void Ready(Terminal& term, const std::string& text);

  // Waits until `text` is gone and the console reads keys again.
  static void ReadyWithout(Terminal& term, const std::string& text);

  // Presses `key` (a key name such as "F11", or one character typed as it stands) and waits
  // until `text` shows and the console reads keys.
  static void PressUntil(Terminal& term, const std::string& key, const std::string& text);

  // True when the journal has a tool run of exactly `command` (as JournalCommands gives it).
  bool Ran(const std::string& command) const;

  // The foreground colour of the first cell of `text` on the screen; -100 when it is not shown.
  static int Foreground(const Terminal& term, const std::string& text);

  // On the welcome screen: `key` ("F2" or "F12"), then root's password (`secret`) in the login
  // form of a remote terminal (the name field first); returns when the form has closed.
  static void LogIn(Terminal& term, const char* key, const char* secret = "konu");

  // In the System Customization menu: Down until the information pane shows `footer`
  // ("<Enter> Reset"), then waits for key reading.
  static void MenuDownTo(Terminal& term, const std::string& footer);

  // Waits for a message box showing `text`, closes it with Enter and waits until it is gone
  // and the screen beneath reads keys again.
  static void Acknowledge(Terminal& term, const std::string& text);

  // konu-hostsim card WORDS... ("insert USER", "remove"): the reader changes and the console
  // is told with SIGUSR1.
  void Card(const std::vector<std::string>& words) const;

  void SetPassword(const std::string& user, const std::string& password) const {
    host_->SetPassword(user, password);
  }
  bool PasswordIs(const std::string& user, const std::string& password) const {
    return host_->PasswordIs(user, password);
  }

  // A console user in the state: password, and whether it is denied or its password expired.
  void AddUser(const std::string& name, const std::string& password, bool denied, bool expired) const;

  // True when the program left the alternate screen and showed the cursor again.
  static bool TerminalRestored(const Terminal& term);

  // Processes whose parent is `pid` (running or not yet reaped).
  static std::vector<int> ChildrenOf(int pid);

 private:
  std::unique_ptr<SimHost> host_;  // removed with the test
};

}  // namespace KonuTest
