// The keyboard layout dialog on a fresh simulated host: the layout marked with Space is
// loaded and configured on Enter, the current one when nothing was marked, the first one
// when the current layout is not offered; Esc changes nothing. Also reached from the login
// form's keyboard line on a local console.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "ops/KeyboardDialog.h"
#include "screens/LoginDialog.h"
#include "tests/e2e/DialogChild.h"
#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::DialogChildSetup;
using KonuTest::SimHostFixture;
using KonuTest::Terminal;

class Keyboard : public SimHostFixture {
 protected:
  void OpenDialog(Terminal& term) {
    DialogChildSetup setup{Root(), true, "root"};
    KonuTest::ForkDialog<Konu::KeyboardDialog>(term, setup);
    ASSERT_TRUE(term.WaitForText("Configure Keyboard")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }

  std::string Current() const { return State("/keyboard/current").get<std::string>(); }
  std::string Loaded() const {
    nlohmann::json keyboard = State("/keyboard");
    return keyboard.contains("loaded") ? keyboard["loaded"].get<std::string>() : "";
  }
  static int Marks(const Terminal& term) {
    std::string screen = term.Screen();
    int marks = 0;
    for (size_t at = screen.find("(o)"); at != std::string::npos; at = screen.find("(o)", at + 1)) ++marks;
    return marks;
  }
};

TEST_F(Keyboard, ShowsItsTextsAndEnterWithoutAMarkReappliesTheCurrentLayout) {
  Terminal term(24, 80);
  OpenDialog(term);
  const std::string screen = term.Screen();
  EXPECT_TRUE(Contains(screen, "If you are having difficulty using your keyboard")) << screen;
  EXPECT_TRUE(Contains(screen, "<Up/Down> Select  <Space> Toggle Selected")) << screen;
  EXPECT_TRUE(Contains(screen, "<Enter> OK  <Esc> Cancel")) << screen;
  EXPECT_TRUE(Contains(screen, "( ) Belgian")) << screen;
  term.Press("Down");
  term.Press("Down");
  term.Press("Enter");  // the cursor moved, nothing marked
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);
  EXPECT_EQ("US Default", Current());
  EXPECT_EQ("US Default", Loaded());
  EXPECT_TRUE(Contains(Syslog(), "Keyboard Layout changed to US Default")) << Syslog();
}

TEST_F(Keyboard, SpaceMarksTheLayoutUnderTheCursorAndEnterAppliesTheMarkedOne) {
  Terminal term(24, 80);
  OpenDialog(term);
  term.Press("Down");
  term.Press("Down");
  term.Press("Space");
  ASSERT_TRUE(term.WaitForText("(o) Croatian")) << term.Screen();
  EXPECT_EQ(1, Marks(term));
  term.Press("Up");
  term.Press("Space");
  ASSERT_TRUE(term.WaitForText("(o) Brazilian")) << term.Screen();
  ASSERT_TRUE(term.WaitForText("( ) Croatian")) << "one mark at a time: " << term.Screen();
  term.Press("Down");
  term.Press("Down");  // the cursor is on Czechoslovakian; Enter applies the mark
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);
  EXPECT_EQ("Brazilian", Current());
  EXPECT_EQ("Brazilian", Loaded());
  EXPECT_TRUE(Contains(Syslog(), "Keyboard Layout changed to Brazilian")) << Syslog();
}

TEST_F(Keyboard, AMarkBelowTheFirstPageIsTheOneApplied) {
  Terminal term(24, 80);
  OpenDialog(term);
  for (int i = 0; i < 10; ++i) term.Press("Down");
  term.Press("Space");
  ASSERT_TRUE(term.WaitForText("(o) Icelandic")) << term.Screen();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);
  EXPECT_EQ("Icelandic", Current());
}

TEST_F(Keyboard, CurrentLayoutMissingFromTheListMarksNothingAndEnterAppliesTheFirst) {
  SetState("/keyboard/current", "Klingon");
  Terminal term(24, 80);
  OpenDialog(term);
  EXPECT_EQ(0, Marks(term)) << term.Screen();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1")) << term.Screen();
  FinishDialogChild(term, 1);
  EXPECT_EQ("Belgian", Current());
}

TEST_F(Keyboard, EscChangesNothing) {
  Terminal term(24, 80);
  OpenDialog(term);
  term.Press("Down");
  term.Press("Space");
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText("RESULT=0")) << term.Screen();
  FinishDialogChild(term, 0);
  EXPECT_EQ("US Default", Current());
  EXPECT_EQ("", Loaded());
  EXPECT_FALSE(Contains(Syslog(), "Keyboard Layout changed")) << Syslog();
}

TEST_F(Keyboard, LoginKeyboardLineOpensTheDialogAndShowsTheNewLayout) {
  Terminal term(24, 80);
  DialogChildSetup setup{Root(), true, ""};
  KonuTest::ForkDialog<Konu::LoginDialog>(term, setup);
  ASSERT_TRUE(term.WaitForText("Configured Keyboard (US Default)")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");  // the keyboard line has the focus first
  ASSERT_TRUE(term.WaitForText("Configure Keyboard")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Down");
  term.Press("Space");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Configured Keyboard (Brazilian)")) << term.Screen();
  EXPECT_EQ("Brazilian", Current());
  ASSERT_TRUE(term.WaitUntilPolling());
  // Tab reaches the name field, Enter the secret, Enter logs in.
  term.Press("Tab");
  term.Press("Enter");
  term.Type("konu");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("RESULT=1 USER=root")) << term.Screen();
  FinishDialogChild(term, 1);
}

}  // namespace

// The keyboard line of the console's own login form on a local console.
namespace {

TEST_F(Keyboard, ConsoleLoginKeyboardLineAppliesTheMarkedLayoutToTheHost) {
  Terminal term(24, 80);
  term.Spawn({KONU_BIN, "--host-root", Root()}, {"TERM=xterm", "ESCDELAY=25", "LANG=C.UTF-8"});
  ASSERT_TRUE(term.WaitForText(ProductLine())) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("F2");
  ASSERT_TRUE(term.WaitForText("Configured Keyboard (US Default)")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Configure Keyboard")) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  for (int i = 0; i < 7; ++i) term.Press("Down");
  term.Press("Space");
  ASSERT_TRUE(term.WaitForText("(o) French")) << term.Screen();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Configured Keyboard (French)")) << term.Screen();
  EXPECT_EQ("French", Current());
  EXPECT_EQ("French", Loaded());
  EXPECT_TRUE(Contains(Syslog(), "Keyboard Layout changed to French")) << Syslog();
}

}  // namespace
