// WorkerThread: the stop request, and the thread's record in the child registry.
#include "ops/WorkerThread.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "host/ChildRegistry.h"

namespace Konu {

WorkerStop::WorkerStop() {
  if (pipe_.Open()) fcntl(pipe_.write.Get(), F_SETFL, O_NONBLOCK);  // one byte is ever written
}

void WorkerStop::Request() {
  if (requested_.exchange(true)) return;
  const char byte = 's';
  while (write(pipe_.write.Get(), &byte, 1) < 0 && errno == EINTR) {
  }
}

WorkerThread::WorkerThread(Work work) : stop_(std::make_shared<WorkerStop>()) {
  if (stop_->Fd() < 0) {
    error_ = errno;
    return;
  }
  uint64_t id = 0;
  if (!AddWorker(&id, [stop = stop_] { stop->Request(); })) {
    error_ = ECANCELED;
    return;
  }
  try {
    thread_ = std::thread([id, stop = stop_, work = std::move(work)]() mutable {
      work(*stop);
      work = nullptr;  // what the work holds goes before the way out stops waiting for it
      WorkerEnded(id);
    });
  } catch (const std::system_error& e) {
    WorkerEnded(id);
    error_ = e.code().value();
  }
}

WorkerThread::~WorkerThread() { Stop(); }

void WorkerThread::Stop() {
  if (!thread_.joinable()) return;
  stop_->Request();
  thread_.join();
}

void WorkerThread::Detach() {
  if (thread_.joinable()) thread_.detach();
}

}  // namespace Konu
