// LinuxSmartCardInfo: the readers and their cards from pcscd, through the PC/SC calls of a
// libpcsclite loaded for each look (a reader plugged in later is seen).
#include "host/linux/LinuxSmartCardInfo.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "host/SharedLibrary.h"

namespace HostCtl::Linux {
namespace {

// The PC/SC interface as libpcsclite defines it on Linux (its DWORD and LONG are long).
using Dword = unsigned long;
using Context = long;
constexpr Dword kScopeSystem = 2;         // SCARD_SCOPE_SYSTEM
constexpr Dword kStateUnaware = 0x0000;   // SCARD_STATE_UNAWARE
constexpr Dword kStatePresent = 0x0020;   // SCARD_STATE_PRESENT
constexpr long kTimeout = 0x8010000A;     // SCARD_E_TIMEOUT: the states are still filled in
constexpr Dword kMaxReaderNames = 65536;  // more names than any machine has

struct ReaderState {
  const char* reader;
  void* userData;
  Dword currentState;
  Dword eventState;
  Dword atrLength;
  unsigned char atr[33];
};

using EstablishContext = long (*)(Dword, const void*, const void*, Context*);
using ReleaseContext = long (*)(Context);
using ListReaders = long (*)(Context, const char*, char*, Dword*);
using GetStatusChange = long (*)(Context, Dword, ReaderState*, Dword);

struct ContextGuard {
  ReleaseContext release;
  Context context;
  ~ContextGuard() { release(context); }
};

}  // namespace

std::vector<SmartCardSlot> LinuxSmartCardInfo::GetSlots() const {
  const Konu::SharedLibrary library(library_);
  if (!library.Loaded()) return {};
  auto establish = library.Get<EstablishContext>("SCardEstablishContext");
  auto release = library.Get<ReleaseContext>("SCardReleaseContext");
  auto list = library.Get<ListReaders>("SCardListReaders");
  auto status = library.Get<GetStatusChange>("SCardGetStatusChange");
  if (!establish || !release || !list || !status) return {};
  Context context = 0;
  if (establish(kScopeSystem, nullptr, nullptr, &context) != 0) return {};  // no pcscd
  ContextGuard guard{release, context};

  Dword length = 0;
  if (list(context, nullptr, nullptr, &length) != 0 || length == 0 || length > kMaxReaderNames) return {};
  std::string names(length, '\0');
  if (list(context, nullptr, names.data(), &length) != 0) return {};  // also: no readers
  names.resize(std::min<size_t>(length, names.size()));

  // "Reader A\0Reader B\0\0": one state per name, asked without waiting.
  std::vector<std::string> readers;
  for (size_t at = 0; at < names.size() && names[at] != '\0';) {
    readers.emplace_back(names.c_str() + at);
    at += readers.back().size() + 1;
  }
  std::vector<ReaderState> states(readers.size());
  for (size_t i = 0; i < readers.size(); ++i)
    states[i] = ReaderState{readers[i].c_str(), nullptr, kStateUnaware, 0, 0, {}};
  std::vector<SmartCardSlot> slots;
  if (states.empty()) return slots;
  const long result = status(context, 0, states.data(), static_cast<Dword>(states.size()));
  if (result != 0 && result != kTimeout) return slots;
  for (size_t i = 0; i < readers.size(); ++i) {
    SmartCardSlot slot{readers[i], std::nullopt};
    if (states[i].eventState & kStatePresent) slot.token = SmartCardToken{};
    slots.push_back(std::move(slot));
  }
  return slots;
}

}  // namespace HostCtl::Linux
