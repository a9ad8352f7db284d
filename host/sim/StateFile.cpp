// The state file of a simulated host: locked, atomic read-modify-write of host.json.
#include "host/sim/StateFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <sstream>

namespace Konu::Sim {
namespace {

std::string ErrnoText() { return std::strerror(errno); }

void MakeDirs(const std::string& dir) {
  std::string partial;
  std::stringstream parts(dir);
  std::string piece;
  if (!dir.empty() && dir.front() == '/') partial = "/";
  while (std::getline(parts, piece, '/')) {
    if (piece.empty()) continue;
    partial += piece;
    if (mkdir(partial.c_str(), 0755) != 0 && errno != EEXIST)
      throw StateFileError(partial + ": cannot create directory: " + ErrnoText());
    partial += '/';
  }
}

std::string DirName(const std::string& path) {
  auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

void WriteAll(int fd, const std::string& data, const std::string& path) {
  size_t done = 0;
  while (done < data.size()) {
    ssize_t n = write(fd, data.data() + done, data.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) throw StateFileError(path + ": cannot write: " + ErrnoText());
    done += static_cast<size_t>(n);
  }
}

// Deeper than any host state needs; the JSON writer recurses once per level.
constexpr int kDeepestNesting = 64;

// The parts every host state has, each an object.
constexpr const char* kRequiredParts[] = {"host", "hardware", "version", "network", "users"};

// How deep the text's arrays and objects nest, outside strings; stops counting past `limit`.
// It runs at every start of the console, so it jumps from one character that matters to the
// next (strcspn) rather than looking at each; a NUL byte is passed over like any other.
int NestingDepth(const std::string& text, int limit) {
  int depth = 0, deepest = 0;
  bool inString = false;
  const char* at = text.c_str();
  const char* const end = at + text.size();
  while (at < end) {
    at += std::strcspn(at, inString ? "\\\"" : "\"[]{}");
    if (at >= end) break;
    const char c = *at++;
    if (c == '\0') continue;
    if (inString) {
      if (c == '\\') {
        if (at < end) ++at;  // the escaped character
      } else {
        inString = false;
      }
    } else if (c == '"') {
      inString = true;
    } else if (c == '[' || c == '{') {
      deepest = std::max(deepest, ++depth);
      if (deepest > limit) break;
    } else {
      --depth;
    }
  }
  return deepest;
}

// The whole content of an open file of about `expected` bytes, read in as few calls as it
// takes.
std::string ReadAll(int fd, const std::string& path, size_t expected) {
  std::string text(expected + 1, '\0');  // one byte more: the end shows in the same read
  size_t have = 0;
  for (;;) {
    if (have == text.size()) text.resize(text.size() * 2);
    ssize_t n = read(fd, text.data() + have, text.size() - have);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) throw StateFileError(path + ": cannot read: " + ErrnoText());
    if (n == 0) {
      text.resize(have);
      return text;
    }
    have += static_cast<size_t>(n);
  }
}

// Throws unless the state has the shape every host state has.
void CheckShape(const nlohmann::json& state, const std::string& path) {
  if (!state.is_object()) throw StateFileError(path + ": malformed state: the top level is not an object");
  for (const char* part : kRequiredParts) {
    auto found = state.find(part);
    if (found == state.end() || !found->is_object())
      throw StateFileError(path + ": malformed state: \"" + part + "\" is missing or not an object");
  }
}

}  // namespace

struct StateFileVersion {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = -1;
  timespec modified{};
  timespec changed{};

  static StateFileVersion Of(const struct stat& st) {
    return {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
  }
  bool operator==(const StateFileVersion& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec &&
           changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
  }
};

namespace {

// The state file this process read or wrote last, parsed. One is enough: a console works
// on one host. The parsed state is shared read-only between the threads that ask for it.
struct LastState {
  std::mutex mutex;
  std::string path;
  StateFileVersion version;
  std::shared_ptr<const nlohmann::json> state;
};

LastState& Last() {
  static LastState last;
  return last;
}

void Remember(const std::string& path, const StateFileVersion& version,
              std::shared_ptr<const nlohmann::json> state) {
  LastState& last = Last();
  std::lock_guard lock(last.mutex);
  last.path = path;
  last.version = version;
  last.state = std::move(state);
}

}  // namespace

std::string StateFilePath(const std::string& root) {
  std::string r = root;
  while (r.size() > 1 && r.back() == '/') r.pop_back();
  return r + "/etc/konu-sim/host.json";
}

StateLock::StateLock(const std::string& lockPath) {
  fd_ = open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (fd_ < 0) throw StateFileError(lockPath + ": cannot open lock file: " + ErrnoText());
  while (flock(fd_, LOCK_EX) != 0) {
    if (errno == EINTR) continue;
    std::string why = ErrnoText();
    close(fd_);
    fd_ = -1;
    throw StateFileError(lockPath + ": cannot lock: " + why);
  }
}

StateLock::~StateLock() {
  if (fd_ >= 0) close(fd_);  // closing drops the flock
}

StateFile::StateFile(std::string root) : root_(std::move(root)), path_(StateFilePath(root_)) {}

nlohmann::json StateFile::ReadUnlocked(StateFileVersion* version) const {
  int fd = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) throw StateFileError(path_ + ": cannot open: " + ErrnoText());
  std::string text;
  struct stat st {};
  try {
    // The version of the file actually read, not of whatever the path names by now.
    if (fstat(fd, &st) != 0) throw StateFileError(path_ + ": cannot stat: " + ErrnoText());
    text = ReadAll(fd, path_, static_cast<size_t>(std::max<off_t>(st.st_size, 0)));
  } catch (...) {
    close(fd);
    throw;
  }
  close(fd);
  if (version) *version = StateFileVersion::Of(st);
  if (NestingDepth(text, kDeepestNesting) > kDeepestNesting)
    throw StateFileError(path_ + ": malformed state: nested deeper than " + std::to_string(kDeepestNesting) +
                         " levels");
  try {
    nlohmann::json state = nlohmann::json::parse(text);
    CheckShape(state, path_);
    return state;
  } catch (const nlohmann::json::parse_error& e) {
    // Turn the byte offset into a line and column an editor can jump to.
    size_t line = 1, column = 1;
    for (size_t i = 0; i + 1 < e.byte && i < text.size(); ++i) {
      if (text[i] == '\n') {
        ++line;
        column = 1;
      } else {
        ++column;
      }
    }
    std::string what = e.what();
    auto colon = what.find(": ");
    if (what.rfind("[json.exception", 0) == 0 && colon != std::string::npos) what = what.substr(colon + 2);
    throw StateFileError(path_ + ": malformed state at line " + std::to_string(line) + ", column " +
                         std::to_string(column) + ": " + what);
  }
}

StateFileVersion StateFile::WriteUnlocked(const nlohmann::json& state) {
  std::string text = state.dump(2) + "\n";
  std::string temp = path_ + ".tmp." + std::to_string(getpid());
  // The state holds the users' secrets: readable by its owner only.
  int fd = open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (fd < 0) throw StateFileError(temp + ": cannot create: " + ErrnoText());
  try {
    WriteAll(fd, text, temp);
    if (fsync(fd) != 0) throw StateFileError(temp + ": cannot sync: " + ErrnoText());
    if (rename(temp.c_str(), path_.c_str()) != 0)
      throw StateFileError(path_ + ": cannot replace: " + ErrnoText());
  } catch (...) {
    close(fd);
    unlink(temp.c_str());
    throw;
  }
  // After the rename, which sets the change time: the version a later Snapshot will see.
  struct stat st {};
  fstat(fd, &st);
  close(fd);
  return StateFileVersion::Of(st);
}

nlohmann::json StateFile::Read() const { return *Snapshot(); }

std::shared_ptr<const nlohmann::json> StateFile::Snapshot() const {
  // The writer renames a complete file into place, so a reader needs no lock.
  LastState& last = Last();
  struct stat st {};
  if (stat(path_.c_str(), &st) == 0) {
    std::lock_guard lock(last.mutex);
    if (last.state && last.path == path_ && last.version == StateFileVersion::Of(st)) return last.state;
  }
  StateFileVersion version;
  auto state = std::make_shared<const nlohmann::json>(ReadUnlocked(&version));
  Remember(path_, version, state);
  return state;
}

void StateFile::Update(const std::function<void(nlohmann::json&)>& change) {
  StateLock lock(path_ + ".lock");
  // Always from the file itself: another writer may have replaced it a moment ago.
  nlohmann::json state = ReadUnlocked(nullptr);
  change(state);
  const StateFileVersion written = WriteUnlocked(state);
  Keep(written, std::move(state));
}

void StateFile::Write(const nlohmann::json& state) {
  MakeDirs(DirName(path_));
  StateLock lock(path_ + ".lock");
  const StateFileVersion written = WriteUnlocked(state);
  Keep(written, state);
}

void StateFile::Keep(const StateFileVersion& version, nlohmann::json state) const {
  try {
    CheckShape(state, path_);  // what a read of the file would refuse is not kept either
  } catch (const StateFileError&) {
    return;
  }
  Remember(path_, version, std::make_shared<const nlohmann::json>(std::move(state)));
}

nlohmann::json StateFile::Get(const std::string& pointer) const {
  nlohmann::json state = Read();
  try {
    nlohmann::json::json_pointer ptr(pointer);
    if (!state.contains(ptr)) throw StateFileError(path_ + ": no value at " + pointer);
    return state.at(ptr);
  } catch (const nlohmann::json::exception& e) {
    throw StateFileError(path_ + ": bad pointer " + pointer + ": " + e.what());
  }
}

}  // namespace Konu::Sim
