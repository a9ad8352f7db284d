// The state file of a simulated host: locked, atomic read-modify-write of host.json.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace Konu::Sim {

// A state file that cannot be read, parsed or written. The message names the file and the
// problem ("/tmp/h/etc/konu-sim/host.json: parse error at line 3, column 7: ...").
class StateFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Which version of the file was read or written: device, inode, size, modification and
// change times.
struct StateFileVersion;

// The whole state of one simulated host, kept in <root>/etc/konu-sim/host.json. Every writer
// holds an exclusive flock on host.json.lock while it reads, changes and replaces the file
// (temporary file, fsync, rename), so concurrent writers lose no update and a reader never
// sees a torn file. A malformed file is refused and never overwritten.
class StateFile {
 public:
  // root: the host root directory (the file's directory need not exist until Create).
  explicit StateFile(std::string root);

  const std::string& Root() const { return root_; }
  const std::string& Path() const { return path_; }

  // The current state. Throws StateFileError when the file is missing or malformed.
  nlohmann::json Read() const;
  // The current state, shared and read-only. The file is parsed again only when it is no
  // longer the one last read (another inode, size, modification or change time), so a
  // program asking many times about a host that does not change reads it once; every writer
  // replaces the file by rename, so each change is seen.
  std::shared_ptr<const nlohmann::json> Snapshot() const;

  // Locks, reads, lets `change` modify the state, and writes it back atomically. If
  // `change` throws, nothing is written and the exception passes on.
  void Update(const std::function<void(nlohmann::json&)>& change);

  // Writes a whole new state (creating etc/konu-sim/ if needed), under the same lock.
  void Write(const nlohmann::json& state);

  // Reads the JSON pointer; throws StateFileError naming the pointer when it is absent or
  // not a valid pointer.
  nlohmann::json Get(const std::string& pointer) const;

 private:
  nlohmann::json ReadUnlocked(StateFileVersion* version) const;
  StateFileVersion WriteUnlocked(const nlohmann::json& state);
  // Keeps what was just written as the last state read, unless a read would refuse it.
  void Keep(const StateFileVersion& version, nlohmann::json state) const;

  std::string root_;
  std::string path_;
};

// An exclusive flock held for the object's lifetime.
class StateLock {
 public:
  explicit StateLock(const std::string& lockPath);
  ~StateLock();
  StateLock(const StateLock&) = delete;
  StateLock& operator=(const StateLock&) = delete;

 private:
  int fd_ = -1;
};

// The state file path of a root: <root>/etc/konu-sim/host.json.
std::string StateFilePath(const std::string& root);

}  // namespace Konu::Sim
