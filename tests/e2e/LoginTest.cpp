// The login form on a fresh simulated host: its two forms, the outcome of each attempt on
// screen and in the syslog, audit and event logs, the expired-password path and the
// disabled-login refusal: first the dialogs alone in a forked child over a plain frame,
// then the same paths through the console's welcome screen.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>

#include "screens/LoginDialog.h"
#include "screens/LoginDisabledDialog.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHost.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::DialogChildSetup;
using KonuTest::SimHostFixture;
using KonuTest::Terminal;

class Login : public SimHostFixture {
 protected:
  // Starts the login dialog in `term`; waits until it reads keys.
  void OpenLogin(Terminal& term, bool localConsole = false) {
    DialogChildSetup setup{Root(), localConsole, ""};
    KonuTest::ForkDialog<Konu::LoginDialog>(term, setup);
    ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }

  // Types the secret (the name field is focused first) and presses Enter twice: once to
  // reach the secret field, once to log in.
  void Attempt(Terminal& term, const std::string& name, const std::string& secret) {
    if (name != "root") term.Type(name);
    term.Press("Enter");
    term.Type(secret);
    term.Press("Enter");
  }
};

TEST_F(Login, PasswordFormShowsItsTextsFieldsAndFooterWithoutKeyboardLineOnARemoteTerminal) {
  Terminal term(24, 80);
  OpenLogin(term);
  const std::string screen = term.Screen();
  EXPECT_TRUE(Contains(screen, "Enter an authorized login name and password for")) << screen;
  EXPECT_TRUE(Contains(screen, "konu-host.example.test.")) << screen;
  EXPECT_TRUE(Contains(screen, "Login Name:")) << screen;
  EXPECT_TRUE(Contains(screen, "[ root")) << screen;
  EXPECT_TRUE(Contains(screen, "Password:")) << screen;
  EXPECT_TRUE(Contains(screen, "<Enter> OK  <Esc> Cancel")) << screen;
  EXPECT_FALSE(Contains(screen, "Configured Keyboard")) << screen;
  EXPECT_FALSE(Contains(screen, "<F3>")) << screen;
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText("RESULT=0 USER= ")) << term.Screen();
  FinishDialogChild(term, 0);
}

TEST_F(Login, KeyboardLineOnTheLocalConsoleShowsTheConfiguredLayout) {
  Terminal term(24, 80);
  OpenLogin(term, /*localConsole=*/true);
  EXPECT_TRUE(term.WaitForText("Configured Keyboard (US Default)")) << term.Screen();
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
}

TEST_F(Login, NoDomainStillEndsWithTwoDots) {
  SetState("/host/domain", "");
  Terminal term(24, 80);
  OpenLogin(term);
  EXPECT_TRUE(term.WaitForText("konu-host..")) << term.Screen();
  term.Press("Esc");
  FinishDialogChild(term, 0);
}

TEST_F(Login, WrongPasswordIsRefusedLoggedAuditedAndPostedAndEmptiesOnlyTheSecret) {
  Terminal term(24, 80);
  OpenLogin(term);
  Attempt(term, "root", "wrong");
  ASSERT_TRUE(term.WaitForText("Authentication failed")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("Invalid login or password.")) << term.Screen();
  Acknowledge(term, "Invalid login or password.");
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find("Password:", &row, &col)) << term.Screen();
  EXPECT_EQ(std::string::npos, term.Row(row).find('*')) << "secret emptied: " << term.Row(row);
  ASSERT_TRUE(term.Find("Login Name:", &row, &col));
  EXPECT_NE(std::string::npos, term.Row(row).find("[ root")) << "name kept: " << term.Row(row);

  const std::string syslog = Syslog();
  EXPECT_TRUE(Contains(syslog, "<35>")) << syslog;  // auth facility, error
  EXPECT_TRUE(Contains(syslog, "KONU[")) << syslog;
  EXPECT_TRUE(Contains(syslog, "]: Authentication of user root failed")) << syslog;
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"),
                       "login.connect user=\"root\" origin=\"\" success=0 reason=\"Invalid Login\""))
      << ReadFile("var/log/audit.log");
  EXPECT_TRUE(Contains(ReadFile("var/log/zebd.log"),
                       "@&!*@*@(zeb.user.konu.login.failed)Authentication of user root failed"))
      << ReadFile("var/log/zebd.log");

  // Still open: the right password now logs in.
  term.Press("Up");
  term.Press("Enter");
  term.Type("konu");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=root CARD=0 EMPTY=0")) << term.Screen();
  FinishDialogChild(term, 1);
}

TEST_F(Login, RightPasswordLogsInWithEmergencyAuthLineInfoLineAndAuditRecord) {
  Terminal term(24, 80);
  OpenLogin(term);
  Attempt(term, "root", "konu");
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=root CARD=0 EMPTY=0")) << term.Screen();
  const std::string syslog = Syslog();
  const size_t auth = syslog.find("Authentication of user root succeeded");
  ASSERT_NE(std::string::npos, auth) << syslog;
  EXPECT_EQ("<32>", syslog.substr(syslog.rfind('\n', auth) + 1, 4)) << syslog;
  const size_t info = syslog.find("User root logged in");
  ASSERT_NE(std::string::npos, info) << syslog;
  EXPECT_EQ("<14>", syslog.substr(syslog.rfind('\n', info) + 1, 4)) << syslog;
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"), "login.connect user=\"root\" origin=\"\" success=1"))
      << ReadFile("var/log/audit.log");
  EXPECT_FALSE(Contains(ReadFile("var/log/zebd.log"), "login.failed")) << "no event for a success";
  FinishDialogChild(term, 1);
}

TEST_F(Login, EmptyPasswordLoginSetsTheFlag) {
  AddUser("blank", "", false, false);
  Terminal term(24, 80);
  OpenLogin(term);
  Attempt(term, "blank", "");
  // The host's stack accepts the account's empty password; the session notes it for the
  // menu's warning.
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=blank CARD=0 EMPTY=1")) << term.Screen();
  FinishDialogChild(term, 1);
}

TEST_F(Login, DeniedUserGetsNoPermission) {
  AddUser("dave", "secret1", /*denied=*/true, false);
  Terminal term(24, 80);
  OpenLogin(term);
  Attempt(term, "dave", "secret1");
  ASSERT_TRUE(term.WaitForText("User does not have permission to login to KONU.")) << term.Screen();
  Acknowledge(term, "User does not have permission to login to KONU.");
  EXPECT_TRUE(Contains(Syslog(), "Access denied for user dave")) << Syslog();
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"), "success=0 reason=\"No permission\""));
  EXPECT_TRUE(Contains(ReadFile("var/log/zebd.log"),
                       "@&!*@*@(zeb.user.konu.login.failed)Access denied for user dave"));
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
}

TEST_F(Login, ExpiredPasswordGoesThroughThePasswordDialogThenTheNewPasswordLogsIn) {
  AddUser("erin", "old-pass", false, /*expired=*/true);
  Terminal term(24, 80);
  OpenLogin(term);
  Attempt(term, "erin", "old-pass");
  ASSERT_TRUE(term.WaitForText("Password has expired.")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("You will be prompted to set a new password and then login again."))
      << term.Screen();
  Acknowledge(term, "Password has expired.");
  ASSERT_TRUE(term.WaitForText("Configure Password")) << term.Screen();
  term.Type("old-pass");
  term.Press("Enter");
  term.Type("new-pass");
  term.Press("Enter");
  term.Type("new-pass");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText("Old Password:")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  EXPECT_TRUE(PasswordIs("erin", "new-pass"));
  EXPECT_EQ(false, State("/users/erin/expired"));
  EXPECT_TRUE(Contains(Syslog(), "Password has expired for user erin")) << Syslog();
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"),
                       "user=\"erin\" origin=\"\" success=0 reason=\"Password expired\""));
  EXPECT_TRUE(Contains(ReadFile("var/log/zebd.log"),
                       "@&!*@*@(zeb.user.konu.login.failed)Access denied for user erin"));

  // Back in the login form with the secret emptied: log in again with the new password.
  ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
  term.Type("new-pass");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=erin")) << term.Screen();
  FinishDialogChild(term, 1);
}

TEST_F(Login, CardPresentOpensThePinFormWithTheCardsLoginIdAndF3Flips) {
  Card({"insert", "root"});
  Terminal term(24, 80);
  OpenLogin(term);
  std::string screen = term.Screen();
  EXPECT_TRUE(Contains(screen, "Enter the smart card login PIN for")) << screen;
  EXPECT_TRUE(Contains(screen, "konu-host.example.test.")) << screen;
  EXPECT_TRUE(Contains(screen, "Login Id:")) << screen;
  EXPECT_TRUE(Contains(screen, "PIN:")) << screen;
  EXPECT_TRUE(Contains(screen, "<F3> Switch PIN/Password Login")) << screen;
  EXPECT_TRUE(Contains(Syslog(), "Found smart card with user id 'root'")) << Syslog();

  term.Press("F3");
  ASSERT_TRUE(term.WaitForText("Login Name:")) << term.Screen();
  EXPECT_TRUE(term.WaitForNoText("<F3>")) << term.Screen();  // the footer is drawn after the label
  term.Press("F3");
  ASSERT_TRUE(term.WaitForText("Login Id:")) << term.Screen();

  // A wrong PIN is an invalid login like a wrong password.
  term.Press("Enter");
  term.Type("0000");
  term.Press("Enter");
  Acknowledge(term, "Invalid login or password.");
  term.Type("konu");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=root CARD=1")) << term.Screen();
  FinishDialogChild(term, 1);
}

TEST_F(Login, F3WithoutACardGivesAnEmptyLoginId) {
  Terminal term(24, 80);
  OpenLogin(term);
  term.Press("F3");
  ASSERT_TRUE(term.WaitForText("Login Id:")) << term.Screen();
  // The label can arrive before the rest of the update that empties the field.
  ASSERT_TRUE(term.WaitUntilPolling());
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find("Login Id:", &row, &col));
  EXPECT_EQ(std::string::npos, term.Row(row).find("root")) << term.Row(row);
  term.Press("Esc");
  FinishDialogChild(term, 0);
}

TEST_F(Login, DisabledDialogRefusesUntilEnter) {
  Terminal term(24, 80);
  DialogChildSetup setup{Root(), false, ""};
  KonuTest::ForkDialog<Konu::LoginDisabledDialog>(term, setup);
  ASSERT_TRUE(term.WaitForText("Authentication Denied")) << term.Screen();
  ASSERT_TRUE(term.WaitForText("konu-host.example.test.")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("Direct console access has been disabled by the")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("administrator for konu-host.example.test.")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  term.Press("x");
  ASSERT_TRUE(term.WaitUntilPolling());
  EXPECT_FALSE(Contains(term.Screen(), "RESULT=")) << "only Enter closes it";
  // Esc and Enter in one burst: curses reads the Enter while it looks for a longer
  // sequence after the Esc and keeps it; the Enter must still be taken at once.
  term.Write("\x1b\r");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
}

}  // namespace

// The same login through the console itself: F2 on the welcome screen.
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
    ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }
  void OpenLogin(Terminal& term) {
    term.Press("F2");
    ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }
  // From the name field: Enter to the secret, the secret, Enter.
  void Submit(Terminal& term, const std::string& name, const std::string& secret) {
    if (!name.empty()) term.Type(name);
    term.Press("Enter");
    term.Type(secret);
    term.Press("Enter");
  }
};

TEST_F(ConsoleLogin, WithoutTheMarkerFileF2OpensTheRefusalNeverTheForm) {
  ASSERT_EQ(0, std::remove(HostFile("var/run/corbel/show-konu-login").c_str()));
  Terminal term(24, 80);
  Start(term);
  term.Press("F2");
  ASSERT_TRUE(term.WaitForText("Authentication Denied")) << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "Authentication Required")) << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "Login Name:")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText("Authentication Denied")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("F12");
  ASSERT_TRUE(term.WaitForText("Authentication Denied")) << term.Screen();
  EXPECT_FALSE(Contains(ReadFile("var/log/audit.log"), "login.connect"));
}

TEST_F(ConsoleLogin, WrongThenRightPasswordOpensTheMenuWithEveryRecord) {
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  Submit(term, "", "wrong");
  Acknowledge(term, "Invalid login or password.");
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find("Login Name:", &row, &col)) << term.Screen();
  EXPECT_TRUE(Contains(term.Row(row), "[ root")) << term.Row(row);
  ASSERT_TRUE(term.Find("Password:", &row, &col));
  EXPECT_FALSE(Contains(term.Row(row), "*")) << term.Row(row);
  EXPECT_TRUE(Contains(Syslog(), "Authentication of user root failed")) << Syslog();
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"),
                       "login.connect user=\"root\" origin=\"\" success=0 reason=\"Invalid Login\""));
  EXPECT_TRUE(Contains(ReadFile("var/log/zebd.log"),
                       "@&!*@*@(zeb.user.konu.login.failed)Authentication of user root failed"));

  // The focus stays on the secret field.
  term.Type("konu");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText(kMenuTitle)) << term.Screen();
  EXPECT_TRUE(Contains(Syslog(), "Authentication of user root succeeded")) << Syslog();
  EXPECT_TRUE(Contains(Syslog(), "User root logged in")) << Syslog();
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"), "login.connect user=\"root\" origin=\"\" success=1"));
}

// Over a serial line every byte is felt: F2 paints the form and the login paints the menu
// with no cell written twice, and a typed character or Backspace sends the one changed
// field cell, not the form again.
TEST_F(ConsoleLogin, EachChangeIsPaintedOnceAndAKeySendsOnlyTheChangedCell) {
  Terminal term(25, 80);
  Start(term);
  auto expectEachCellWrittenOnce = [&](const char* change) {
    for (int row = 0; row < term.Rows(); ++row)
      for (int col = 0; col < term.Cols(); ++col)
        ASSERT_LE(term.CellWrites(row, col), 1) << change << ": row " << row << " column " << col;
  };
  term.ResetCellWrites();
  OpenLogin(term);
  expectEachCellWrittenOnce("F2");

  int passwordRow = 0;
  ASSERT_TRUE(term.Find("Password:", &passwordRow, nullptr));
  term.Press("Enter");  // the cursor goes to the secret field
  ASSERT_TRUE(term.WaitFor([&] {
    int row = 0;
    term.CursorPosition(&row, nullptr);
    return row == passwordRow;
  }));
  ASSERT_TRUE(term.WaitUntilPolling());
  for (const char* key : {"a", "Backspace"}) {
    const std::string before = term.Screen();
    const size_t bytes = term.BytesWritten();
    term.Press(key);
    ASSERT_TRUE(term.WaitFor([&] { return term.Screen() != before; })) << key;
    ASSERT_TRUE(term.WaitUntilPolling());
    EXPECT_LE(term.BytesWritten() - bytes, 40u) << key;
  }

  term.Type("konu");
  ASSERT_TRUE(term.WaitFor([&] { return Contains(term.Row(passwordRow), "[ **** "); })) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.ResetCellWrites();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText(kMenuTitle)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  expectEachCellWrittenOnce("login");
}

TEST_F(ConsoleLogin, DeniedUserIsRefused) {
  AddUser("dave", "secret1", true, false);
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  Submit(term, "dave", "secret1");
  Acknowledge(term, "User does not have permission to login to KONU.");
  EXPECT_TRUE(Contains(term.Screen(), "Authentication Required"));
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"),
                       "user=\"dave\" origin=\"\" success=0 reason=\"No permission\""));
}

// A password typed into the name field by mistake must reach no log, audit record or event.
TEST_F(ConsoleLogin, ANameThatIsNoAccountIsRecordedAsUnknown) {
  Terminal term(24, 80);
  Start(term);
  OpenLogin(term);
  Submit(term, "Typed-Secret-7", "konu");
  Acknowledge(term, "Invalid login or password.");
  EXPECT_TRUE(Contains(Syslog(), "]: Authentication of user UNKNOWN failed")) << Syslog();
  EXPECT_TRUE(Contains(ReadFile("var/log/audit.log"),
                       "login.connect user=\"UNKNOWN\" origin=\"\" success=0 reason=\"Invalid Login\""))
      << ReadFile("var/log/audit.log");
  EXPECT_TRUE(Contains(ReadFile("var/log/zebd.log"),
                       "@&!*@*@(zeb.user.konu.login.failed)Authentication of user UNKNOWN failed"));
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
  Acknowledge(term, "Password has expired.");
  ASSERT_TRUE(term.WaitForText("Old Password:")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
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
  EXPECT_TRUE(Contains(term.Screen(), "PIN:"));
  term.Press("F3");
  ASSERT_TRUE(term.WaitForText("Login Name:")) << term.Screen();
  term.Press("F3");
  ASSERT_TRUE(term.WaitForText("Login Id:")) << term.Screen();
  Submit(term, "", "konu");
  ASSERT_TRUE(term.WaitForText(kMenuTitle)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());

  Card({"remove"});
  int status = -1;
  ASSERT_TRUE(term.WaitForExit(5000, &status)) << term.Screen();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_TRUE(Contains(Syslog(), "Logging out user id 'root'")) << Syslog();
}

TEST_F(ConsoleLogin, KeyboardLineOnlyOnALocalConsole) {
  {
    Terminal remote(24, 80);
    Start(remote);
    OpenLogin(remote);
    EXPECT_FALSE(Contains(remote.Screen(), "Configured Keyboard")) << remote.Screen();
  }
  {
    Terminal overSsh(24, 80);
    Start(overSsh, {"TERM=xterm", "SSH_CLIENT=10.0.0.1 5000 22", "ESCDELAY=25", "LANG=C.UTF-8"});
    OpenLogin(overSsh);
    EXPECT_FALSE(Contains(overSsh.Screen(), "Configured Keyboard")) << overSsh.Screen();
  }
  Terminal local(24, 80);
  Start(local, {"TERM=xterm", "ESCDELAY=25", "LANG=C.UTF-8"});
  OpenLogin(local);
  EXPECT_TRUE(Contains(local.Screen(), "Configured Keyboard (US Default)")) << local.Screen();
}

}  // namespace
