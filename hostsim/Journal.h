// The tool journal of a simulated host: var/log/hostsim.log, one JSON object a line.
//
//   {"argv":["qal-cmd","-U","root","hostsvc/start_ssh"],"exit":0,"pid":4711,"time":"2024-05-01T10:00:00Z",
//    "user":"root"}
//
// "exit" is the exit code, or "hang" for a run that was made to hang (written before it hangs).
// "pid" is the tool's process id (a hanging run can be found and checked on).
// "user" is the user the tool acted as (qal-cmd: its -U user; others: the process's user).
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Konu::Sim {

std::string JournalPath(const std::string& root);

// Appends one line with a single O_APPEND write, so concurrent tools never tear a line.
void AppendJournal(const std::string& root, const std::vector<std::string>& argv, const std::string& user,
                   const nlohmann::json& exit);

// Every line of the journal; a line that is not JSON comes back as a string.
std::vector<nlohmann::json> ReadJournal(const std::string& root);

// One line for people: "qal-cmd -U root hostsvc/start_ssh  (user root, exit 0)".
std::string FormatJournalLine(const nlohmann::json& line);

}  // namespace Konu::Sim
