// The test terminal itself: programs on a pty, read back through the emulator.
#include <curses.h>
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <clocale>
#include <cstdio>
#include <string>
#include <system_error>

#include "tests/harness/Terminal.h"

namespace KonuTest {
namespace {

using Clock = std::chrono::steady_clock;

long ElapsedMs(Clock::time_point since) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - since).count();
}

int OpenFdCount() {
  int count = 0;
  DIR* dir = opendir("/proc/self/fd");
  if (dir == nullptr) return -1;
  while (dirent* entry = readdir(dir)) count += entry->d_name[0] != '.';
  closedir(dir);
  return count;
}

// In the child: raw input; echoes each run of bytes ended by '.' as "[hex ]", until "q.".
int EchoKeysAsHex(const char* preamble) {
  termios tio;
  tcgetattr(0, &tio);
  cfmakeraw(&tio);
  tcsetattr(0, TCSANOW, &tio);
  printf("%sready\r\n", preamble);
  fflush(stdout);
  std::string hex;
  char c;
  while (read(0, &c, 1) == 1) {
    if (c != '.') {
      char byte[4];
      snprintf(byte, sizeof byte, "%02x ", static_cast<unsigned char>(c));
      hex += byte;
      continue;
    }
    if (hex == "71 ") return 0;  // "q"
    printf("[%s]\r\n", hex.c_str());
    fflush(stdout);
    hex.clear();
  }
  return 1;
}

// ---- Text and colours from plain programs

TEST(TerminalText, RowsAndRegionsOfPrintedText) {
  Terminal t(5, 20);
  t.Spawn({"/bin/sh", "-c", "printf 'hello\\nworld\\033[4;6Hthere'"});
  ASSERT_TRUE(t.WaitForText("there", 2000)) << t.Screen();
  EXPECT_EQ(t.Row(0), "hello               ");
  EXPECT_EQ(t.Row(1), "world               ");
  EXPECT_EQ(t.Row(3), "     there          ");
  EXPECT_EQ(t.Region(0, 1, 2, 3), "ell\norl");
  EXPECT_EQ(t.Screen(),
            "hello               \nworld               \n                    \n"
            "     there          \n                    ");
  int row = -1;
  int col = -1;
  ASSERT_TRUE(t.Find("there", &row, &col));
  EXPECT_EQ(row, 3);
  EXPECT_EQ(col, 5);
  EXPECT_FALSE(t.Find("absent", &row, &col));
  EXPECT_THROW(t.Row(5), std::out_of_range);
  EXPECT_THROW(t.Region(4, 15, 2, 2), std::out_of_range);
}

TEST(TerminalText, WideAndAccentedCharactersKeepTheirColumns) {
  Terminal t(2, 10);
  t.Spawn({"/bin/sh", "-c", "printf '\\303\\251\\346\\274\\242x'"});  // "é漢x"
  ASSERT_TRUE(t.WaitForText("x", 2000)) << t.Screen();
  EXPECT_EQ(t.Row(0), "\xc3\xa9\xe6\xbc\xa2x      ");  // 1 + 2 + 1 columns, 6 blanks
  int col = -1;
  ASSERT_TRUE(t.Find("x", nullptr, &col));
  EXPECT_EQ(col, 3);
}

TEST(TerminalText, ColoursComeBackAsPaletteIndexes) {
  Terminal t(3, 20);
  t.Spawn({"/bin/sh", "-c",
           "printf 'd\\033[31;43mA\\033[0m\\033[91;104mB\\033[38;5;200;48;5;17mC"
           "\\033[0;1;7mD\\033[0;38;2;255;0;0mE\\033[38;2;1;2;3mF'"});
  ASSERT_TRUE(t.WaitForText("dABCDEF", 2000)) << t.Screen();
  struct Expected {
    int col, fg, bg;
    bool reverse, bold;
  };
  const Expected cells[] = {
      {0, -1, -1, false, false},  // default colours
      {1, 1, 3, false, false},    // red on yellow
      {2, 9, 12, false, false},   // bright red on bright blue
      {3, 200, 17, false, false}, {4, -1, -1, true, true},
      {5, 196, -1, false, false},  // direct colour that is palette entry 196
      {6, -2, -1, false, false},   // direct colour matching no entry
  };
  for (const auto& e : cells) {
    CellColors c = t.Colors(0, e.col);
    EXPECT_EQ(c.foreground, e.fg) << "col " << e.col;
    EXPECT_EQ(c.background, e.bg) << "col " << e.col;
    EXPECT_EQ(c.reverse, e.reverse) << "col " << e.col;
    EXPECT_EQ(c.bold, e.bold) << "col " << e.col;
  }
}

TEST(TerminalText, EnvironmentIsExactlyTheGivenOnePlusTerm) {
  Terminal t(3, 60);
  t.Spawn({"/bin/sh", "-c", "printf '<%s|%s|%s>' \"$TERM\" \"$FOO\" \"$HOME\""}, {"FOO=bar"});
  EXPECT_TRUE(t.WaitForText("<xterm-256color|bar|>", 2000)) << t.Screen();

  Terminal own(3, 60);
  own.Spawn({"/bin/sh", "-c", "printf '<%s>' \"$TERM\""}, {"TERM=vt100"});
  EXPECT_TRUE(own.WaitForText("<vt100>", 2000)) << own.Screen();
}

TEST(TerminalText, AnswersTheProgramsQueries) {
  Terminal t(6, 40);
  t.Fork([] {
    termios tio;
    tcgetattr(0, &tio);
    cfmakeraw(&tio);
    tcsetattr(0, TCSANOW, &tio);
    printf("\033[3;5H\033[6n");  // where is the cursor?
    fflush(stdout);
    std::string reply;
    char c;
    while (read(0, &c, 1) == 1 && c != 'R') reply += c;
    printf("\033[1;1Hreply %s", reply.c_str() + 1);  // skip the ESC
    fflush(stdout);
    return 0;
  });
  EXPECT_TRUE(t.WaitForText("reply [3;5", 2000)) << t.Screen();
}

// ---- Curses programs in a forked child

int CursesBoxInUtf8() {
  setlocale(LC_ALL, "");
  SCREEN* screen = newterm(nullptr, stdout, stdin);
  if (screen == nullptr) return 2;
  curs_set(0);
  box(stdscr, 0, 0);
  mvaddstr(1, 1, "Gr\u00fc\u00dfe");
  refresh();
  const int ch = getch();
  endwin();
  delscreen(screen);
  return ch == 'q' ? 0 : 1;
}

TEST(TerminalCurses, LineDrawingAndUtf8TextReadBackAsUnicode) {
  Terminal t(3, 8);
  t.Fork(CursesBoxInUtf8, {"LANG=C.UTF-8"});
  ASSERT_TRUE(t.WaitForText("\u2518", 3000)) << t.Screen();  // the last corner drawn
  EXPECT_EQ(t.Screen(),
            "\u250c\u2500\u2500\u2500\u2500\u2500\u2500\u2510\n"
            "\u2502Gr\u00fc\u00dfe \u2502\n"
            "\u2514\u2500\u2500\u2500\u2500\u2500\u2500\u2518");
  EXPECT_TRUE(t.AltScreen());
  EXPECT_FALSE(t.CursorVisible());
  t.Press("q");
  int status = -1;
  ASSERT_TRUE(t.WaitForExit(3000, &status));
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  // endwin put the terminal back: main screen, cursor shown.
  EXPECT_FALSE(t.AltScreen());
  EXPECT_TRUE(t.CursorVisible());
}

// ---- Keys as bytes

struct KeyCase {
  const char* name;
  const char* hex;
};

const KeyCase kXtermKeys[] = {
    {"F1", "1b 4f 50 "},        {"F2", "1b 4f 51 "},
    {"F3", "1b 4f 52 "},        {"F4", "1b 4f 53 "},
    {"F5", "1b 5b 31 35 7e "},  {"F6", "1b 5b 31 37 7e "},
    {"F7", "1b 5b 31 38 7e "},  {"F8", "1b 5b 31 39 7e "},
    {"F9", "1b 5b 32 30 7e "},  {"F10", "1b 5b 32 31 7e "},
    {"F11", "1b 5b 32 33 7e "}, {"F12", "1b 5b 32 34 7e "},
    {"Up", "1b 5b 41 "},        {"Down", "1b 5b 42 "},
    {"Right", "1b 5b 43 "},     {"Left", "1b 5b 44 "},
    {"Home", "1b 5b 48 "},      {"End", "1b 5b 46 "},
    {"Insert", "1b 5b 32 7e "}, {"Delete", "1b 5b 33 7e "},
    {"PgUp", "1b 5b 35 7e "},   {"PgDn", "1b 5b 36 7e "},
    {"Backspace", "7f "},       {"Tab", "09 "},
    {"Enter", "0d "},           {"Esc", "1b "},
    {"Space", "20 "},           {"ab", "61 62 "},  // not a key name: typed as it stands
};

TEST(TerminalKeys, NamedKeysArriveAsXtermBytes) {
  Terminal t(6, 40);
  t.Fork([] { return EchoKeysAsHex(""); });
  ASSERT_TRUE(t.WaitForText("ready", 2000)) << t.Screen();
  for (const auto& key : kXtermKeys) {
    t.Press(key.name);
    t.Type(".");
    EXPECT_TRUE(t.WaitForText(std::string("[") + key.hex + "]", 2000)) << key.name << "\n" << t.Screen();
  }
  t.Type("q.");
  int status = -1;
  ASSERT_TRUE(t.WaitForExit(2000, &status));
  EXPECT_EQ(status, 0);
}

TEST(TerminalKeys, CursorKeysFollowTheApplicationCursorMode) {
  Terminal t(6, 40);
  t.Fork([] { return EchoKeysAsHex("\033[?1h"); });  // as curses' keypad() asks
  ASSERT_TRUE(t.WaitForText("ready", 2000)) << t.Screen();
  for (const KeyCase& key :
       {KeyCase{"Up", "1b 4f 41 "}, KeyCase{"Left", "1b 4f 44 "}, KeyCase{"Home", "1b 4f 48 "},
        KeyCase{"End", "1b 4f 46 "}, KeyCase{"PgDn", "1b 5b 36 7e "}}) {
    t.Press(key.name);
    t.Type(".");
    EXPECT_TRUE(t.WaitForText(std::string("[") + key.hex + "]", 2000)) << key.name << "\n" << t.Screen();
  }
  EXPECT_EQ(Terminal::KeyBytes("Up", true), "\x1bOA");
  EXPECT_EQ(Terminal::KeyBytes("Up"), "\x1b[A");
}

// ---- The child's life

TEST(TerminalChild, ExitStatusOfSpawnAndForkAndASignalsEnd) {
  Terminal shell(3, 20);
  shell.Spawn({"/bin/sh", "-c", "exit 7"});
  int status = -1;
  ASSERT_TRUE(shell.WaitForExit(2000, &status));
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 7);

  Terminal forked(3, 20);
  forked.Fork([] { return 3; });
  ASSERT_TRUE(forked.WaitForExit(2000, &status));
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);

  Terminal sleeper(3, 20);
  sleeper.Spawn({"/bin/sleep", "30"});
  EXPECT_FALSE(sleeper.WaitForExit(50, nullptr));
  sleeper.Signal(SIGTERM);
  ASSERT_TRUE(sleeper.WaitForExit(2000, &status));
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGTERM);
}

TEST(TerminalChild, PtyIsTheControllingTerminal) {
  Terminal t(3, 40);
  // A new session whose controlling tty is the pty: /dev/tty opens, stdin is a tty.
  t.Spawn({"/bin/sh", "-c", "test -t 0 && test -t 2 && : </dev/tty && printf 'tty ok'"});
  EXPECT_TRUE(t.WaitForText("tty ok", 2000)) << t.Screen();
}

TEST(TerminalChild, ResizeReachesTheChild) {
  Terminal t(5, 20);
  t.Fork([] {
    sigset_t winch;
    sigemptyset(&winch);
    sigaddset(&winch, SIGWINCH);
    sigprocmask(SIG_BLOCK, &winch, nullptr);
    winsize size{};
    ioctl(0, TIOCGWINSZ, &size);
    printf("was %dx%d\r\n", size.ws_row, size.ws_col);
    fflush(stdout);
    int sig = 0;
    sigwait(&winch, &sig);
    ioctl(0, TIOCGWINSZ, &size);
    printf("now %dx%d\r\n", size.ws_row, size.ws_col);
    fflush(stdout);
    return 0;
  });
  ASSERT_TRUE(t.WaitForText("was 5x20", 2000)) << t.Screen();
  t.Resize(8, 30);
  EXPECT_EQ(t.Rows(), 8);
  EXPECT_EQ(t.Cols(), 30);
  EXPECT_TRUE(t.WaitForText("now 8x30", 2000)) << t.Screen();
  EXPECT_EQ(t.Row(7).size(), 30u);
}

TEST(TerminalChild, BoundedWaitGivesUpInTime) {
  Terminal t(3, 20);
  t.Spawn({"/bin/sleep", "30"});
  auto start = Clock::now();
  EXPECT_FALSE(t.WaitForText("never", 200));
  long took = ElapsedMs(start);
  EXPECT_GE(took, 200);
  EXPECT_LT(took, 2000);
  EXPECT_TRUE(t.WaitForNoText("never", 0));

  start = Clock::now();
  t.Pump(100);
  took = ElapsedMs(start);
  EXPECT_GE(took, 100);
  EXPECT_LT(took, 2000);
}

// Also: BytesWritten counts every byte read.
TEST(TerminalChild, WaitForExitKeepsDrainingALoudChild) {
  Terminal t(5, 20);
  // Far more than a pty buffer holds: the child only ends if we keep reading.
  t.Spawn({"/bin/sh", "-c", "i=0; while [ $i -lt 3000 ]; do echo 0123456789abcdef; i=$((i+1)); done"});
  int status = -1;
  ASSERT_TRUE(t.WaitForExit(5000, &status));
  EXPECT_EQ(status, 0);
  EXPECT_EQ(t.BytesWritten(), 3000u * 18);  // each line ends in CR LF on the tty
}

TEST(TerminalChild, DestructorLeavesNoZombieNorFd) {
  int fdsBefore = OpenFdCount();
  pid_t pid = -1;
  {
    Terminal t(3, 20);
    t.Spawn({"/bin/sleep", "30"});
    pid = t.Pid();
    ASSERT_GT(pid, 0);
    EXPECT_NE(OpenFdCount(), fdsBefore);
  }
  EXPECT_EQ(waitpid(pid, nullptr, WNOHANG), -1);  // already reaped
  EXPECT_EQ(errno, ECHILD);
  EXPECT_EQ(OpenFdCount(), fdsBefore);
}

TEST(TerminalChild, DestructorTakesTheChildsHelpersAlong) {
  // Orphans come to this process, so it can see how the helper ended.
  ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
  pid_t helper = -1;
  {
    Terminal t(3, 30);
    t.Spawn({"/bin/sh", "-c", "/bin/sleep 30 & echo \"bg=$!\"; wait"});
    ASSERT_TRUE(t.WaitForText("bg=", 2000)) << t.Screen();
    helper = std::stoi(t.Row(0).substr(3));
  }
  int status = -1;
  bool reaped = false;
  auto start = Clock::now();
  while (!reaped && ElapsedMs(start) < 2000) {
    reaped = waitpid(helper, &status, WNOHANG) == helper;
    if (!reaped) usleep(2000);
  }
  prctl(PR_SET_CHILD_SUBREAPER, 0);
  ASSERT_TRUE(reaped);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
}

TEST(TerminalChild, OnlyStandardFdsReachASpawnedProgram) {
  int stray = open("/dev/null", O_RDONLY);  // no close-on-exec
  ASSERT_GE(stray, 3);
  Terminal t(3, 40);
  std::string check =
      "if [ -e /proc/$$/fd/" + std::to_string(stray) + " ]; then printf leaked; else printf clean; fi";
  t.Spawn({"/bin/sh", "-c", check});
  EXPECT_TRUE(t.WaitForText("clean", 2000)) << t.Screen();
  close(stray);
}

}  // namespace
}  // namespace KonuTest
