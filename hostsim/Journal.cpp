// The tool journal of a simulated host: var/log/hostsim.log, one JSON object a line.
#include "hostsim/Journal.h"

#include <fcntl.h>
#include <unistd.h>

#include <ctime>
#include <fstream>

namespace Konu::Sim {

std::string JournalPath(const std::string& root) { return root + "/var/log/hostsim.log"; }

void AppendJournal(const std::string& root, const std::vector<std::string>& argv, const std::string& user,
                   const nlohmann::json& exit) {
  char stamp[32];
  time_t now = time(nullptr);
  struct tm utc;
  gmtime_r(&now, &utc);
  strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%SZ", &utc);
  nlohmann::json line = {{"argv", argv}, {"user", user}, {"exit", exit}, {"pid", getpid()}, {"time", stamp}};
  std::string text = line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
  int fd = open(JournalPath(root).c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (fd < 0) return;
  ssize_t ignored = write(fd, text.data(), text.size());
  (void)ignored;
  close(fd);
}

std::vector<nlohmann::json> ReadJournal(const std::string& root) {
  std::vector<nlohmann::json> lines;
  std::ifstream in(JournalPath(root));
  std::string text;
  while (std::getline(in, text)) {
    if (text.empty()) continue;
    nlohmann::json line = nlohmann::json::parse(text, nullptr, false);
    lines.push_back(line.is_discarded() ? nlohmann::json(text) : line);
  }
  return lines;
}

std::string FormatJournalLine(const nlohmann::json& line) {
  if (!line.is_object()) return line.is_string() ? line.get<std::string>() : line.dump();
  std::string text;
  for (const auto& word : line.value("argv", nlohmann::json::array())) {
    std::string w = word.is_string() ? word.get<std::string>() : word.dump();
    if (!text.empty()) text += ' ';
    bool plain = !w.empty() && w.find_first_of(" \t'\"\\") == std::string::npos;
    text += plain ? w : nlohmann::json(w).dump();
  }
  const nlohmann::json& exit = line.contains("exit") ? line["exit"] : nlohmann::json();
  return line.value("time", "") + "  " + text + "  (user " + line.value("user", "?") + ", exit " +
         (exit.is_string() ? exit.get<std::string>() : exit.dump()) + ")";
}

}  // namespace Konu::Sim
