// Test terminal: pumps the program's output into the emulator, writes keys, waits with deadlines.
#include "tests/harness/Terminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "tests/harness/TerminalImpl.h"

namespace KonuTest {

namespace {

// How often a wait looks at its condition when the program writes nothing: a condition
// may depend on files or on the child's state, not only on the screen.
constexpr int kRecheckMs = 10;
// A write the program does not take within this time is a hung program, not a slow one.
constexpr int kWriteLimitMs = 10000;

using Clock = std::chrono::steady_clock;

int MsLeft(Clock::time_point deadline) {
  auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

// True when the thread sleeps in a blocking read() of its terminal (fd 0), as curses'
// wgetch() does without a time-out: like poll(), it has sent everything it drew.
bool ReadsTerminal(const std::string& task) {
  std::ifstream in(task + "/syscall");
  long number = -1;
  std::string fd;
  in >> number >> fd;
  return in && number == SYS_read && fd == "0x0";
}

}  // namespace

Terminal::Impl::Impl(int rowCount, int colCount) : rows(rowCount), cols(colCount) {
  if (rows <= 0 || cols <= 0) throw std::invalid_argument("Terminal: size must be positive");
  vt = vterm_new(rows, cols);
  if (vt == nullptr) throw std::runtime_error("Terminal: vterm_new failed");
  vterm_set_utf8(vt, 1);
  vterm_output_set_callback(vt, &Impl::OnOutput, this);
  screen = vterm_obtain_screen(vt);
  // Damage per cell (the emulator's default merge): every put, erase and scroll counts.
  static const VTermScreenCallbacks callbacks = {&Impl::OnDamage, nullptr, nullptr, &Impl::OnTermProp,
                                                 &Impl::OnBell,   nullptr, nullptr, nullptr};
  vterm_screen_set_callbacks(screen, &callbacks, this);
  // Full-screen programs switch to the alternate screen and back, as on xterm.
  vterm_screen_enable_altscreen(screen, 1);
  vterm_screen_reset(screen, 1);
}

Terminal::Impl::~Impl() {
  if (pid > 0 && !reaped) KillAndReap();
  if (master >= 0) close(master);
  if (vt != nullptr) vterm_free(vt);
}

void Terminal::Impl::OnOutput(const char* bytes, size_t len, void* user) {
  auto* self = static_cast<Impl*>(user);
  (self->capture != nullptr ? *self->capture : self->replies).append(bytes, len);
}

int Terminal::Impl::OnTermProp(VTermProp prop, VTermValue* val, void* user) {
  auto* self = static_cast<Impl*>(user);
  if (prop == VTERM_PROP_ALTSCREEN) self->altScreen = val->boolean != 0;
  if (prop == VTERM_PROP_CURSORVISIBLE) self->cursorVisible = val->boolean != 0;
  return 1;
}

int Terminal::Impl::OnDamage(VTermRect rect, void* user) {
  auto* self = static_cast<Impl*>(user);
  self->cellWrites.resize(static_cast<size_t>(self->rows * self->cols));
  for (int row = std::max(rect.start_row, 0); row < std::min(rect.end_row, self->rows); ++row) {
    for (int col = std::max(rect.start_col, 0); col < std::min(rect.end_col, self->cols); ++col) {
      ++self->cellWrites[static_cast<size_t>(row * self->cols + col)];
    }
  }
  return 1;
}

int Terminal::Impl::OnBell(void* user) {
  ++static_cast<Impl*>(user)->bells;
  return 1;
}

bool Terminal::Impl::ReadOnce(int ms) {
  if (master < 0) {
    if (ms > 0) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    return false;
  }
  if (hungUp) {
    // No slave is open, so poll would return at once: wait as asked, then look again
    // (a program may reopen its terminal).
    if (ms > 0) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
  } else {
    pollfd pfd{master, POLLIN, 0};
    int ready = poll(&pfd, 1, ms);
    if (ready < 0 && errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    if (ready <= 0) return false;
  }
  bool got = false;
  char buffer[16384];
  for (;;) {
    ssize_t n = read(master, buffer, sizeof buffer);
    if (n > 0) {
      got = true;
      hungUp = false;
      bytesRead += static_cast<size_t>(n);
      output.append(buffer, static_cast<size_t>(n));
      if (output.size() > 2 * kOutputKept) output.erase(0, output.size() - kOutputKept);
      vterm_input_write(vt, buffer, static_cast<size_t>(n));
      continue;
    }
    if (n < 0 && errno == EINTR) continue;
    if (n < 0 && errno == EAGAIN) break;
    hungUp = true;  // EIO (or 0): every process has closed the slave side
    break;
  }
  if (!replies.empty()) {
    std::string answer;
    answer.swap(replies);
    WriteAll(answer);
  }
  return got;
}

void Terminal::Impl::Drain() {
  while (ReadOnce(0)) {
  }
}

void Terminal::Impl::WriteAll(std::string_view bytes) {
  if (master < 0) throw std::logic_error("Terminal: no program started");
  auto deadline = Clock::now() + std::chrono::milliseconds(kWriteLimitMs);
  while (!bytes.empty()) {
    ssize_t n = write(master, bytes.data(), bytes.size());
    if (n > 0) {
      bytes.remove_prefix(static_cast<size_t>(n));
      continue;
    }
    if (n < 0 && errno == EINTR) continue;
    if (n < 0 && errno != EAGAIN) return;  // EIO: the program has gone; its keys go nowhere
    if (MsLeft(deadline) == 0) throw std::runtime_error("Terminal: the program takes no input");
    // The program may itself be blocked writing to us: read while we wait for room.
    pollfd pfd{master, POLLOUT, 0};
    if (poll(&pfd, 1, kRecheckMs) <= 0 || (pfd.revents & POLLOUT) == 0) ReadOnce(0);
  }
}

bool Terminal::Impl::Reap() {
  if (pid <= 0) return false;
  if (reaped) return true;
  int status = 0;
  pid_t got;
  do {
    got = waitpid(pid, &status, WNOHANG);
  } while (got < 0 && errno == EINTR);
  if (got == pid) {
    reaped = true;
    exitStatus = status;
  } else if (got < 0) {
    throw std::system_error(errno, std::generic_category(), "waitpid");
  }
  return reaped;
}

void Terminal::Impl::KillAndReap() {
  // The child leads its own session and process group: take its helpers with it.
  kill(-pid, SIGKILL);
  kill(pid, SIGKILL);
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  reaped = true;
  exitStatus = status;
}

bool Terminal::Impl::ApplicationCursorKeys() {
  // The emulator tracks the cursor-key mode the program set; ask it how it would send Up.
  std::string up;
  capture = &up;
  vterm_keyboard_key(vt, VTERM_KEY_UP, VTERM_MOD_NONE);
  capture = nullptr;
  return up.size() >= 2 && up[1] == 'O';
}

Terminal::Terminal(int rows, int cols) : impl_(std::make_unique<Impl>(rows, cols)) {}

Terminal::~Terminal() = default;

void Terminal::Write(std::string_view bytes) { impl_->WriteAll(bytes); }

void Terminal::Pump(int ms) {
  auto deadline = Clock::now() + std::chrono::milliseconds(ms);
  impl_->Drain();
  for (int left = MsLeft(deadline); left > 0; left = MsLeft(deadline)) {
    if (impl_->master < 0 || (impl_->hungUp && impl_->Reap())) break;  // nothing can come
    impl_->ReadOnce(impl_->hungUp ? std::min(left, kRecheckMs) : left);
  }
}

bool Terminal::WaitFor(const std::function<bool()>& condition, int timeoutMs) {
  auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    impl_->Drain();
    if (condition()) return true;
    int left = MsLeft(deadline);
    if (left == 0) return false;
    impl_->ReadOnce(std::min(left, kRecheckMs));
  }
}

bool Terminal::WaitUntilPolling(int timeoutMs) {
  const std::string task = "/proc/" + std::to_string(Pid()) + "/task/" + std::to_string(Pid());
  const bool polling = WaitFor(
      [&] {
        std::ifstream in(task + "/wchan");
        std::string where;
        std::getline(in, where);
        if (where.find("poll") == std::string::npos && !ReadsTerminal(task)) return false;
        // poll() and select() sleep alike, and the command runner waits for a tool in
        // select(): the main thread reads keys only while it has no child of its own.
        std::ifstream childrenFile(task + "/children");
        std::string children;
        std::getline(childrenFile, children);
        return children.find_first_not_of(' ') == std::string::npos;
      },
      timeoutMs);
  // What the program drew just before it went to wait may have come after the last read:
  // take it in, so the screen is the one the program waits on.
  if (polling) impl_->Drain();
  return polling;
}

bool Terminal::WaitForText(std::string_view text, int timeoutMs) {
  return WaitFor([&] { return Screen().find(text) != std::string::npos; }, timeoutMs);
}

bool Terminal::WaitForNoText(std::string_view text, int timeoutMs) {
  return WaitFor([&] { return Screen().find(text) == std::string::npos; }, timeoutMs);
}

bool Terminal::WaitForExit(int timeoutMs, int* status) {
  if (impl_->pid <= 0) throw std::logic_error("Terminal: no program started");
  bool ended = WaitFor([&] { return impl_->Reap(); }, timeoutMs);
  if (!ended) return false;
  impl_->Drain();  // what it wrote last
  if (status != nullptr) *status = impl_->exitStatus;
  return true;
}

size_t Terminal::BytesWritten() const { return impl_->bytesRead; }

std::string Terminal::Output() const {
  const std::string& all = impl_->output;
  return all.size() > Impl::kOutputKept ? all.substr(all.size() - Impl::kOutputKept) : all;
}

void Terminal::ResetCellWrites() {
  impl_->cellWrites.assign(static_cast<size_t>(impl_->rows * impl_->cols), 0);
}

int Terminal::CellWrites(int row, int col) const {
  impl_->CheckPosition(row, col);
  const size_t at = static_cast<size_t>(row * impl_->cols + col);
  return at < impl_->cellWrites.size() ? impl_->cellWrites[at] : 0;
}

pid_t Terminal::Pid() const { return impl_->pid; }

void Terminal::Signal(int signal) {
  if (impl_->pid <= 0 || impl_->Reap()) return;
  kill(impl_->pid, signal);
}

void Terminal::Resize(int rows, int cols) {
  if (rows <= 0 || cols <= 0) throw std::invalid_argument("Terminal: size must be positive");
  impl_->Drain();
  impl_->rows = rows;
  impl_->cols = cols;
  impl_->cellWrites.assign(static_cast<size_t>(rows * cols), 0);
  vterm_set_size(impl_->vt, rows, cols);
  if (impl_->master >= 0) {
    winsize size{};
    size.ws_row = static_cast<unsigned short>(rows);
    size.ws_col = static_cast<unsigned short>(cols);
    if (ioctl(impl_->master, TIOCSWINSZ, &size) != 0) {
      throw std::system_error(errno, std::generic_category(), "TIOCSWINSZ");
    }
  }
}

int Terminal::Rows() const { return impl_->rows; }

int Terminal::Cols() const { return impl_->cols; }

bool Terminal::AltScreen() const { return impl_->altScreen; }

bool Terminal::CursorVisible() const { return impl_->cursorVisible; }

int Terminal::Bells() const { return impl_->bells; }

}  // namespace KonuTest
