// A thread that does host work beside the user-interface thread. Its owner or the end of the
// console asks it to stop, and the end of the console waits for it before the process goes.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>

#include "ops/UniqueFd.h"

namespace Konu {

// What the work sees of a stop request.
class WorkerStop {
 public:
  WorkerStop();
  WorkerStop(const WorkerStop&) = delete;
  WorkerStop& operator=(const WorkerStop&) = delete;

  bool Requested() const { return requested_; }
  // For host calls that give up when a flag is raised (a name lookup).
  const std::atomic<bool>& Flag() const { return requested_; }
  // Readable once the stop is requested: for waits on descriptors (a ping's child).
  int Fd() const { return pipe_.read.Get(); }

  // Raises the flag and makes Fd readable; again does nothing. Never blocks.
  void Request();

 private:
  std::atomic<bool> requested_{false};
  Pipe pipe_;
};

class WorkerThread {
 public:
  using Work = std::function<void(const WorkerStop&)>;

  // Starts `work` on a new thread, unless the console is already ending or no thread can
  // be made: Error() tells which.
  explicit WorkerThread(Work work);
  // Stop() for a thread not let go with Detach.
  ~WorkerThread();

  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  // 0 while started; ECANCELED once the console is ending, or why the thread or its stop
  // pipe could not be made.
  int Error() const { return error_; }

  // Requests the stop and waits for the thread; calling it again does nothing.
  void Stop();

  // Lets the thread go on by itself: only the end of the console stops it and waits for it.
  void Detach();

 private:
  int error_ = 0;
  std::shared_ptr<WorkerStop> stop_;
  std::thread thread_;
};

}  // namespace Konu
