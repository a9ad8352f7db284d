// The System Customization menu through the console on a fresh simulated host: its entries
// and every information pane on 80x24 and 80x25, the entries a host disables, the log viewer
// and lockdown mode.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

constexpr const char kMenuTitle[] = "System Customization";
constexpr const char kLogOut[] = "<Esc> Log Out";

// Rows joined by blanks with every run of blanks made one: wrapped text reads as one line.
std::string Collapse(const std::string& text) {
  std::string out;
  for (char c : text) {
    const bool blank = c == ' ' || c == '\n';
    if (blank && (out.empty() || out.back() == ' ')) continue;
    out += blank ? ' ' : c;
  }
  while (!out.empty() && out.back() == ' ') out.pop_back();
  return out;
}

class Menu : public SimHostFixture {
 protected:
  // Starts the console (TERM=xterm without SSH_CLIENT is the host's own console) and logs in.
  void Open(Terminal& term, bool local = true, const char* secret = "konu") {
    const std::string type = local ? "TERM=xterm" : "TERM=xterm-256color";
    term.Spawn({KONU_BIN, "--host-root", Root()}, {type, "ESCDELAY=25", "LANG=C.UTF-8"});
    ASSERT_NO_FATAL_FAILURE(Ready(term, ProductLine()));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "F2", "Authentication Required"));
    if (local) term.Press("Tab");  // past the keyboard line to the name
    term.Press("Enter");
    term.Type(secret);
    term.Press("Enter");
    ASSERT_TRUE(term.WaitForText(kMenuTitle)) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Ready(term, kLogOut));
  }
  // The information pane (title, body and footer) of the right half, collapsed. The body's
  // last row is the footer's.
  static std::string Pane(const Terminal& term) {
    const int half = term.Cols() / 2, rows = term.Rows();
    return Collapse(term.Region(1, half + 1, 1, half - 2) + " " +
                    term.Region(4, half + 1, rows - 7, half - 2) + " " +
                    term.Region(rows - 3, half + 1, 1, half - 2));
  }
  static std::string PaneTitle(const Terminal& term) {
    return Collapse(term.Region(1, term.Cols() / 2 + 1, 1, 38));
  }
  // Moves with `key` and waits until the pane shows `title`.
  static void Move(Terminal& term, const char* key, const std::string& title) {
    term.Press(key);
    ASSERT_TRUE(term.WaitFor([&] { return PaneTitle(term) == title; })) << title << "\n" << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }
  // The label of the entry below the focused one (the next in the local console's order).
  static const char* NextEntry(const Terminal& term) {
    static const char* const kOrder[] = {
        "Configure Password",         "Configure Lockdown Mode",   "Configure Management Network",
        "Restart Management Network", "Test Management Network",   "Network Restore Options",
        "Configure Keyboard",         "Troubleshooting Options",   "View System Logs",
        "View Support Information",   "Reset System Configuration"};
    const std::string now = PaneTitle(term);
    for (size_t i = 0; i + 1 < std::size(kOrder); ++i)
      if (now == kOrder[i]) return kOrder[i + 1];
    return "";
  }
  // The row of a menu entry in the left half, -1 when it is not listed.
  static int RowOf(const Terminal& term, const std::string& label) {
    for (int row = 0; row < term.Rows(); ++row)
      if (term.Region(row, 0, 1, term.Cols() / 2).find(label) != std::string::npos) return row;
    return -1;
  }
};

// What a pane shows first and last (its text runs between them) and its footer.
struct PaneCase {
  const char* title;
  const char* first;
  const char* last;
  const char* footer;
};

const PaneCase kFreshHostPanes[] = {
    {"Configure Password", "Set To prevent unauthorized access", "user.", "<Enter> Change"},
    {"Configure Lockdown Mode", "Disabled When enabled, lockdown mode", "application.", "<Enter> Change"},
    {"Configure Management Network", "Hostname: konu-host IPv4 Address: 10.0.0.5 IPv6 Addresses: fe80::",
     "2001:db8:10::5/64 2001:db8:10::50/64 To view or modify this host's management network settings in "
     "detail, "
     "press <Enter>.",
     "<Enter> More"},
    {"Restart Management Network", "Restarting the management network", "disconnected.", "<Enter> Restart"},
    {"Test Management Network", "To perform a brief network test", "hostname.", "<Enter> Run Test"},
    {"Network Restore Options", "To view various network restore", "properties.", "<Enter> Restart"},
    {"Configure Keyboard", "US Default To select the layout", "press <Enter>", "<Enter> More"},
    {"Troubleshooting Options", "To view various troubleshooting", "Agents.", "<Enter> More"},
    {"View System Logs",
     "<1> Syslog <2> Nukernel <3> Config <4> Management Agent (mgmtd) <5> Pallas Agent (tmga) <6> High "
     "Availibility Agent (aam) <7> Corbel Orin Observation log (zebd) Press the corresponding key",
     "screen.", ""},
    {"View Support Information", "Host certificate SHA-1 thumbprint", "<Page Down>", ""},
    {"Reset System Configuration", "Warning! All system parameters", "host.", "<Enter> Reset"},
};

TEST_F(Menu, ListsItsEntriesAndDrawsEveryPaneFullyOn80x24And80x25) {
  for (int rows : {24, 25}) {
    SCOPED_TRACE(rows);
    Terminal term(rows, 80);
    Open(term);
    // Order and separators: one blank row between the groups.
    const std::vector<std::pair<const char*, int>> order = {
        {"Configure Password", 0},
        {"Configure Lockdown Mode", 1},
        {"Configure Management Network", 3},
        {"Restart Management Network", 4},
        {"Test Management Network", 5},
        {"Network Restore Options", 6},
        {"Configure Keyboard", 8},
        {"Troubleshooting Options", 9},
        {"View System Logs", 11},
        {"View Support Information", 13},
        {"Reset System Configuration", 15},
    };
    const int first = RowOf(term, order.front().first);
    ASSERT_GT(first, 0) << term.Screen();
    for (const auto& [label, offset] : order) {
      EXPECT_EQ(RowOf(term, label), first + offset) << label;
    }
    EXPECT_EQ(term.Row(rows - 1).find("Change default password"), std::string::npos);

    bool firstPane = true;
    for (const PaneCase& pane : kFreshHostPanes) {
      if (!firstPane) {
        ASSERT_NO_FATAL_FAILURE(Move(term, "Down", pane.title));
      }
      firstPane = false;
      const std::string shown = Pane(term);
      const std::string body = std::string(pane.title) + " " + pane.first;
      EXPECT_EQ(shown.rfind(body, 0), 0u) << term.Screen();
      EXPECT_NE(shown.find(pane.last), std::string::npos) << pane.last << "\n" << term.Screen();
      const std::string footer = std::string(pane.footer) + (*pane.footer ? " " : "") + kLogOut;
      EXPECT_EQ(shown.substr(shown.size() - std::min(shown.size(), footer.size())), footer) << term.Screen();
    }
    // The box is whole: both bottom corners on the row above the bottom line.
    EXPECT_EQ(term.Region(rows - 2, 0, 1, 1), "└") << term.Screen();
    EXPECT_EQ(term.Region(rows - 2, 79, 1, 1), "┘") << term.Screen();
  }
}

}  // namespace

namespace {

// A remote terminal with 256 colours: the box round the main area and the line under the
// titles keep the main area's colours, white lines on light grey.
TEST_F(Menu, TheBoxKeepsItsColoursOnA256ColourTerminal) {
  Terminal term(24, 80);
  Open(term, /*local=*/false);
  for (auto [row, col] : {std::pair{0, 0}, {0, 40}, {2, 20}, {2, 60}, {10, 0}, {10, 79}, {22, 0}, {22, 79}}) {
    EXPECT_EQ(term.Colors(row, col).background, 2) << row << "," << col;
    EXPECT_EQ(term.Colors(row, col).foreground, 7) << row << "," << col;
  }
  EXPECT_EQ(term.Region(0, 0, 1, 1), "┌") << term.Screen();
}

TEST_F(Menu, RestrictedHostDimsAndSkipsEntriesAndWarnsOfTheEmptyPassword) {
  SetState("/network/managementInterface", "");
  SetState("/userOptions/PXEBootEnabled", "1");
  SetPassword("root", "");
  Terminal term(24, 80);
  Open(term, /*local=*/false, "");
  EXPECT_EQ(RowOf(term, "Configure Keyboard"), -1) << "a remote terminal has no keyboard entry";
  EXPECT_TRUE(term.WaitForText("Change default password to prevent unauthorized access"));
  EXPECT_NE(term.Row(23).find("Change default password to prevent unauthorized access"), std::string::npos);
  EXPECT_EQ(Pane(term).rfind("Configure Password Not set To prevent", 0), 0u) << term.Screen();

  const int enabledForeground = term.Colors(RowOf(term, "Network Restore Options"), 2).foreground;
  for (const char* dimmed : {"Configure Management Network", "Restart Management Network",
                             "Test Management Network", "Reset System Configuration"}) {
    EXPECT_NE(term.Colors(RowOf(term, dimmed), 2).foreground, enabledForeground) << dimmed;
  }
  // The cursor passes over the dimmed entries both ways and stops before the last one.
  ASSERT_NO_FATAL_FAILURE(Move(term, "Down", "Configure Lockdown Mode"));
  ASSERT_NO_FATAL_FAILURE(Move(term, "Down", "Network Restore Options"));
  ASSERT_NO_FATAL_FAILURE(Move(term, "Up", "Configure Lockdown Mode"));
  for (const char* next : {"Network Restore Options", "Troubleshooting Options", "View System Logs",
                           "View Support Information"}) {
    ASSERT_NO_FATAL_FAILURE(Move(term, "Down", next));
  }
  term.Press("Down");  // the reset entry cannot take the cursor: nothing moves
  ASSERT_NO_FATAL_FAILURE(Move(term, "Up", "View System Logs"));
}

TEST_F(Menu, EnterOpensTheEntriesScreensAndARestartWithoutInterfaceShowsTheError) {
  Terminal term(24, 80);
  Open(term);
  // Each screen opens over the menu; Esc brings the menu back with its pane.
  struct Opened {
    const char* entry;  // moved to with Down from the entry before
    const char* shows;
  };
  for (const Opened& opened : {Opened{"Configure Password", "Old Password:"},
                               Opened{"Configure Management Network", "Network Adapters"},
                               Opened{"Restart Management Network", "Restart management network now?"},
                               Opened{"Test Management Network", "attempt to ping your default"},
                               Opened{"Configure Keyboard", "If you are having difficulty"},
                               Opened{"Troubleshooting Options", "Modify KONU idle timeout"},
                               Opened{"Reset System Configuration", "Reset System Configuration: Confirm"}}) {
    while (PaneTitle(term) != opened.entry) ASSERT_NO_FATAL_FAILURE(Move(term, "Down", NextEntry(term)));
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", opened.shows));
    term.Press("Esc");
    ASSERT_TRUE(term.WaitForNoText(opened.shows)) << term.Screen();
    ASSERT_NO_FATAL_FAILURE(Ready(term, kLogOut));
  }
  for (const char* back :
       {"View Support Information", "View System Logs", "Troubleshooting Options", "Configure Keyboard",
        "Network Restore Options", "Test Management Network", "Restart Management Network"}) {
    ASSERT_NO_FATAL_FAILURE(Move(term, "Up", back));
  }
  SetState("/network/managementInterface", "");
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText("Restart Management Network: Error")) << term.Screen();
  Acknowledge(term, "Management network interface cannot be found.");
  EXPECT_EQ(PaneTitle(term), "Restart Management Network");
}

}  // namespace

namespace {

constexpr const char kEnterLockdown[] = R"("argv":["qal-cmd","-U","konu","qalsvc/auth/lockdown_mode_enter"])";

// A journal line holding every part.
bool JournalLine(const std::string& journal, const std::vector<std::string>& parts) {
  size_t start = 0;
  for (size_t end; (end = journal.find('\n', start)) != std::string::npos; start = end + 1) {
    const std::string line = journal.substr(start, end - start);
    bool all = true;
    for (const std::string& part : parts) all = all && line.find(part) != std::string::npos;
    if (all) return true;
  }
  return false;
}

class Lockdown : public Menu {
 protected:
  // From the lockdown entry: the dialog, Space when `toggle`, Enter, back in the menu.
  void Confirm(Terminal& term, bool toggle) {
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "Enter", "Enable lockdown mode"));
    if (toggle) {
      term.Press("Space");
      ASSERT_TRUE(term.WaitForText("[X] Enable lockdown mode") ||
                  term.WaitForText("[ ] Enable lockdown mode"));
    }
    term.Press("Enter");
    ReadyWithout(term, "Enable lockdown mode");
  }
  static bool PaneShows(Terminal& term, const std::string& state) {
    return term.WaitFor(
        [&] { return Pane(term).rfind("Configure Lockdown Mode " + state + " When", 0) == 0; });
  }
};

TEST_F(Lockdown, EnterWithoutAChangeRunsNothingAFailureIsLoggedAndASuccessShows) {
  Terminal term(24, 80);
  Open(term, /*local=*/false);
  ASSERT_NO_FATAL_FAILURE(Move(term, "Down", "Configure Lockdown Mode"));
  ASSERT_NO_FATAL_FAILURE(Confirm(term, false));
  EXPECT_FALSE(Contains(Journal(), "lockdown_mode_")) << Journal();

  SetState("/faults/tools/qal-cmd qalsvc~1auth~1lockdown_mode_enter",
           {{"exitCode", 1}, {"stderr", "Operation not permitted\n"}, {"times", 1}});
  ASSERT_NO_FATAL_FAILURE(Confirm(term, true));
  EXPECT_TRUE(PaneShows(term, "Disabled")) << term.Screen();
  EXPECT_TRUE(term.WaitFor([&] {
    return Contains(Syslog(), "Enabling lockdown mode failed with error: Operation not permitted");
  })) << Syslog();

  ASSERT_NO_FATAL_FAILURE(Confirm(term, true));
  EXPECT_TRUE(PaneShows(term, "Enabled")) << term.Screen();
  EXPECT_TRUE(JournalLine(Journal(), {kEnterLockdown, R"("exit":0)", R"("user":"konu")"})) << Journal();
  EXPECT_TRUE(State("/lockdown/enabled").get<bool>());
  EXPECT_TRUE(Contains(Syslog(), "Lockdown mode enabled")) << Syslog();
}

}  // namespace

namespace {

TEST_F(Menu, LogDigitsCountTheAvailableLogsAndThePagerReturnsToAWholeMenu) {
  ASSERT_EQ(0, unlink(HostFile("var/log/nukernel.log").c_str()));
  ASSERT_EQ(0, unlink(HostFile("var/log/mgmtd.log").c_str()));
  Terminal term(24, 80);
  Open(term, /*local=*/false);
  for (const char* next : {"Configure Lockdown Mode", "Configure Management Network",
                           "Restart Management Network", "Test Management Network", "Network Restore Options",
                           "Troubleshooting Options", "View System Logs"}) {
    ASSERT_NO_FATAL_FAILURE(Move(term, "Down", next));
  }
  EXPECT_EQ(
      Pane(term).rfind("View System Logs <1> Syslog <2> Config <3> Pallas Agent (tmga) <4> High Availibility "
                       "Agent (aam) <5> Corbel Orin Observation log (zebd) Press",
                       0),
      0u)
      << term.Screen();
  const std::string menu = term.Screen();

  term.Press("0");  // numbers start at 1
  term.Press("3");
  ASSERT_TRUE(term.WaitForText("Pallas agent starting")) << term.Screen();
  ASSERT_TRUE(term.WaitForText("<Q> Quit </> RegExp Search <H> Help")) << term.Screen();
  EXPECT_FALSE(Contains(term.Screen(), "View System Logs")) << "0 opened nothing: " << term.Screen();
  term.Press("!");  // LESSSECURE keeps the pager from running a shell
  ASSERT_TRUE(term.WaitForText("Command not available")) << term.Screen();
  term.Press("q");
  ASSERT_TRUE(term.WaitForText(kMenuTitle)) << term.Screen();
  ASSERT_TRUE(term.WaitFor([&] { return term.Screen() == menu; })) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  // Keys reach the menu again.
  ASSERT_NO_FATAL_FAILURE(Move(term, "Up", "Troubleshooting Options"));
}

}  // namespace

namespace {

TEST_F(Menu, SupportInformationPagesFillInTheHostFactsAndContinueATallPage) {
  std::string tall;
  for (int line = 1; line <= 30; ++line)
    tall += "line " + std::string(line < 10 ? "0" : "") + std::to_string(line) + "\n";
  WriteFile("etc/corbel/support/50-tall", tall);
  Terminal term(24, 80);
  Open(term, /*local=*/false);
  for (const char* next : {"Configure Lockdown Mode", "Configure Management Network",
                           "Restart Management Network", "Test Management Network", "Network Restore Options",
                           "Troubleshooting Options", "View System Logs", "View Support Information"}) {
    ASSERT_NO_FATAL_FAILURE(Move(term, "Down", next));
  }
  // Each page: a text it starts with, what else it shows, and its hints.
  struct Page {
    std::string first;
    std::vector<std::string> shows;
    bool previous, next;
  };
  const std::string product =
      State("/version/product").get<std::string>() + " " + State("/version/version").get<std::string>();
  const std::vector<Page> pages = {
      {"Host certificate SHA-1 thumbprint of the host's SSL certificate:", {":"}, false, true},
      {"SSH host keys RSA key fingerprint: SHA256:", {"DSA key fingerprint:"}, true, true},
      {"Support contract Product: " + product +
           " Service tag: TX7-40321 Asset tag: LAB-0042 Support start: "
           "2026-01-15 Support period: 3 years",
       {},
       true,
       true},
      {"Firmware versions BIOS: 2.14.1 BMC: 6.10.30 CPLD: 1.0.7 PLSA: 3.2.0", {}, true, true},
      {"line 01 line 02", {"line 15"}, true, true},
      {"line 16 line 17", {"line 30"}, true, false},
  };
  const std::string title = "View Support Information ";
  for (size_t i = 0; i < pages.size(); ++i) {
    SCOPED_TRACE(i);
    if (i > 0) term.Press("PgDn");
    ASSERT_TRUE(term.WaitFor([&] { return Pane(term).rfind(title + pages[i].first, 0) == 0; }))
        << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    const std::string shown = Pane(term);
    for (const std::string& text : pages[i].shows) EXPECT_NE(shown.find(text), std::string::npos) << text;
    EXPECT_EQ(shown.find("line 17") != std::string::npos, i == 5)
        << "a page ends at the pane's last text row";
    EXPECT_EQ(shown.find("<Page Up>") != std::string::npos, pages[i].previous) << shown;
    EXPECT_EQ(shown.find("<Page Down>") != std::string::npos, pages[i].next) << shown;
  }
  term.Press("PgDn");  // no page after the last
  term.Press("PgUp");
  ASSERT_TRUE(term.WaitFor([&] { return Pane(term).rfind(title + pages[4].first, 0) == 0; }))
      << term.Screen();
  EXPECT_FALSE(Contains(Pane(term), "{")) << "every variable is filled in";
}

}  // namespace
