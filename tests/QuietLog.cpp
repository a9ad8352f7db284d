// Linked into every test executable (an object library, so the initializer is never dropped).
#include "tests/QuietLog.h"

#include <memory>
#include <string>

#include "host/Log.h"

namespace KonuTest {
namespace {

class QuietSink : public Konu::LogSink {
 public:
  void Write(int, const std::string&) override {}
};

const bool installed = (UseQuietLog(), true);

}  // namespace

void UseQuietLog() { Konu::SetLogSink(std::make_unique<QuietSink>()); }

}  // namespace KonuTest
