// A top-level screen that can be shown modally, reading keys with screen dimming and the
// session's idle time-out.
#pragma once

#include <cstdint>

#include "ui/Window.h"

namespace Konu {

class StringFactory;

class Frame : public Window {
 public:
  // Always a top-level window; `owner` (may be null) is the frame beneath, only remembered.
  Frame(Frame* owner, int x, int y, int width, int height, int background, int foreground);
  ~Frame() override;

  // The frame's own loop: reads keys with GetKey and returns the result of the frame
  // (dialogs: 1 accepted, 0 left with Esc).
  virtual int EventLoop() = 0;
  // Called for SIGUSR1 while this frame is the top frame.
  virtual void Notification() {}

  // Dims the owner, runs EventLoop as the top frame, then brings the owner back. A
  // KonuTimeout clears the top frame and goes on to the caller.
  int RunModal();

  // The next key (>= 0). Dims the screen after 60 s without a key and undims on the next
  // one, which is returned. With `idleTimeout`, while a session is active and its time-out
  // is not 0, throws KonuTimeout after max(time-out, 60) s without a key. Signals: SIGUSR1 runs the top
  // frame's Notification and the smart-card check; SIGUSR2 exits (or, in a session, sets
  // the deferred exit); a resize or a termination signal exits with status 0.
  // With a `wakeFd` other than -1, also returns kWoken as soon as that descriptor is
  // readable (it is not read), so a screen can show a worker's progress between keys.
  int GetKey(bool idleTimeout, int wakeFd = -1);
  static constexpr int kWoken = -1;

  Frame* Owner() const { return owner_; }
  // The English string table (null only if it could not be created).
  const StringFactory* Strings() const { return strings_; }
  // The table's text for `id`, "" when there is none.
  const char* GetString(uint32_t id) const;

 private:
  [[noreturn]] void EndForResize();
  // Puts the frames beneath `frame` back on the screen (not yet sent to the terminal).
  static void RepaintBeneath(const Frame& frame);

  Frame* owner_;
  const StringFactory* strings_;
};

}  // namespace Konu
