// Files of a simulated host that create writes: logs, PAM stack, certificates.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Konu::Sim {

// Plausible lines for each log file of the host, by host path.
struct LogFile {
  const char* hostPath;
  std::vector<std::string> lines;
};
std::vector<LogFile> FreshLogFiles(const nlohmann::json& state);

// The PAM service file for pam_start_confdir: our module for every step, reading the state.
std::string PamServiceFile(const std::string& root, const std::string& modulePath);

// Writes a file (mode 0644 or the given one); throws std::runtime_error naming the file.
void WriteTextFile(const std::string& path, const std::string& text, int mode = 0644);

}  // namespace Konu::Sim
