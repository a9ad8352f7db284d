// The login form through the console's welcome screen on a fresh simulated host: its two
// forms, the outcome of each attempt on screen and in the syslog, audit and event logs, the
// expired-password path, and the refusal when console login is switched off.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>

#include "tests/harness/SimHost.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

constexpr const char kMenuTitle[] = "System Customization";

class ConsoleLogin : public SimHostFixture {
 protected:
  void Start(Terminal& term, const std::vector<std::string>& env = {}) {
    if (env.empty()) {
      StartKonu(term);
    } else {
      term.Spawn({KONU_BIN, "--host-root", Root()}, env);
    }
    ASSERT_NO_FATAL_FAILURE(Ready(term, ProductLine()));
  }
  // The syslog priority ("<32>") of the first line that holds `text`; "" when none does.
  std::string Priority(const std::string& text) const {
    const std::string syslog = Syslog();
    const size_t at = syslog.find(text);
    return at == std::string::npos ? "" : syslog.substr(syslog.rfind('\n', at) + 1, 4);
  }
  void OpenLogin(Terminal& term) {
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F2", "Authentication Required"));
  }
  // From the name field: Enter to the secret, the secret, Enter.
  void Submit(Terminal& term, const std::string& name, const std::string& secret) {
    if (!name.empty()) term.Type(name);
    term.Press("Enter");
    term.Type(secret);
    term.Press("Enter");
  }
};

// Without the marker file F2 and F12 open the refusal, never the form; only Enter closes it.
TEST_F(ConsoleLogin, WithoutTheMarkerFileF2OpensTheRefusalNeverTheForm) {
  ASSERT_EQ(0, std::remove(HostFile("var/run/corbel/show-konu-login").c_str()));
  Terminal term(24, 80);
  Start(term);
  term.Press("F2");
  ASSERT_TRUE(term.WaitForText("Authentication Denied")) << term.Screen();
  for (const char* text :
       {"Direct console access has been disabled by the", "administrator for konu-host.example.test."})
    EXPECT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "Authentication Required")) << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "Login Name:")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  term.Press("x");
  ASSERT_TRUE(term.WaitUntilPolling());
  EXPECT_TRUE(Contains(term.Screen(), "Authentication Denied")) << "only Enter closes it";
  // Esc and Enter in one burst: curses reads the Enter while it looks for a longer
  // sequence after the Esc and keeps it; the Enter must still be taken at once.
  term.Write("\x1b\r");
  ASSERT_TRUE(term.WaitForNoText("Authentication Denied")) << term.Screen();
  ASSERT_NO_FATAL_FAILURE(Ready(term, ProductLine()));
  term.Press("F12");
  ASSERT_TRUE(term.WaitForText("Authentication Denied")) << term.Screen();
  EXPECT_FALSE(Contains(Audit(), "login.connect"));
}

TEST_F(ConsoleLogin, WrongThenRightPasswordOpensTheMenuWithEveryRecord) {
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  Submit(term, "", "wrong");
  ASSERT_TRUE(term.WaitForText("Authentication failed")) << term.Screen();
  Acknowledge(term, "Invalid login or password.");
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find("Login Name:", &row, &col)) << term.Screen();
  EXPECT_TRUE(Contains(term.Row(row), "[ root")) << term.Row(row);
  ASSERT_TRUE(term.Find("Password:", &row, &col));
  EXPECT_FALSE(Contains(term.Row(row), "*")) << term.Row(row);
  EXPECT_TRUE(Contains(Syslog(), "KONU[")) << Syslog();
  EXPECT_EQ("<35>", Priority("]: Authentication of user root failed")) << Syslog();  // auth, error
  EXPECT_TRUE(
      Contains(Audit(), "login.connect user=\"root\" origin=\"\" success=0 reason=\"Invalid Login\""));
  const char kFailed[] = "@&!*@*@(zeb.user.konu.login.failed)Authentication of user root failed";
  EXPECT_TRUE(Contains(Events(), kFailed)) << Events();

  // The focus stays on the secret field.
  term.Type("konu");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText(kMenuTitle)) << term.Screen();
  EXPECT_EQ("<32>", Priority("Authentication of user root succeeded")) << Syslog();  // emergency
  EXPECT_EQ("<14>", Priority("User root logged in")) << Syslog();
  EXPECT_TRUE(Contains(Audit(), "login.connect user=\"root\" origin=\"\" success=1"));
  const std::string events = Events();
  EXPECT_EQ(events.find("login.failed"), events.rfind("login.failed")) << "no event for a success";
}

// Over a serial line every byte is felt: F2 paints the form and the login paints the menu
// with no cell written twice, and a typed character or Backspace sends the one changed
// field cell in at most 25 bytes, not the form again; on a remote terminal and on the
// Linux console alike, the erased cell back in the field's colours.
TEST_F(ConsoleLogin, EachChangeIsPaintedOnceAndAKeySendsOnlyTheChangedCell) {
  for (const char* type : {"TERM=xterm-256color", "TERM=linux"}) {
    SCOPED_TRACE(type);
    Terminal term(25, 80);
    Start(term, {type, "ESCDELAY=25", "LANG=C.UTF-8"});
    auto expectEachCellWrittenOnce = [&](const char* change) {
      for (int row = 0; row < term.Rows(); ++row)
        for (int col = 0; col < term.Cols(); ++col)
          ASSERT_LE(term.CellWrites(row, col), 1) << change << ": row " << row << " column " << col;
    };
    term.ResetCellWrites();
    OpenLogin(term);
    expectEachCellWrittenOnce("F2");

    int passwordRow = 0, column = 0;
    ASSERT_TRUE(term.Find("Password:", &passwordRow, nullptr));
    term.Press("Enter");  // the cursor goes to the secret field
    ASSERT_TRUE(term.WaitFor([&] {
      int row = 0;
      term.CursorPosition(&row, &column);
      return row == passwordRow;
    }));
    ASSERT_TRUE(term.WaitUntilPolling());
    const KonuTest::CellColors field = term.Colors(passwordRow, column);
    for (const char* key : {"a", "Backspace"}) {
      const std::string before = term.Screen();
      const size_t bytes = term.BytesWritten();
      term.Press(key);
      ASSERT_TRUE(term.WaitFor([&] { return term.Screen() != before; })) << key;
      ASSERT_TRUE(term.WaitUntilPolling());
      EXPECT_LE(term.BytesWritten() - bytes, 25u) << key;
    }
    const KonuTest::CellColors erased = term.Colors(passwordRow, column);
    EXPECT_EQ(field.background, erased.background) << "the erased cell";
    EXPECT_EQ(field.foreground, erased.foreground) << "the erased cell";

    term.Type("konu");
    ASSERT_TRUE(term.WaitFor([&] { return Contains(term.Row(passwordRow), "[ **** "); })) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.ResetCellWrites();
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", kMenuTitle));
    expectEachCellWrittenOnce("login");
  }
}

TEST_F(ConsoleLogin, DeniedUserIsRefused) {
  AddUser("dave", "secret1", true, false);
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  Submit(term, "dave", "secret1");
  Acknowledge(term, "User does not have permission to login to KONU.");
  EXPECT_TRUE(Contains(term.Screen(), "Authentication Required"));
  EXPECT_TRUE(Contains(Audit(), "user=\"dave\" origin=\"\" success=0 reason=\"No permission\""));
  EXPECT_TRUE(Contains(Syslog(), "Access denied for user dave")) << Syslog();
  EXPECT_TRUE(Contains(Events(), "@&!*@*@(zeb.user.konu.login.failed)Access denied for user dave"));
}

// A password typed into the name field by mistake must reach no log, audit record or event.
TEST_F(ConsoleLogin, ANameThatIsNoAccountIsRecordedAsUnknown) {
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  Submit(term, "Typed-Secret-7", "konu");
  Acknowledge(term, "Invalid login or password.");
  EXPECT_TRUE(Contains(Syslog(), "]: Authentication of user UNKNOWN failed")) << Syslog();
  EXPECT_TRUE(
      Contains(Audit(), "login.connect user=\"UNKNOWN\" origin=\"\" success=0 reason=\"Invalid Login\""))
      << Audit();
  EXPECT_TRUE(Contains(Events(), "@&!*@*@(zeb.user.konu.login.failed)Authentication of user UNKNOWN failed"));
  for (const char* log :
       {"var/log/syslog.log", "var/log/audit.log", "var/log/zebd.log", "var/log/hostsim.log"})
    EXPECT_FALSE(Contains(ReadFile(log), "Typed-Secret")) << log << ":\n" << ReadFile(log);
}

// PAM that cannot decide (its service file or a module missing) is an invalid login on the
// screen, and PAM's own words in the log.
TEST_F(ConsoleLogin, PamFailuresOtherThanAWrongPasswordAreLoggedWithPamsText) {
  struct Case {
    const char* broken;
    std::string serviceFile;  // "" = removed
    const char* logged;
  };
  const Case cases[] = {
      {"a missing module", "auth required " + Root() + "/usr/lib/konu-sim/pam_gone.so\n",
       "]: PAM service konu: pam_authenticate failed: Module is unknown\n"},
      {"no service file", "", "]: PAM service konu: pam_start failed: Critical error - immediate abort\n"},
  };
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.broken);
    if (c.serviceFile.empty()) {
      ASSERT_EQ(0, std::remove(HostFile("etc/pam.d/konu").c_str()));
    } else {
      WriteFile("etc/pam.d/konu", c.serviceFile);
    }
    Submit(term, "", "konu");
    Acknowledge(term, "Invalid login or password.");
    EXPECT_TRUE(Contains(Syslog(), c.logged)) << Syslog();
    term.Press("Up");
  }
  EXPECT_TRUE(Contains(Syslog(), "Authentication of user root failed")) << Syslog();
}

TEST_F(ConsoleLogin, ExpiredUserSetsANewPasswordAndThenLogsInWithIt) {
  AddUser("erin", "old-pass", false, true);
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  Submit(term, "erin", "old-pass");
  ASSERT_TRUE(term.WaitForText("You will be prompted to set a new password and then login again."))
      << term.Screen();
  Acknowledge(term, "Password has expired.");
  EXPECT_TRUE(Contains(Syslog(), "Password has expired for user erin")) << Syslog();
  EXPECT_TRUE(Contains(Audit(), "user=\"erin\" origin=\"\" success=0 reason=\"Password expired\""));
  EXPECT_TRUE(Contains(Events(), "@&!*@*@(zeb.user.konu.login.failed)Access denied for user erin"));
  ASSERT_TRUE(term.WaitForText("Configure Password")) << term.Screen();
  ASSERT_NO_FATAL_FAILURE(Ready(term, "Old Password:"));
  term.Type("old-pass");
  term.Press("Enter");
  term.Type("new-pass");
  term.Press("Enter");
  term.Type("new-pass");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText("Old Password:")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  EXPECT_TRUE(Contains(Journal(), "backup.sh")) << Journal();
  EXPECT_TRUE(Contains(Syslog(), "Login password for user erin has changed")) << Syslog();

  term.Type("old-pass");  // the old password no longer works
  term.Press("Enter");
  Acknowledge(term, "Invalid login or password.");
  term.Type("new-pass");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText(kMenuTitle)) << term.Screen();
  EXPECT_TRUE(Contains(Syslog(), "User erin logged in")) << Syslog();
}

TEST_F(ConsoleLogin, CardInsertedOnTheWelcomeScreenSwitchesTheFormToPinAndF3Flips) {
  Terminal term(24, 80);
  Start(term);
  Card({"insert", "root"});
  ASSERT_TRUE(term.WaitFor([&] { return Contains(Syslog(), "Found smart card with user id 'root'"); }))
      << Syslog();
  ASSERT_TRUE(term.WaitUntilPolling());
  OpenLogin(term);
  ASSERT_TRUE(term.WaitForText("Login Id:")) << term.Screen();
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find("Login Id:", &row, &col));
  EXPECT_TRUE(Contains(term.Row(row), "[ root")) << term.Row(row);
  for (const char* text : {"Enter the smart card login PIN for", "konu-host.example.test.",
                           "PIN:", "<F3> Switch PIN/Password Login"})
    EXPECT_TRUE(Contains(term.Screen(), text)) << text << "\n" << term.Screen();
  term.Press("F3");
  ASSERT_TRUE(term.WaitForText("Login Name:")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());  // the footer comes after the form
  EXPECT_FALSE(Contains(term.Screen(), "<F3>")) << term.Screen();
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F3", "Login Id:"));
  // A wrong PIN is an invalid login like a wrong password.
  Submit(term, "", "0000");
  Acknowledge(term, "Invalid login or password.");
  term.Type("konu");
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", kMenuTitle));

  Card({"remove"});
  int status = -1;
  ASSERT_TRUE(term.WaitForExit(5000, &status)) << term.Screen();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_TRUE(Contains(Syslog(), "Logging out user id 'root'")) << Syslog();
}

// The password form's texts; no keyboard line on a remote terminal or over SSH; F3 without a
// card gives an empty login id; a host without a domain still ends its name with two dots.
TEST_F(ConsoleLogin, KeyboardLineOnlyOnALocalConsole) {
  {
    Terminal remote(24, 80);
    Start(remote);
    OpenLogin(remote);
    for (const char* text : {"Enter an authorized login name and password for", "konu-host.example.test.",
                             "Login Name:", "[ root", "Password:", "<Enter> OK  <Esc> Cancel"})
      EXPECT_TRUE(Contains(remote.Screen(), text)) << text << "\n" << remote.Screen();
    EXPECT_FALSE(Contains(remote.Screen(), "Configured Keyboard")) << remote.Screen();
    EXPECT_FALSE(Contains(remote.Screen(), "<F3>")) << remote.Screen();
    remote.Press("F3");
    ASSERT_TRUE(remote.WaitForText("Login Id:")) << remote.Screen();
    // The label can arrive before the rest of the update that empties the field.
    ASSERT_TRUE(remote.WaitUntilPolling());
    int row = 0;
    ASSERT_TRUE(remote.Find("Login Id:", &row, nullptr));
    EXPECT_FALSE(Contains(remote.Row(row), "root")) << remote.Row(row);
  }
  {
    Terminal overSsh(24, 80);
    Start(overSsh, {"TERM=xterm", "SSH_CLIENT=10.0.0.1 5000 22", "ESCDELAY=25", "LANG=C.UTF-8"});
    OpenLogin(overSsh);
    EXPECT_FALSE(Contains(overSsh.Screen(), "Configured Keyboard")) << overSsh.Screen();
  }
  SetState("/host/domain", "");
  Terminal local(24, 80);
  Start(local, {"TERM=xterm", "ESCDELAY=25", "LANG=C.UTF-8"});
  OpenLogin(local);
  EXPECT_TRUE(Contains(local.Screen(), "Configured Keyboard (US Default)")) << local.Screen();
  EXPECT_TRUE(Contains(local.Screen(), "konu-host..")) << local.Screen();
}

}  // namespace
