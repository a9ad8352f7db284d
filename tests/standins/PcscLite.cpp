// A PC/SC client library standing in for libpcsclite: two readers, a card in the first.
// KONU_PCSC_STANDIN=no-service answers as a machine without pcscd, =no-readers as one
// with pcscd and no reader.
#include <cstdlib>
#include <cstring>

namespace {

struct ReaderState {
  const char* reader;
  void* userData;
  unsigned long currentState;
  unsigned long eventState;
  unsigned long atrLength;
  unsigned char atr[33];
};

constexpr char kReaders[] = "Reader A\0Reader B\0";  // the array's own zero ends the list

bool Mode(const char* mode) {
  const char* set = getenv("KONU_PCSC_STANDIN");
  return set && strcmp(set, mode) == 0;
}

}  // namespace

extern "C" {

long SCardEstablishContext(unsigned long, const void*, const void*, long* context) {
  if (Mode("no-service")) return static_cast<long>(0x8010001DL);  // SCARD_E_NO_SERVICE
  *context = 7;
  return 0;
}

long SCardReleaseContext(long) { return 0; }

long SCardListReaders(long, const char*, char* names, unsigned long* length) {
  if (Mode("no-readers")) return static_cast<long>(0x8010002EL);  // SCARD_E_NO_READERS_AVAILABLE
  if (names && *length < sizeof kReaders)
    return static_cast<long>(0x80100008L);  // SCARD_E_INSUFFICIENT_BUFFER
  if (names) memcpy(names, kReaders, sizeof kReaders);
  *length = sizeof kReaders;
  return 0;
}

long SCardGetStatusChange(long, unsigned long, ReaderState* states, unsigned long count) {
  for (unsigned long i = 0; i < count; ++i)  // SCARD_STATE_CHANGED with PRESENT or EMPTY
    states[i].eventState = 0x0002 | (strcmp(states[i].reader, "Reader A") == 0 ? 0x0020 : 0x0010);
  return 0;
}
}
