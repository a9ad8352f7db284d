// Injected faults of a simulated host: tool runs that fail or hang, operations that throw.
#include "host/sim/Faults.h"

#include <sstream>

namespace Konu::Sim {
namespace {

std::vector<std::string> Words(const std::string& key) {
  std::vector<std::string> words;
  std::istringstream in(key);
  std::string word;
  while (in >> word) words.push_back(word);
  return words;
}

bool Matches(const std::vector<std::string>& words, const std::vector<std::string>& argv) {
  if (words.empty() || argv.empty() || words.front() != argv.front()) return false;
  size_t at = 1;
  for (size_t w = 1; w < words.size(); ++w) {
    while (at < argv.size() && argv[at] != words[w]) ++at;
    if (at == argv.size()) return false;
    ++at;
  }
  return true;
}

// The entry /faults/operations/<Service>.<Operation>, or null when there is none: looked up
// key by key, without building a json_pointer on every host call.
const nlohmann::json* OperationEntry(const nlohmann::json& state, const std::string& serviceDotOperation) {
  if (!state.is_object()) return nullptr;
  auto faults = state.find("faults");
  if (faults == state.end() || !faults->is_object()) return nullptr;
  auto operations = faults->find("operations");
  if (operations == faults->end()) return nullptr;
  auto found = operations->find(serviceDotOperation);
  return found == operations->end() || found->is_null() ? nullptr : &*found;
}

bool Hangs(const nlohmann::json& entry) {
  return entry.is_object() && entry.contains("hang") && entry.at("hang") == true;
}

}  // namespace

std::optional<std::string> MatchingFaultKey(const nlohmann::json& state,
                                            const std::vector<std::string>& argv) {
  const nlohmann::json::json_pointer tools("/faults/tools");
  if (!state.contains(tools) || !state.at(tools).is_object()) return std::nullopt;
  std::optional<std::string> best;
  size_t bestWords = 0;
  for (const auto& [key, value] : state.at(tools).items()) {
    std::vector<std::string> words = Words(key);
    if (!value.is_object() || !Matches(words, argv)) continue;
    if (!best || words.size() > bestWords) {
      best = key;
      bestWords = words.size();
    }
  }
  return best;
}

std::optional<ToolFault> TakeToolFault(nlohmann::json& state, const std::vector<std::string>& argv) {
  std::optional<std::string> key = MatchingFaultKey(state, argv);
  if (!key) return std::nullopt;
  nlohmann::json& tools = state["faults"]["tools"];
  nlohmann::json& entry = tools[*key];
  ToolFault fault;
  fault.key = *key;
  fault.exitCode = entry.value("exitCode", 1);
  fault.out = entry.value("stdout", "");
  fault.err = entry.value("stderr", "");
  fault.hang = entry.value("hang", false);
  fault.ignoreHangup = entry.value("ignoreHangup", false);
  if (entry.contains("times") && entry["times"].is_number_integer()) {
    int left = entry["times"].get<int>() - 1;
    if (left <= 0)
      tools.erase(*key);
    else
      entry["times"] = left;
  }
  return fault;
}

std::optional<OperationFailure> OperationFault(const nlohmann::json& state,
                                               const std::string& serviceDotOperation) {
  const nlohmann::json* found = OperationEntry(state, serviceDotOperation);
  if (!found || Hangs(*found)) return std::nullopt;
  if (found->is_string()) return OperationFailure{found->get<std::string>()};
  if (found->is_object() && found->contains("unexpected") && found->at("unexpected").is_string())
    return OperationFailure{found->at("unexpected").get<std::string>(), true};
  return OperationFailure{found->dump()};
}

bool OperationHangs(const nlohmann::json& state, const std::string& serviceDotOperation) {
  const nlohmann::json* found = OperationEntry(state, serviceDotOperation);
  return found && Hangs(*found);
}

}  // namespace Konu::Sim
