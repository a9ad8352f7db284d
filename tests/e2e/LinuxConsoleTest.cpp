// konu on this very machine, without a host root, in a pseudo-terminal. It runs in a private
// mount namespace (unshare -m): /run is a fresh tmpfs holding the login marker and the pid
// file, and /etc, /usr and /var are overlays whose upper layers are the test's own folders:
// the test account and the project's PAM file in /etc, KONU's tools installed in
// /usr/libexec/konu (konu-tools of this build, finding the machine's commands among
// recording stand-ins), a few keymaps. Whatever the console and its tools write lands in the
// test's folders; nothing of the machine changes.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/harness/SimHost.h"
#include "tests/harness/TemporaryAccounts.h"
#include "tests/harness/Terminal.h"

namespace {

namespace fs = std::filesystem;
using KonuTest::ReadFileText;
using KonuTest::TemporaryAccounts;
using KonuTest::Terminal;

const std::vector<std::string> kPath = {"PATH=/usr/sbin:/usr/bin:/sbin:/bin"};

std::string FirstLine(const std::string& path) {
  std::string line;
  std::getline(std::ifstream(path), line);
  return line;
}

std::string OsRelease(const std::string& key) {
  std::ifstream in("/etc/os-release");
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(key + "=", 0) != 0) continue;
    std::string value = line.substr(key.size() + 1);
    if (value.size() >= 2 && value.front() == '"') value = value.substr(1, value.size() - 2);
    return value;
  }
  return "";
}

void WriteFile(const std::string& path, const std::string& text, bool executable = false) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path) << text;
  if (executable) chmod(path.c_str(), 0755);
}

class LinuxConsole : public ::testing::Test {
 protected:
  void SetUp() override {
    accounts_ = std::make_unique<TemporaryAccounts>(dir_.Path());
    if (KonuTest::RunCommandLine(
            {"unshare", "-m", "sh", "-c", "mount --make-rprivate / && " + Overlay("usr")}, kPath)
            .exitCode != 0)
      GTEST_SKIP() << "no private mount namespace with overlays here";
    // KONU's tools as the package installs them, each finding the machine's commands in
    // the stand-in folder; the stand-ins record their argument vectors.
    std::istringstream help(KonuTest::RunCommandLine({KonuTest::BuildDir() + "/konu-tools", "--help"}).out);
    for (std::string line; std::getline(help, line);) {
      if (line.rfind("  ", 0) != 0) continue;
      const std::string name = line.substr(2, line.find(' ', 2) - 2);
      WriteFile(Upper("usr") + "/libexec/konu/" + name,
                "#!/bin/sh\nKONU_TOOLS_PATH=" + Machine() + " exec " + KonuTest::BuildDir() + "/konu-tools " +
                    name + " \"$@\"\n",
                true);
    }
    for (const char* command :
         {"systemctl", "systemd-run", "virsh", "localectl", "loadkeys", "gcore", "ping", "journalctl"})
      WriteFile(Machine() + "/" + command, "#!/bin/sh\necho \"${0##*/} $*\" >> " + Ran() + "\n", true);
    for (const char* command : {"tar", "gzip"}) {
      std::string real =
          KonuTest::RunCommandLine({"sh", "-c", std::string("command -v ") + command}, kPath).out;
      fs::create_symlink(real.substr(0, real.find('\n')), Machine() + "/" + command);
    }
    for (const char* keymap : {"us", "fr"})
      WriteFile(Upper("usr") + "/share/keymaps/i386/qwerty/" + keymap + ".map.gz", "");
    WriteFile(Upper("etc") + "/vconsole.conf", "KEYMAP=us\n");
  }

  // The upper layer of the overlay on /NAME; /etc's is the test account's folder.
  std::string Upper(const std::string& name) const {
    return name == "etc" ? accounts_->Etc() : dir_.Path() + "/" + name;
  }
  std::string Overlay(const std::string& name) const {
    const std::string work = dir_.Path() + "/" + name + ".work";
    fs::create_directories(Upper(name));
    fs::create_directories(work);
    return "mount -t overlay konu-test-" + name + " -o lowerdir=/" + name + ",upperdir=" + Upper(name) +
           ",workdir=" + work + " /" + name;
  }
  std::string Machine() const { return dir_.Path() + "/machine"; }
  std::string Ran() const { return dir_.Path() + "/ran"; }
  // The machine commands run so far, one per line.
  std::string Taken() const { return ReadFileText(Ran()); }
  bool WaitForTaken(Terminal& term, const std::string& line) const {
    return term.WaitFor([&] { return Taken().find(line + "\n") != std::string::npos; });
  }

  // Starts konu in its namespace, on the welcome screen; konu itself finds the machine's
  // commands (localectl, journalctl) among the stand-ins.
  void Start(Terminal& term) {
    const std::string setup =
        "mount --make-rprivate / && mount -t tmpfs -o mode=0755 konu-test-run /run && "
        "mkdir /run/konu && touch /run/konu/show-konu-login && " +
        Overlay("etc") + " && " + Overlay("usr") + " && " + Overlay("var") +
        " && exec env PATH=" + Machine() + " " + KonuTest::KonuBin();
    // TERM=xterm without SSH_CLIENT: the machine's own console.
    term.Spawn({"/usr/bin/unshare", "-m", "/bin/sh", "-c", setup},
               {"TERM=xterm", "ESCDELAY=25", "LANG=C.UTF-8", kPath[0]});
    ASSERT_TRUE(term.WaitForText(Product(), 10000)) << term.Screen();
  }
  // `key` on the welcome screen and the test account's name and password.
  static void LogIn(Terminal& term, const char* key, const std::string& password) {
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press(key);
    ASSERT_TRUE(term.WaitForText("Authentication Required")) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
    term.Press("Tab");  // past the keyboard line of the machine's own console
    term.Type(TemporaryAccounts::kUser);
    term.Press("Enter");
    term.Type(password);
    term.Press("Enter");
  }
  static void Ready(Terminal& term, const std::string& text, int timeoutMs = 5000) {
    ASSERT_TRUE(term.WaitForText(text, timeoutMs)) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }
  // The product line from the machine's os-release.
  static std::string Product() { return OsRelease("NAME") + " " + OsRelease("VERSION_ID"); }
  static void End(Terminal& term) {
    term.Signal(SIGTERM);
    int status = -1;
    ASSERT_TRUE(term.WaitForExit(5000, &status));
  }

  KonuTest::TempDir dir_;
  std::unique_ptr<TemporaryAccounts> accounts_;
};

TEST_F(LinuxConsole, ShowsTheMachinesFactsAndLogsInWithItsPam) {
  const std::string machineMounts = ReadFileText("/proc/self/mountinfo");
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(Start(term));
  // The product line from the machine's os-release and kernel; its name in the address.
  EXPECT_TRUE(term.WaitForText(FirstLine("/proc/sys/kernel/osrelease"))) << term.Screen();
  EXPECT_TRUE(term.WaitForText("https://" + FirstLine("/proc/sys/kernel/hostname"))) << term.Screen();
  // The hardware line may come after the product line.
  EXPECT_TRUE(term.WaitForText("Memory")) << term.Screen();

  // F2: the marker is there, so the login form; a wrong password is refused by pam_unix
  // (after its delay of about two seconds).
  ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2", "not-the-password"));
  Ready(term, "Invalid login or password.", 15000);
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText("Invalid login or password.")) << term.Screen();

  // Esc leaves the form; the right password opens the System Customization menu, and Esc
  // there logs out to the welcome screen.
  Ready(term, "Authentication Required");
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForNoText("Authentication Required")) << term.Screen();
  ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2", TemporaryAccounts::kPassword));
  Ready(term, "System Customization", 15000);
  term.Press("Esc");
  ASSERT_TRUE(term.WaitForText(Product())) << term.Screen();
  End(term);
  EXPECT_EQ(ReadFileText("/proc/self/mountinfo"), machineMounts) << "the namespace's mounts leaked";
}

// The heading of the right-hand pane (the menu's, the network screen's).
std::string PaneTitle(const Terminal& term) {
  std::string title = term.Region(1, term.Cols() / 2 + 1, 1, term.Cols() / 2 - 2);
  title.erase(0, title.find_first_not_of(' '));
  title.erase(title.find_last_not_of(' ') + 1);
  return title;
}

// Moves down (or up) a list to `entry`, shown as the pane's heading, and waits for keys.
void MoveTo(Terminal& term, const std::string& entry, const char* key = "Down") {
  for (int i = 0; i < 14 && PaneTitle(term) != entry; ++i) {
    const std::string before = PaneTitle(term);
    term.Press(key);
    ASSERT_TRUE(term.WaitFor([&] { return PaneTitle(term) != before; })) << term.Screen();
    ASSERT_TRUE(term.WaitUntilPolling());
  }
  ASSERT_EQ(entry, PaneTitle(term)) << term.Screen();
}

// Opens the network screen's `entry`; in its dialog presses the keys (Down, Backspace) and
// types the rest, then closes it with Enter once the last text typed shows.
void Edit(Terminal& term, const std::string& entry, const std::string& dialogText,
          const std::vector<std::string>& keys) {
  ASSERT_NO_FATAL_FAILURE(MoveTo(term, entry));
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForText(dialogText)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  for (const std::string& key : keys) {
    if (key == "Down" || key == "Backspace") {
      term.Press(key);
    } else {
      term.Type(key);
    }
  }
  ASSERT_TRUE(term.WaitForText(keys.back())) << term.Screen();
  term.Press("Enter");
  ASSERT_TRUE(term.WaitForNoText(dialogText)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
}

// Every error box titled `title` in turn: its message's first line, each box closed with
// Enter once its message and footer are drawn. Ends when no further box comes.
std::vector<std::string> ErrorBoxes(Terminal& term, const std::string& title) {
  std::vector<std::string> messages;
  int row = 0, col = 0;
  while (term.WaitForText(title, 3000) && term.Find(title, &row, &col)) {
    std::string message;
    const bool drawn = term.WaitFor([&] {
      message = term.Region(row + 2, col, 1, 66);
      message.erase(message.find_last_not_of(' ') + 1);
      return !message.empty() && term.Region(row, col, 12, 66).find("<Enter> OK") != std::string::npos;
    });
    messages.push_back(message);
    if (!drawn || !term.WaitUntilPolling()) break;
    const std::string shown = term.Region(row, col, 3, 66);
    term.Press("Enter");
    if (!term.WaitFor([&] { return term.Region(row, col, 3, 66) != shown; })) break;
  }
  return messages;
}

// One operator's walk over every screen that changes the host, each working through KONU's
// tools or saying why it cannot; the console never ends.
TEST_F(LinuxConsole, EveryHostChangingScreenWorksThroughKonusToolsOrSaysWhyNot) {
  const std::string shadow = ReadFileText(accounts_->Etc() + "/shadow");
  Terminal term(24, 80);
  ASSERT_NO_FATAL_FAILURE(Start(term));
  ASSERT_NO_FATAL_FAILURE(LogIn(term, "F2", TemporaryAccounts::kPassword));
  Ready(term, "System Customization", 15000);

  // The password, through the machine's PAM, then saved by the backup tool.
  term.Press("Enter");
  Ready(term, "Old Password:");
  term.Type(TemporaryAccounts::kPassword);
  term.Press("Enter");  // the old password is checked as the field is left
  ASSERT_TRUE(term.WaitUntilPolling());
  for (int field = 0; field < 2; ++field) {
    term.Type("Other-pass2");
    term.Press("Enter");
  }
  ASSERT_TRUE(term.WaitForNoText("Old Password:", 15000)) << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());
  EXPECT_NE(ReadFileText(accounts_->Etc() + "/shadow"), shadow);
  EXPECT_TRUE(term.WaitFor([&] {
    std::error_code none;
    return !fs::is_empty(Upper("var") + "/backups/konu", none) && !none;
  })) << "no backup archive";

  // Lockdown is never possible on this machine: the entry is passed over.
  term.Press("Down");
  ASSERT_TRUE(term.WaitFor([&] { return PaneTitle(term) == "Configure Management Network"; }))
      << term.Screen();
  ASSERT_TRUE(term.WaitUntilPolling());

  // The management network: a VLAN, a static address and a name server, applied. KONU
  // cannot change this machine's network yet, and each step says so.
  term.Press("Enter");
  Ready(term, "<Esc> Exit");
  Edit(term, "VLAN (optional)", "VLAN ID (1-4094, or 4095 to access all VLANs):",
       {"Backspace", "Backspace", "Backspace", "Backspace", "7"});
  Edit(term, "IPv4 Configuration", "Set static IPv4 address and network configuration:",
       {"Down", "Down", "Down", "10.0.0.9", "Down", "255.255.0.0", "Down", "10.0.0.254"});
  Edit(term, "DNS Configuration",
       "Use the following DNS server addresses and hostname:", {"Down", "Down", "192.0.2.53"});
  term.Press("Esc");
  Ready(term, "Apply changes and restart management network?");
  term.Press("Y");
  const std::vector<std::string> errors = ErrorBoxes(term, "Enable Management Network: Error");
  ASSERT_FALSE(errors.empty()) << term.Screen();
  for (const std::string& error : errors)
    EXPECT_EQ(error.substr(error.find(" failed: ") + 1), "failed: not supported on this host") << error;
  EXPECT_EQ(errors.back(), "Setting DNS failed: not supported on this host");
  Ready(term, "System Customization");

  MoveTo(term, "Restart Management Network");
  term.Press("Enter");
  Ready(term, "Restart management network now?");
  term.Press("F11");
  EXPECT_EQ(ErrorBoxes(term, "Restart Management Network: Error"),
            std::vector<std::string>{"Operation on the management network interface failed."});

  // The keyboard: the marked layout loaded and kept, the machine's own remembered.
  MoveTo(term, "Configure Keyboard");
  term.Press("Enter");
  Ready(term, "(o) us");
  term.Press("Up");
  term.Press("Space");
  Ready(term, "(o) fr");
  term.Press("Enter");
  EXPECT_TRUE(WaitForTaken(term, "loadkeys fr\nlocalectl set-keymap fr")) << Taken();
  EXPECT_EQ(ReadFileText(Upper("etc") + "/konu/keyboard.orig"), "us\n");
  Ready(term, "System Customization");

  // Troubleshooting: the stand-in systemd says the shell and SSH run, so both toggles stop
  // and disable them; the availability timeout arms a timer; the agents restart.
  MoveTo(term, "Troubleshooting Options");
  term.Press("Enter");
  Ready(term, "Disable Orin Shell");
  term.Press("Enter");
  Ready(term, "Enable Orin Shell");
  EXPECT_TRUE(WaitForTaken(term, "systemctl stop getty@tty2.service\nsystemctl disable getty@tty2.service"))
      << Taken();
  term.Press("Down");
  Ready(term, "SSH is Enabled");
  term.Press("Enter");
  Ready(term, "Enable SSH");
  EXPECT_TRUE(WaitForTaken(term, "systemctl stop ssh.service\nsystemctl disable ssh.service")) << Taken();
  term.Press("Down");
  ASSERT_TRUE(term.WaitUntilPolling());
  term.Press("Enter");
  Ready(term, "Availability timeout");
  term.Type("5");
  term.Press("Enter");
  EXPECT_TRUE(WaitForTaken(term,
                           "systemd-run --unit=konu-shell-timeout --on-active=300s "
                           "--timer-property=AccuracySec=1s systemctl stop getty@tty2.service ssh.service"))
      << Taken();
  EXPECT_NE(ReadFileText(Upper("etc") + "/konu/options").find("/UserVars/OrinShellTimeOut=300\n"),
            std::string::npos);
  ASSERT_TRUE(term.WaitForNoText("Availability timeout")) << term.Screen();
  MoveTo(term, "Restart Management Agents");
  term.Press("Enter");
  Ready(term, "Restart management agents now?");
  term.Press("F11");
  Ready(term, "Starting management agents. Done.");
  EXPECT_TRUE(WaitForTaken(term, "systemctl stop libvirtd.service\nsystemctl start libvirtd.service"))
      << Taken();
  term.Press("Enter");
  Ready(term, "<Esc> Exit");
  term.Press("Esc");
  Ready(term, "System Customization");

  // The reset undoes what KONU wrote, and Enter restarts the host.
  MoveTo(term, "Reset System Configuration");
  term.Press("Enter");
  Ready(term, "Reset System Configuration now?");
  term.Press("F11");
  Ready(term, "<Enter> Restart Host");
  EXPECT_TRUE(WaitForTaken(term, "localectl set-keymap us")) << Taken();
  EXPECT_FALSE(fs::exists(Upper("etc") + "/konu/options"));
  EXPECT_FALSE(fs::exists(Upper("etc") + "/konu/keyboard.orig"));
  term.Press("Enter");
  EXPECT_TRUE(WaitForTaken(term, "systemctl reboot --force")) << Taken();
  EXPECT_TRUE(term.WaitForText("<Enter> Restart Host", 0)) << "stays until the host goes down";
  End(term);
}

// Shutting down and restarting from F12: the running machines through virsh, then the host
// through systemd, each by KONU's own tool of that name. The console then waits for the end.
TEST_F(LinuxConsole, ShutDownAndRestartGoThroughKonusTools) {
  for (const auto& [key, shown, command] :
       {std::tuple{"F2", "Shutdown in progress...", "systemctl poweroff"},
        std::tuple{"F11", "Restart in progress...", "systemctl reboot"}}) {
    SCOPED_TRACE(key);
    fs::remove(Ran());
    Terminal term(24, 80);
    ASSERT_NO_FATAL_FAILURE(Start(term));
    ASSERT_NO_FATAL_FAILURE(LogIn(term, "F12", TemporaryAccounts::kPassword));
    Ready(term, "Forcefully terminate running VMs, if any ...", 15000);
    term.Press(key);
    Ready(term, shown);
    EXPECT_TRUE(WaitForTaken(term, "virsh list --name --state-running")) << Taken();
    EXPECT_TRUE(WaitForTaken(term, command)) << Taken();
    EXPECT_TRUE(term.WaitForText(shown, 0)) << "stays until the host goes down";
    End(term);
  }
}

}  // namespace
