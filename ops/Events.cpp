// Events posted to the host's observation service, one open / add / close each, and the
// audit records of logins and logouts.
#include "ops/Events.h"

#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <memory>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"

namespace Konu {
namespace {

// The table is looked up by position; keep each entry where its name says.
constexpr bool TableFollowsNames() {
  for (size_t i = 0; i < std::size(kKonuEvents); ++i) {
    if (static_cast<size_t>(kKonuEvents[i].name) != i) return false;
  }
  return true;
}
static_assert(TableFollowsNames(), "kKonuEvents must list the events in the order of KonuEvent");

// What a host library that throws instead of answering returns as its error code.
constexpr int kLibraryThrew = -1;

std::string FormatMessage(const char* format, va_list args) {
  va_list sizing;
  va_copy(sizing, args);
  int length = vsnprintf(nullptr, 0, format, sizing);
  va_end(sizing);
  if (length < 0) return format;
  std::string message(static_cast<size_t>(length) + 1, '\0');
  vsnprintf(message.data(), message.size(), format, args);
  message.resize(static_cast<size_t>(length));
  return message;
}

void Post(const std::string& message) {
  std::unique_ptr<HostCtl::EventLib> library = Runtime::Get().Host().CreateEventLib();
  if (InitEventLibrary(*library) != 0) return;
  try {
    library->ZebUserLib_AddZeb(message);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Unable to post event %s: %s", message.c_str(), e.what());
  }
  try {
    library->ZebUserLib_Close();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Unable to close zebuser library: %s", e.what());
  }
}

}  // namespace

const KonuEventEntry& EventEntry(KonuEvent name) { return kKonuEvents[static_cast<size_t>(name)]; }

std::string EventFormat(KonuEvent name) {
  const KonuEventEntry& entry = EventEntry(name);
  return std::string(kEventMarker) + entry.id + ")" + entry.text;
}

int InitEventLibrary(HostCtl::EventLib& library) {
  Log(LOG_INFO, "Initializing zebuser library");
  int rc;
  try {
    rc = library.ZebUserLib_Init();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Unable to initialize zebuser library: %s", e.what());
    rc = kLibraryThrew;
  }
  if (rc != 0) Log(LOG_ERR, "Unable to initialize zebuser library from KONU. Error code: %d", rc);
  return rc;
}

void PostEvent(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string message = FormatMessage(format, args);
  va_end(args);
  Post(message);
}

void PostEvent(KonuEvent name, const std::string& argument) {
  std::string format = EventFormat(name);
  std::string message;
  // Every text has at most one "%s"; the argument never becomes part of the format.
  size_t slot = format.find("%s");
  if (slot == std::string::npos) {
    message = format;
  } else {
    message = format.substr(0, slot) + argument + format.substr(slot + 2);
  }
  Post(message);
}

void WriteAudit(const std::string& record, const std::string& user, int success,
                const std::vector<std::pair<std::string, std::string>>& attributes) {
  try {
    Runtime::Get().Host().CreateAuditLog()->CblAudit_VLog(record, user, "", success, attributes);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Unable to write audit record %s: %s", record.c_str(), e.what());
  }
}

}  // namespace Konu
