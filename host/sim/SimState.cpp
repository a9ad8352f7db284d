// Shared state access of the simulated services.
#include "host/sim/SimState.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "host/HostCtlException.h"
#include "host/sim/Faults.h"

namespace HostCtl::Sim {
namespace {

void MakeParentDirs(const std::string& path) {
  for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
    mkdir(path.substr(0, slash).c_str(), 0755);
}

}  // namespace

std::string SimState::Path(const std::string& absolute) const {
  if (absolute.empty() || absolute.front() != '/') return root_ + "/" + absolute;
  return root_ + absolute;
}

void SimState::CheckFault(const std::string& operation) const { Read(operation); }

std::shared_ptr<const nlohmann::json> SimState::Read(const std::string& operation) const {
  std::shared_ptr<const nlohmann::json> state;
  try {
    state = file_.Snapshot();
  } catch (const Konu::Sim::StateFileError& e) {
    throw Lib::HostCtlException(e.what());
  }
  if (auto fault = Konu::Sim::OperationFault(*state, operation)) {
    if (fault->unexpected) throw std::runtime_error(fault->message);
    throw Lib::HostCtlException(fault->message);
  }
  return state;
}

void SimState::Update(const std::string& operation, const std::function<void(nlohmann::json&)>& change) {
  CheckFault(operation);
  try {
    file_.Update(change);
  } catch (const Konu::Sim::StateFileError& e) {
    throw Lib::HostCtlException(e.what());
  } catch (const nlohmann::json::exception& e) {
    throw Lib::HostCtlException(file_.Path() + ": " + e.what());
  }
}

void SimState::AppendLine(const std::string& absolutePath, const std::string& line) const {
  std::string path = Path(absolutePath);
  MakeParentDirs(path);
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0) throw Lib::HostCtlException(path + ": cannot open: " + std::strerror(errno));
  std::string text = line + "\n";
  ssize_t n = write(fd, text.data(), text.size());  // one write: O_APPEND keeps lines whole
  int error = errno;
  close(fd);
  if (n != static_cast<ssize_t>(text.size()))
    throw Lib::HostCtlException(path + ": cannot write: " + std::strerror(n < 0 ? error : EIO));
}

namespace {

// An array index as a pointer writes it: "0", or digits without a leading zero.
bool IsArrayIndex(std::string_view token) {
  if (token.empty() || (token.size() > 1 && token[0] == '0')) return false;
  for (char c : token)
    if (c < '0' || c > '9') return false;
  return true;
}

}  // namespace

const nlohmann::json* Find(const nlohmann::json& state, std::string_view pointer) {
  // A pointer starts with '/' and has '~' only before 0 or 1; json_pointer throws for
  // anything else, naming what is wrong.
  bool wellFormed = pointer.empty() || pointer.front() == '/';
  for (size_t at = pointer.find('~'); wellFormed && at != std::string_view::npos;
       at = pointer.find('~', at + 1))
    wellFormed = at + 1 < pointer.size() && (pointer[at + 1] == '0' || pointer[at + 1] == '1');
  if (!wellFormed) static_cast<void>(nlohmann::json::json_pointer(std::string(pointer)));
  const nlohmann::json* node = &state;
  std::string unescaped;
  while (!pointer.empty()) {
    pointer.remove_prefix(1);  // the '/'
    const size_t end = std::min(pointer.find('/'), pointer.size());
    std::string_view token = pointer.substr(0, end);
    pointer.remove_prefix(end);
    if (token.find('~') != std::string_view::npos) {
      unescaped.clear();
      for (size_t i = 0; i < token.size(); ++i) {
        if (token[i] == '~') {
          unescaped += token[++i] == '1' ? '/' : '~';
        } else {
          unescaped += token[i];
        }
      }
      token = unescaped;
    }
    if (node->is_object()) {
      auto found = node->find(token);
      if (found == node->end()) return nullptr;
      node = &*found;
    } else if (node->is_array()) {
      if (!IsArrayIndex(token)) return nullptr;
      size_t index = 0;
      for (char c : token) {
        index = index * 10 + static_cast<size_t>(c - '0');
        if (index >= node->size()) return nullptr;  // further digits only make it larger
      }
      node = &(*node)[index];
    } else {
      return nullptr;
    }
  }
  return node;
}

const nlohmann::json& NodeAt(const nlohmann::json& state, std::string_view pointer) {
  static const nlohmann::json kNull;
  const nlohmann::json* node = Find(state, pointer);
  return node ? *node : kNull;
}

std::string PointerKey(const std::string& key) {
  std::string out;
  for (char c : key) {
    if (c == '~')
      out += "~0";
    else if (c == '/')
      out += "~1";
    else
      out += c;
  }
  return out;
}

void ThrowNotFound(const std::string& what, const std::string& name) {
  throw Lib::HostCtlException(what + " '" + name + "' not found");
}

}  // namespace HostCtl::Sim
