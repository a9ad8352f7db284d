// The control command of a simulated host: get, set, unset, password, card, dvs, journal.
#include "hostsim/Control.h"

#include <signal.h>

#include <iostream>
#include <stdexcept>

#include "host/sim/StateFile.h"
#include "hostsim/ConsoleSignal.h"
#include "hostsim/DvsSetup.h"
#include "hostsim/Journal.h"
#include "hostsim/pam/PasswordHash.h"

namespace Konu::Sim {
namespace {

using Json = nlohmann::json;

// A control request that cannot be carried out as asked (exit 2).
struct ControlError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

Json::json_pointer Pointer(const std::string& text) {
  try {
    return Json::json_pointer(text);
  } catch (const Json::exception& e) {
    throw ControlError("bad JSON pointer \"" + text + "\": " + e.what());
  }
}

int Get(StateFile& file, const std::string& pointer) {
  Json state = file.Read();
  Json::json_pointer ptr = Pointer(pointer);
  if (!state.contains(ptr)) throw ControlError(file.Path() + ": no value at " + pointer);
  std::cout << state.at(ptr).dump(2) << "\n";
  return kControlOk;
}

int Set(StateFile& file, const std::string& pointer, const std::string& text) {
  Json value = Json::parse(text, nullptr, false);
  if (value.is_discarded())
    throw ControlError("the value is not JSON: " + text + " (a text needs quotes: '\"text\"')");
  Json::json_pointer ptr = Pointer(pointer);
  if (ptr.empty()) throw ControlError("refusing to replace the whole state; set its parts");
  file.Update([&](Json& state) {
    Json::json_pointer parent = ptr.parent_pointer();
    if (!state.contains(parent)) throw ControlError(file.Path() + ": no value at " + parent.to_string());
    Json& holder = state.at(parent);
    if (holder.is_array()) {
      const std::string& last = ptr.back();
      if (last == "-") {
        holder.push_back(value);
        return;
      }
      if (!state.contains(ptr)) throw ControlError(file.Path() + ": no array element at " + pointer);
    } else if (!holder.is_object()) {
      throw ControlError(file.Path() + ": " + parent.to_string() + " holds no members");
    }
    state[ptr] = value;
  });
  return kControlOk;
}

int Unset(StateFile& file, const std::string& pointer) {
  Json::json_pointer ptr = Pointer(pointer);
  if (ptr.empty()) throw ControlError("refusing to remove the whole state");
  file.Update([&](Json& state) {
    if (!state.contains(ptr)) throw ControlError(file.Path() + ": no value at " + pointer);
    Json& holder = state.at(ptr.parent_pointer());
    if (holder.is_array())
      holder.erase(std::stoul(ptr.back()));
    else
      holder.erase(ptr.back());
  });
  return kControlOk;
}

// password set USER PASSWORD: stores the password's hash. password check USER PASSWORD:
// kControlOk when it is the user's password, kControlFailed when not.
int Password(StateFile& file, const std::vector<std::string>& args) {
  if (args.size() != 3 || (args[0] != "set" && args[0] != "check"))
    throw ControlError("usage: password set USER PASSWORD | password check USER PASSWORD");
  const std::string& name = args[1];
  auto user = [&](Json& state) -> Json& {
    Json& users = state["users"];
    if (!users.contains(name) || !users[name].is_object())
      throw ControlError(file.Path() + ": no user " + name);
    return users[name];
  };
  if (args[0] == "check") {
    Json state = file.Read();
    return PasswordMatches(user(state).value("passwordHash", ""), args[2]) ? kControlOk : kControlFailed;
  }
  const std::string hash = HashPassword(args[2]);
  file.Update([&](Json& state) { user(state)["passwordHash"] = hash; });
  return kControlOk;
}

// The card reader changed: tell the console, as the host's card service does.
void NotifyConsole(const std::string& root) {
  std::string why;
  if (!SignalConsole(root, SIGUSR1, &why)) std::cerr << "konu-hostsim: console not notified: " << why << "\n";
}

int Card(StateFile& file, const std::vector<std::string>& args) {
  Json token;
  if (args.size() == 2 && args[0] == "insert" && !args[1].empty()) {
    token = {{"userId", args[1]}};
  } else if (args.size() != 1 || args[0] != "remove") {
    throw ControlError("usage: card insert USER | card remove");
  }
  file.Update([&](Json& state) {
    Json& slots = state["smartCards"]["slots"];
    if (!slots.is_array() || slots.empty()) throw ControlError(file.Path() + ": no smart card slot");
    slots[0]["token"] = token;
  });
  NotifyConsole(file.Root());
  return kControlOk;
}

int Dvs(StateFile& file, const std::vector<std::string>& args) {
  if (args.size() > 2) throw ControlError("usage: dvs [NAME [VENDOR]]");
  const std::string name = args.empty() ? "dvs0" : args[0];
  const std::string vendor = args.size() < 2 ? "Corbel" : args[1];
  std::string done;
  file.Update([&](Json& state) {
    try {
      done = PutManagementOnDvs(state, name, vendor);
    } catch (const DvsSetupError& e) {
      throw ControlError(file.Path() + ": " + e.what());
    }
  });
  std::cout << done << "\n";
  return kControlOk;
}

int PrintJournal(const std::string& root, const std::vector<std::string>& args) {
  bool json = !args.empty() && args[0] == "--json";
  if (args.size() > (json ? 1u : 0u)) throw ControlError("usage: journal [--json]");
  for (const Json& line : ReadJournal(root))
    std::cout << (json ? (line.is_string() ? line.get<std::string>() : line.dump()) : FormatJournalLine(line))
              << "\n";
  return kControlOk;
}

}  // namespace

int RunControl(const std::string& root, const std::vector<std::string>& args) {
  StateFile file(root);
  std::string command = args.empty() ? "" : args[0];
  std::vector<std::string> rest(args.begin() + (args.empty() ? 0 : 1), args.end());
  try {
    if (command == "get" && rest.size() == 1) return Get(file, rest[0]);
    if (command == "set" && rest.size() == 2) return Set(file, rest[0], rest[1]);
    if (command == "unset" && rest.size() == 1) return Unset(file, rest[0]);
    if (command == "password") return Password(file, rest);
    if (command == "card") return Card(file, rest);
    if (command == "dvs") return Dvs(file, rest);
    if (command == "journal") return PrintJournal(root, rest);
    std::cerr << "konu-hostsim: unknown or incomplete command"
              << (command.empty() ? "" : " \"" + command + "\"") << "; see konu-hostsim --help\n";
    return kControlUsage;
  } catch (const ControlError& e) {
    std::cerr << "konu-hostsim: " << e.what() << "\n";
    return kControlUsage;
  } catch (const StateFileError& e) {
    std::cerr << "konu-hostsim: " << e.what() << "\n";
    return kControlUsage;
  }
}

}  // namespace Konu::Sim
