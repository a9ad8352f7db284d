// Name resolution on the real host: the C library's resolver (hosts file, then DNS), asked
// asynchronously so that the wait stays bounded and can be given up on request.
#include <netdb.h>
#include <time.h>

#include <cstring>
#include <memory>

#include "host/linux/LinuxServices.h"

namespace HostCtl::Linux {
namespace {

constexpr long kSliceMilliseconds = 50;
constexpr long kLimitMilliseconds = 10000;

// One asynchronous lookup. The resolver's helper thread may still hold a request that could
// not be cancelled; such a request is left to it rather than freed under its feet.
struct Lookup {
  explicit Lookup(const std::string& text) : name(text) {
    std::memset(&hints, 0, sizeof hints);
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    std::memset(&request, 0, sizeof request);
    request.ar_name = name.c_str();
    request.ar_request = &hints;
  }
  ~Lookup() {
    if (request.ar_result) freeaddrinfo(request.ar_result);
  }
  Lookup(const Lookup&) = delete;
  Lookup& operator=(const Lookup&) = delete;

  std::string name;
  addrinfo hints;
  gaicb request;
};

}  // namespace

bool LinuxDnsConfig::ResolveHostname(const std::string& name, const std::atomic<bool>& stop) {
  if (name.empty()) return false;
  auto lookup = std::make_unique<Lookup>(name);
  gaicb* list[] = {&lookup->request};
  if (getaddrinfo_a(GAI_NOWAIT, list, 1, nullptr) != 0) return false;
  const timespec slice{0, kSliceMilliseconds * 1000000};
  for (long waited = 0; waited < kLimitMilliseconds && !stop; waited += kSliceMilliseconds) {
    gai_suspend(list, 1, &slice);
    int result = gai_error(&lookup->request);
    if (result != EAI_INPROGRESS) return result == 0;
  }
  if (gai_cancel(&lookup->request) == EAI_NOTCANCELED) lookup.release();  // still the resolver's
  return false;
}

}  // namespace HostCtl::Linux
