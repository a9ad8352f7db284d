// Any bytes as a simulated host's state file: the reader and the host's start-up either take
// the state or refuse it with a StateFileError naming the file; never another failure. A
// state that was taken is written back and reads again as the same state.
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "host/sim/SimHost.h"
#include "host/sim/StateFile.h"
#include "tests/fuzz/FuzzCheck.h"

using namespace Konu::Sim;

namespace {

std::string root;

// Runs `read`; true when it took the state, false when it refused it with a message that
// names the file.
template <typename Read>
bool TakenOrRefused(const char* what, const StateFile& file, Read read) {
  try {
    read();
    return true;
  } catch (const StateFileError& e) {
    FUZZ_CHECK(std::string(e.what()).rfind(file.Path() + ": ", 0) == 0, "%s: refusal names no file: %s", what,
               e.what());
  } catch (const std::exception& e) {
    FUZZ_CHECK(false, "%s: failed with something else than a refusal: %s", what, e.what());
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  char dir[] = "/tmp/konu-statefuzz-XXXXXX";
  if (!mkdtemp(dir)) std::abort();
  root = dir;
  StateFile(root).Write(nlohmann::json::object());  // makes etc/konu-sim/
  std::atexit([] { std::system(("rm -rf '" + root + "'").c_str()); });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  StateFile file(root);
  {
    std::ofstream out(file.Path(), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  nlohmann::json state;
  const bool read = TakenOrRefused("reader", file, [&] { state = file.Read(); });
  const bool started = TakenOrRefused("host start-up", file, [&] { HostCtl::Sim::SimHost host(root); });
  FUZZ_CHECK(!started || read, "the host started on a state its reader refuses");
  if (!read) return 0;
  file.Write(state);
  nlohmann::json again;
  FUZZ_CHECK(TakenOrRefused("reader after writing", file, [&] { again = file.Read(); }) && again == state,
             "a state written back reads differently");
  return 0;
}
