// The password dialog on a fresh simulated host: the wrong old password, the checks of the
// new password in their order, the same-password warning, a failed and a successful change
// with its backup, log line and event. The dialog runs in a forked child for user root.
#include <gtest/gtest.h>
#include <security/pam_appl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "host/HostRoot.h"
#include "screens/ChangePasswordDialog.h"
#include "screens/PamAuth.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::DialogChildSetup;
using KonuTest::SimHostFixture;
using KonuTest::Terminal;

class Password : public SimHostFixture {
 protected:
  void OpenDialog(Terminal& term) {
    DialogChildSetup setup{Root(), false, "root"};
    KonuTest::ForkDialog<Konu::ChangePasswordDialog>(term, setup);
    ASSERT_TRUE(term.WaitForText("Configure Password")) << term.Screen();
    ASSERT_TRUE(term.WaitForText("Setting the password will prevent unauthorized access")) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Ready(term, "to this host."));
  }

  // The stars shown in the field labelled `label`.
  static size_t Stars(const Terminal& term, const std::string& label) {
    int row = 0, col = 0;
    if (!term.Find(label, &row, &col)) return std::string::npos;
    std::string line = term.Row(row);
    return static_cast<size_t>(std::count(line.begin(), line.end(), '*'));
  }

  int Backups() const { return static_cast<int>(State("/backups").size()); }
};

TEST_F(Password, WrongOldPasswordIsRefusedEmptiedAndKeepsTheFocus) {
  Terminal term(24, 80);
  OpenDialog(term);
  EXPECT_TRUE(term.WaitForText("Old Password:"));
  EXPECT_TRUE(term.WaitForText("New Password:"));
  EXPECT_TRUE(term.WaitForText("Confirm Password:"));
  term.Type("bad");
  ASSERT_TRUE(term.WaitFor([&] { return Stars(term, "Old Password:") == 3; })) << term.Screen();
  term.Press("Tab");
  ASSERT_TRUE(term.WaitForText("Configure Password: Error")) << term.Screen();
  Acknowledge(term, "The old password you entered is incorrect");
  EXPECT_EQ(0u, Stars(term, "Old Password:"));
  term.Type("ab");  // still the old-password field
  ASSERT_TRUE(term.WaitFor([&] { return Stars(term, "Old Password:") == 2; })) << term.Screen();
  EXPECT_EQ(0u, Stars(term, "New Password:"));
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
  EXPECT_EQ(0, Backups());
}

TEST_F(Password, MismatchIsReportedBeforeEmptinessAndBothEmptyIsRefused) {
  Terminal term(24, 80);
  OpenDialog(term);
  term.Type("konu");
  term.Press("Enter");
  term.Press("Enter");  // new password left empty
  term.Type("x");
  term.Press("Enter");
  Acknowledge(term, "The new password and the confirmed password do not match.");
  EXPECT_EQ(0u, Stars(term, "Confirm Password:"));
  EXPECT_EQ(4u, Stars(term, "Old Password:"));

  // The focus is back on the new-password field: type a password there, mismatch again.
  term.Type("abcd");
  ASSERT_TRUE(term.WaitFor([&] { return Stars(term, "New Password:") == 4; })) << term.Screen();
  term.Press("Enter");
  term.Type("abce");
  term.Press("Enter");
  Acknowledge(term, "The new password and the confirmed password do not match.");
  EXPECT_EQ(0u, Stars(term, "New Password:"));
  EXPECT_EQ(0u, Stars(term, "Confirm Password:"));

  term.Press("Enter");  // new: empty
  term.Press("Enter");  // confirm: empty
  Acknowledge(term, "Empty passwords are not allowed.");
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
  EXPECT_TRUE(PasswordIs("root", "konu"));
}

TEST_F(Password, SamePasswordWarningEscReturnsToTheFormEnterChangesForReal) {
  Terminal term(24, 80);
  OpenDialog(term);
  term.Type("konu");
  term.Press("Enter");
  term.Type("konu");
  term.Press("Enter");
  term.Type("konu");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("New password is same as old password. Are you sure?")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("Configure Password: Warning"));
  EXPECT_TRUE(term.WaitForText("<Enter> Confirm"));
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Esc");
  ReadyWithout(term, "Are you sure?");
  EXPECT_EQ(4u, Stars(term, "Confirm Password:")) << "the form is unchanged";
  EXPECT_EQ(0, Backups());

  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Are you sure?"));
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=root")) << term.Screen();
  FinishDialogChild(term, 1);
  EXPECT_EQ(1, Backups()) << "a real change request ran";
  EXPECT_TRUE(Contains(Syslog(), "Login password for user root has changed")) << Syslog();
}

TEST_F(Password, SuccessfulChangeBacksUpLogsPostsAndTheNewPasswordWorks) {
  Terminal term(24, 80);
  OpenDialog(term);
  term.Type("konu");
  term.Press("Down");
  term.Type("Fresh-Pass1");
  term.Press("Tab");
  term.Type("Fresh-Pass1");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=root CARD=0 EMPTY=0")) << term.Screen();
  FinishDialogChild(term, 1);

  // The state keeps a hash, readable by its owner only, and never the password.
  EXPECT_TRUE(PasswordIs("root", "Fresh-Pass1"));
  EXPECT_EQ(0, State("/users/root/passwordHash").get<std::string>().rfind("$6$", 0));
  EXPECT_FALSE(Contains(ReadFile("etc/konu-sim/host.json"), "Fresh-Pass1"));
  struct stat info {};
  ASSERT_EQ(0, stat(HostFile("etc/konu-sim/host.json").c_str(), &info));
  EXPECT_EQ(0600u, info.st_mode & 07777);
  EXPECT_TRUE(Contains(Journal(), "backup.sh")) << Journal();
  EXPECT_EQ(1, Backups());
  const std::string syslog = Syslog();
  const size_t line = syslog.find("Login password for user root has changed");
  ASSERT_NE(std::string::npos, line) << syslog;
  EXPECT_EQ("<14>", syslog.substr(syslog.rfind('\n', line) + 1, 4)) << syslog;
  EXPECT_TRUE(
      Contains(Events(), "@&!*@*@(zeb.user.konu.login.passwd.changed)Login password for user root changed"))
      << Events();

  Konu::SetHostRoot(Root());
  EXPECT_EQ(PAM_SUCCESS, Konu::Authenticate("root", "Fresh-Pass1"));
  EXPECT_NE(PAM_SUCCESS, Konu::Authenticate("root", "konu"));
  Konu::SetHostRoot("/");
}

TEST_F(Password, ChangeRefusedByThePolicyIsReportedAndTheFormStays) {
  SetState("/passwordPolicy/minLength", 8);
  Terminal term(24, 80);
  OpenDialog(term);
  term.Type("konu");
  term.Press("Enter");
  term.Type("short");
  term.Press("Enter");
  term.Type("short");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("The password change operation failed.")) << term.Screen();
  EXPECT_TRUE(term.WaitForText("Please ensure that your password meets the complexity criteria"))
      << term.Screen();
  Acknowledge(term, "The password change operation failed.");
  EXPECT_TRUE(term.WaitForText("Old Password:")) << "still in the form";
  EXPECT_EQ(0, Backups());
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
  EXPECT_TRUE(PasswordIs("root", "konu"));
}

}  // namespace
