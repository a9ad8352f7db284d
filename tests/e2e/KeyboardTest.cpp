// The keyboard layout dialog on a fresh simulated host: the layout marked with Space is
// loaded and configured on Enter, the current one when nothing was marked, the first one
// when the current layout is not offered; Esc changes nothing. Also reached from the
// console's login form's keyboard line on a local console.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "ops/KeyboardDialog.h"
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
    ASSERT_NO_FATAL_FAILURE(Ready(term, "Configure Keyboard"));
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

// Each case starts a fresh dialog, presses its keys (waiting for a text where one is given;
// "Down*10" is Down ten times) and checks the answer, the host's layout and the log line.
TEST_F(Keyboard, SpaceMarksOneLayoutEnterAppliesTheMarkOrTheCurrentOneAndEscNothing) {
  const struct {
    const char* what;
    const char* current;  // the host's layout before; nullptr: the fresh host's
    std::vector<std::pair<std::string, std::string>> steps;
    int result;
    const char* applied;  // the host's layout after
    const char* loaded;   // the mapping loaded, "" for none
  } cases[] = {
      {"Enter without a mark reapplies the current layout",
       nullptr,
       {{"Down*2", ""}, {"Enter", ""}},
       1,
       "US Default",
       "US Default"},
      {"one mark at a time, and Enter applies the mark, not the cursor",
       nullptr,
       {{"Down*2", ""},
        {"Space", "(o) Croatian"},
        {"Up", ""},
        {"Space", "(o) Brazilian"},
        {"", "( ) Croatian"},
        {"Down*2", ""},
        {"Enter", ""}},
       1,
       "Brazilian",
       "Brazilian"},
      {"a mark below the first page",
       nullptr,
       {{"Down*10", ""}, {"Space", "(o) Icelandic"}, {"Enter", ""}},
       1,
       "Icelandic",
       "Icelandic"},
      {"a current layout that is not offered: nothing marked, Enter applies the first",
       "Klingon",
       {{"Enter", ""}},
       1,
       "Belgian",
       "Belgian"},
      {"Esc changes nothing", nullptr, {{"Down", ""}, {"Space", ""}, {"Esc", ""}}, 0, "US Default", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    SetUp();
    if (c.current) SetState("/keyboard/current", c.current);
    Terminal term(24, 80);
    OpenDialog(term);
    for (const char* text :
         {"If you are having difficulty using your keyboard", "<Up/Down> Select  <Space> Toggle Selected",
          "<Enter> OK  <Esc> Cancel", "( ) Belgian"})
      EXPECT_TRUE(Contains(term.Screen(), text)) << text << "\n" << term.Screen();
    if (c.current) {
      EXPECT_EQ(0, Marks(term)) << term.Screen();
    }
    for (const auto& [key, text] : c.steps) {
      const size_t star = key.find('*');
      const int times = star == std::string::npos ? 1 : std::stoi(key.substr(star + 1));
      for (int i = 0; i < times && !key.empty(); ++i) term.Press(key.substr(0, star));
      if (text.empty()) continue;
      ASSERT_TRUE(term.WaitForText(text)) << text << "\n" << term.Screen();
      ASSERT_TRUE(term.WaitUntilPolling());  // the whole update, not its first rows
      EXPECT_EQ(1, Marks(term)) << "one mark at a time: " << term.Screen();
    }
    ASSERT_TRUE(term.WaitForText("RESULT=" + std::to_string(c.result))) << term.Screen();
    FinishDialogChild(term, c.result);
    EXPECT_EQ(c.applied, Current());
    EXPECT_EQ(c.loaded, Loaded());
    EXPECT_EQ(c.result == 1, Contains(Syslog(), std::string("Keyboard Layout changed to ") + c.applied))
        << Syslog();
  }
}

// The keyboard line of the console's own login form on a local console: the dialog, the new
// layout on the line, and Tab on to the name field to log in.
TEST_F(Keyboard, ConsoleLoginKeyboardLineAppliesTheMarkedLayoutToTheHost) {
  Terminal term(24, 80);
  term.Spawn({KONU_BIN, "--host-root", Root()}, {"TERM=xterm", "ESCDELAY=25", "LANG=C.UTF-8"});
  ASSERT_NO_FATAL_FAILURE(Ready(term, ProductLine()));
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F2", "Configured Keyboard (US Default)"));
  ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Configure Keyboard"));
  for (int i = 0; i < 7; ++i) term.Press("Down");
  term.Press("Space");
  ASSERT_TRUE(term.WaitForText("(o) French")) << term.Screen();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Configured Keyboard (French)")) << term.Screen();
  EXPECT_EQ("French", Current());
  EXPECT_EQ("French", Loaded());
  EXPECT_TRUE(Contains(Syslog(), "Keyboard Layout changed to French")) << Syslog();
  ASSERT_TRUE(term.WaitUntilPolling());
  // Tab reaches the name field, Enter the secret, Enter logs in.
  term.Press("Tab");
  term.Press("Enter");
  term.Type("konu");
  term.Press("Enter");
  EXPECT_TRUE(term.WaitForText("System Customization")) << term.Screen();
}

}  // namespace
