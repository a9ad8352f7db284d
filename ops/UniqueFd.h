// One owned file descriptor: closed when the owner goes, never copied.
#pragma once

#include <unistd.h>

#include <utility>

namespace Konu {

class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  ~UniqueFd() { Reset(); }

  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  UniqueFd(UniqueFd&& other) noexcept : fd_(other.Release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }

  int Get() const { return fd_; }
  bool Valid() const { return fd_ >= 0; }

  // Gives the descriptor up without closing it.
  int Release() { return std::exchange(fd_, -1); }

  // Closes the held descriptor (if any) and holds `fd` instead.
  void Reset(int fd = -1) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = fd;
  }

 private:
  int fd_ = -1;
};

// Both ends of one pipe, close-on-exec and numbered above 2, so that a spawned child
// inherits neither end except where it is placed on 0, 1 or 2 on purpose.
struct Pipe {
  UniqueFd read;
  UniqueFd write;
  // Returns false (errno set) when the pipe cannot be made; both ends then stay empty.
  bool Open();
};

}  // namespace Konu
