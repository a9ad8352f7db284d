// Windows, frames and dialogs on screen: dimming and typed-ahead keys, colour inheritance,
// the dialog and message box layouts, and the full-screen menu layout.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

#include "app/Runtime.h"
#include "host/Log.h"
#include "host/sim/DefaultState.h"
#include "host/sim/SimHost.h"
#include "host/sim/StateFile.h"
#include "tests/harness/Files.h"
#include "tests/harness/Terminal.h"
#include "tests/screen/UiChild.h"
#include "ui/Dialog.h"
#include "ui/MessageDialog.h"
#include "ui/RootWindow.h"
#include "ui/TextArea.h"

namespace Konu {
namespace {

using KonuTest::Say;
using KonuTest::Terminal;
using KonuTest::UiCurses;

class Panel : public Frame {
 public:
  Panel(int width, int height) : Frame(nullptr, 0, 0, width, height, 3, 0) {}
  int EventLoop() override { return 0; }
};

class PlainDialog : public Dialog {
 public:
  PlainDialog(Frame* owner, int width, int height, int header) : Dialog(owner, width, height, header) {}
  int EventLoop() override { return 0; }
};

class Menu : public RootWindow {
 public:
  Menu() : RootWindow(nullptr) {}
  void Refresh() override {}
  int EventLoop() override { return 0; }
};

// A frame with a colour-tagged text and a child window in other colours; it goes inactive
// at "g" (with "abc" typed ahead) and active again at the next "g".
int DimAndBack() {
  UiCurses curses;
  if (!curses.Ok()) return 2;
  Panel frame(40, 10);
  TextArea text(&frame, 2, 2, 30, 1, 0);
  Window inner(&frame, 2, 4, 12, 2, 6, 7);
  TextArea innerText(&inner, 1, 0, 10, 1, 7);
  frame.SetActive(true);
  text.SetText("{color:red}Alert{/color} plain");
  innerText.SetText("inner");
  Say("stage 1");
  UiCurses::HoldUntil('g');
  frame.SetActive(false);
  wtimeout(stdscr, 300);
  int leftover = wgetch(stdscr);
  Say(leftover == ERR ? "stage 2 leftover none" : "stage 2 leftover some");
  UiCurses::HoldUntil('g');
  frame.SetActive(true);
  Say("stage 3");
  UiCurses::HoldUntil('q');
  return 0;
}

TEST(WindowScreen, ADeactivatedFrameIsDimmedDropsTypedKeysAndGetsItsColoursBack) {
  Terminal t(24, 80);
  t.Fork(DimAndBack, KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("stage 1", 5000)) << t.Screen();
  ExpectColors(t, 2, 2, 3, 1);  // "Alert" in red
  ExpectColors(t, 2, 8, 3, 0);
  ExpectColors(t, 4, 3, 6, 7);
  ExpectColors(t, 0, 0, 3, 0);

  t.Write("gabc");
  ASSERT_TRUE(t.WaitForText("stage 2", 5000)) << t.Screen();
  EXPECT_TRUE(t.Find("leftover none", nullptr, nullptr)) << t.Screen();
  EXPECT_EQ(t.Region(2, 2, 1, 11), "Alert plain");
  for (int row : {0, 2, 4, 9}) {
    for (int column : {0, 2, 3, 8, 39}) ExpectColors(t, row, column, 0, 6);
  }

  t.Press("g");
  ASSERT_TRUE(t.WaitForText("stage 3", 5000)) << t.Screen();
  ExpectColors(t, 2, 2, 3, 1);
  ExpectColors(t, 2, 8, 3, 0);
  ExpectColors(t, 4, 3, 6, 7);
  ExpectColors(t, 9, 39, 3, 0);
  Quit(t);
}

int InheritColours() {
  UiCurses curses;
  if (!curses.Ok()) return 2;
  Window parent(0, 0, 30, 6, 3, 0);
  Window child(&parent, 2, 1, 20, 3, 6, 7);
  TextArea label(&child, 1, 1, 10, 1, -1);
  parent.Update();
  label.SetText("child");
  Say("own colours");
  UiCurses::HoldUntil('g');
  child.SetColors(-1, -1);
  child.Update();
  Say("inherited");
  UiCurses::HoldUntil('q');
  return 0;
}

TEST(WindowScreen, SetColorsMinusOneTakesBothColoursFromTheParent) {
  Terminal t(24, 80);
  t.Fork(InheritColours, KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("own colours", 5000)) << t.Screen();
  ExpectColors(t, 1, 2, 6, 7);
  ExpectColors(t, 2, 3, 6, 7);  // the label took the child's colours
  t.Press("g");
  ASSERT_TRUE(t.WaitForText("inherited", 5000)) << t.Screen();
  ExpectColors(t, 1, 2, 3, 0);
  ExpectColors(t, 2, 3, 3, 0);  // passed down to the label too
  ExpectColors(t, 3, 21, 3, 0);
  EXPECT_EQ(t.Region(2, 3, 1, 5), "child");
  Quit(t);
}

// A dialog whose loop runs `body` (the next dialog up) and returns its result.
class Nested : public Dialog {
 public:
  Nested(Frame* owner, int height, std::function<int(Frame*)> body)
      : Dialog(owner, 60, height, 6), body_(std::move(body)) {}
  int EventLoop() override { return body_(this); }

 private:
  std::function<int(Frame*)> body_;
};

// A message box over a dialog over a dialog over a frame, as in the expired-password path:
// dims what is beneath, ignores Esc, returns 1 on Enter and leaves nothing of itself where
// it was wider than the dialogs. Also reports which dialog sizes get a content window.
int MessageOverDialogs() {
  UiCurses curses;
  if (!curses.Ok()) return 2;
  Panel owner(COLS, LINES - 1);
  TextArea beneath(&owner, 1, 1, 30, 1, 0);
  owner.SetActive(true);
  beneath.SetText("{color:red}beneath{/color}");
  int result = -1;
  Nested login(&owner, 13, [&result](Frame* loginFrame) {
    Nested password(loginFrame, 14, [&result](Frame* passwordFrame) {
      {
        MessageDialog message(passwordFrame, 164, "The disk is full.");
        result = message.RunModal();
      }
      Say("message closed");
      UiCurses::HoldUntil('n');
      return 0;
    });
    return password.RunModal();
  });
  login.RunModal();
  PlainDialog noRoom(nullptr, 40, 10, 6);  // 10 - 6 = 4: no content window
  PlainDialog oneRow(nullptr, 40, 10, 5);
  char line[80];
  snprintf(line, sizeof line, "result=%d content=%s,%s", result, noRoom.Content() ? "yes" : "none",
           oneRow.Content() ? "yes" : "none");
  owner.Update();
  Say(line);
  UiCurses::HoldUntil('q');
  return 0;
}

TEST(WindowScreen, MessageDialogIsCentredOverItsDimmedOwnersAndLeavesNothingBehindWhenClosed) {
  Terminal t(24, 80);
  t.Fork(MessageOverDialogs, KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("Shut Down Host", 5000)) << t.Screen();
  // The whole screen goes out as one update, top to bottom: take it in once the box waits
  // for a key.
  ASSERT_TRUE(t.WaitUntilPolling());
  // 70 x 10 centred in 80 x 24: columns 5 to 74, rows 7 to 16; header rows 7 to 13.
  int row = -1, column = -1;
  ASSERT_TRUE(t.Find("Shut Down Host", &row, &column));
  EXPECT_EQ(row, 8);
  EXPECT_EQ(column, 8);
  EXPECT_EQ(t.Region(10, 8, 1, 17), "The disk is full.");
  EXPECT_EQ(t.Region(15, 63, 1, 10), "<Enter> OK");  // right edge of the 66-column footer
  EXPECT_EQ(t.Region(15, 73, 1, 2), " \u2502");
  EXPECT_EQ(t.Region(7, 5, 1, 2), "\u250c\u2500");
  EXPECT_EQ(t.Region(16, 73, 1, 2), "\u2500\u2518");
  ExpectColors(t, 8, 8, 6, 7);    // title: white on dark grey
  ExpectColors(t, 10, 8, 6, 2);   // message: light grey
  ExpectColors(t, 15, 63, 3, 0);  // "<Enter>" black on yellow
  ExpectColors(t, 15, 71, 3, 6);  // "OK" dark grey
  ExpectColors(t, 1, 1, 0, 6);    // the owner beneath, dimmed
  ExpectColors(t, 20, 40, 0, 6);

  t.Press("Esc");
  t.Press("x");
  EXPECT_FALSE(t.WaitForText("result=", 300)) << t.Screen();
  t.Press("Enter");
  ASSERT_TRUE(t.WaitForText("message closed", 5000)) << t.Screen();
  ASSERT_TRUE(t.WaitUntilPolling());
  // The box (columns 5 to 74) was wider than the dialogs (10 to 69): its edges are gone,
  // the dimmed frame is back there.
  for (int edge : {5, 9, 70, 74}) {
    EXPECT_EQ(t.Region(7, edge, 10, 1), " \n \n \n \n \n \n \n \n \n ") << "column " << edge;
    for (int boxRow : {7, 15, 16}) ExpectColors(t, boxRow, edge, 0, 6);
  }
  EXPECT_FALSE(t.Find("Shut Down Host", nullptr, nullptr)) << t.Screen();
  t.Press("n");
  ASSERT_TRUE(t.WaitForText("result=1 content=none,yes", 5000)) << t.Screen();
  ASSERT_TRUE(t.WaitUntilPolling());
  ExpectColors(t, 1, 1, 3, 1);  // the owner is back, colour tags and all
  EXPECT_FALSE(t.Find("Shut Down Host", nullptr, nullptr)) << t.Screen();
  Quit(t);
}

TEST(WindowScreen, RootWindowHasTwoPanesABoxAndTheLineUnderTheTitles) {
  KonuTest::TempDir dir;
  const std::string log = dir / "log";
  const std::string rootDir = dir / "root";
  Sim::StateFile(rootDir).Write(Sim::DefaultHostState());
  Sim::StateFile(rootDir).Update([](nlohmann::json& state) { state["host"]["hostname"] = "pane-host"; });
  Terminal t(24, 80);
  t.Fork(
      [log, rootDir] {
        UiCurses curses;
        if (!curses.Ok()) return 2;
        SetLogSink(std::make_unique<FileLogSink>(log));
        HostCtl::Sim::SimHost host(rootDir);
        Runtime::Get().SetHost(&host);
        Menu menu;
        menu.SetActive(true);
        menu.MenuTitle().SetText("System Customization");
        menu.InformationTitle().SetText("Information");
        // The pane reads the host's objects that the window made for the default stack.
        menu.InformationText().SetText("Details here " + menu.DnsConfig().GetHostname());
        menu.LeftFooter().SetText("{align:right}<Up/Down> Select{/align}");
        menu.RightFooter().SetText("{align:right}<Esc> Log Out{/align}");
        UiCurses::HoldUntil('q');
        return 0;
      },
      KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("<Esc> Log Out", 5000)) << t.Screen();
  ASSERT_TRUE(t.WaitUntilPolling());  // the box's last rows come after the footer
  EXPECT_EQ(t.Region(1, 3, 1, 20), "System Customization");
  EXPECT_EQ(t.Region(1, 42, 1, 11), "Information");
  EXPECT_EQ(t.Region(4, 42, 1, 22), "Details here pane-host");
  EXPECT_EQ(t.Region(21, 23, 1, 16), "<Up/Down> Select");  // ends at column 38
  EXPECT_EQ(t.Region(21, 65, 1, 13), "<Esc> Log Out");     // ends at column 77
  EXPECT_EQ(t.Region(0, 0, 1, 2), "\u250c\u2500");
  EXPECT_EQ(t.Region(22, 78, 1, 2), "\u2500\u2518");
  EXPECT_EQ(
      t.Region(2, 0, 1, 80), "\u2502" + [] {
        std::string line;
        for (int i = 0; i < 78; ++i) line += "\u2500";
        return line;
      }() + "\u2502");
  ExpectColors(t, 1, 3, 3, 0);    // menu title: black on yellow
  ExpectColors(t, 10, 10, 3, 7);  // left pane
  ExpectColors(t, 1, 42, 6, 7);   // information title: white on dark grey
  ExpectColors(t, 4, 42, 6, 2);   // information text: light grey
  ExpectColors(t, 23, 10, 0, 2);  // bottom line
  Quit(t);
  EXPECT_NE(KonuTest::ReadFileText(log).find("COLS=80, LINES=24"), std::string::npos)
      << KonuTest::ReadFileText(log);
}

TEST(WindowScreen, ChildrenLeaveTheirParentsListAndDeleteChildrenDeletesTheRest) {
  Terminal t(24, 80);
  t.Fork(
      [] {
        UiCurses curses;
        if (!curses.Ok()) return 2;
        Window parent(0, 0, 30, 6, 3, 0);
        auto kept = std::make_unique<Window>(&parent, 0, 0, 5, 1, -1, -1);
        for (int row = 1; row <= 3; ++row) (new TextArea(&parent, 1, row, 10, 1, 0))->SetText("made");
        const size_t before = parent.Children().size();
        kept.reset();
        const size_t afterOne = parent.Children().size();
        parent.DeleteChildren();
        char line[64];
        snprintf(line, sizeof line, "children %zu %zu %zu", before, afterOne, parent.Children().size());
        Say(line);
        UiCurses::HoldUntil('q');
        return 0;
      },
      KonuTest::UiEnv());
  ASSERT_TRUE(t.WaitForText("children 4 3 0", 5000)) << t.Screen();
  Quit(t);
}

}  // namespace
}  // namespace Konu
