// Shared state access of the simulated services.
#include "host/sim/SimState.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

const nlohmann::json& NodeAt(const nlohmann::json& state, const std::string& pointer) {
  static const nlohmann::json kNull;
  nlohmann::json::json_pointer p(pointer);
  return state.contains(p) ? state.at(p) : kNull;
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
