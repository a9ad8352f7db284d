// Events and audit records: what the operator did, posted to the host's event
// (observation) service and written to its audit log through the host backend.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace HostCtl {
class EventLib;
}

namespace Konu {

// The console's events, by name. The ids and texts are in the table below.
enum class KonuEvent {
  LoginFailed,             // "Authentication of user %s failed"
  LoginAccessDenied,       // "Access denied for user %s" (no permission, or password expired)
  LoginPasswdChanged,      // "Login password for user %s changed"
  ShutdownHost,            // "Shutting down host"
  RebootHost,              // "Rebooting host"
  RestoreFactoryDefaults,  // "Restoring factory defaults"
  RestartingHostAgents,    // "Restarting host agents"
  NetworkRestart,          // "Restarting %s", the management interface's name
  FactoryNetworkRestored,  // "Restoring factory network settings"
};

struct KonuEventEntry {
  KonuEvent name;
  const char* id;    // "zeb.user.konu.reboot.host"
  const char* text;  // printf format with at most one "%s"
};

// Every event the console posts, in the order of KonuEvent.
inline constexpr KonuEventEntry kKonuEvents[] = {
    {KonuEvent::LoginFailed, "zeb.user.konu.login.failed", "Authentication of user %s failed"},
    {KonuEvent::LoginAccessDenied, "zeb.user.konu.login.failed", "Access denied for user %s"},
    {KonuEvent::LoginPasswdChanged, "zeb.user.konu.login.passwd.changed",
     "Login password for user %s changed"},
    {KonuEvent::ShutdownHost, "zeb.user.konu.shutdown.host", "Shutting down host"},
    {KonuEvent::RebootHost, "zeb.user.konu.reboot.host", "Rebooting host"},
    {KonuEvent::RestoreFactoryDefaults, "zeb.user.konu.restore.factory.defaults",
     "Restoring factory defaults"},
    {KonuEvent::RestartingHostAgents, "zeb.user.konu.restarting.hostagents", "Restarting host agents"},
    {KonuEvent::NetworkRestart, "zeb.user.konu.network.restart", "Restarting %s"},
    {KonuEvent::FactoryNetworkRestored, "zeb.user.konu.factory.network.restored",
     "Restoring factory network settings"},
};

// The marker that opens every event message: "@&!*@*@(" id ")" text.
inline constexpr const char kEventMarker[] = "@&!*@*@(";

const KonuEventEntry& EventEntry(KonuEvent name);

// The event's message format: "@&!*@*@(zeb.user.konu.reboot.host)Rebooting host".
std::string EventFormat(KonuEvent name);

// Logs "Initializing zebuser library" and opens the event service; logs its error code
// when it is not ready. Returns that code, 0 = ready.
int InitEventLibrary(HostCtl::EventLib& library);

// Posts one event with its own open / add / close; when the service cannot be opened the
// event is skipped (only the log line says so). `format` is the whole message format,
// marker and id included. The caller logs the event's text (syslog, informational unless
// its screen says otherwise) before posting.
void PostEvent(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The same for an event of the table; `argument` fills its "%s" (if it has one).
void PostEvent(KonuEvent name, const std::string& argument = "");

// One audit record: `record` ("login.connect", "login.disconnect"), the user, the empty
// origin of the local console, success 1 or 0, and key/value pairs such as
// {"reason", "Invalid Login"}.
void WriteAudit(const std::string& record, const std::string& user, int success,
                const std::vector<std::pair<std::string, std::string>>& attributes = {});

}  // namespace Konu
