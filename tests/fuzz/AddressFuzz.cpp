// The address parsers on any text: a parse either fails and changes nothing, or succeeds and
// its canonical text parses back to the same value and the same text; the validity checks
// agree with the parsers.
#include <arpa/inet.h>

#include <algorithm>

#include "host/Ipv4Address.h"
#include "host/Ipv6Network.h"
#include "host/MacAddress.h"
#include "tests/fuzz/FuzzCheck.h"

using namespace HostCtl::Network;

namespace {

// Parses `text` into a value that holds `sentinel`; checks the parse, the round trip and the
// validity check. Returns whether the text was accepted.
template <typename T, typename Parse, typename Print, typename Valid>
bool RoundTrip(const char* kind, const std::string& text, const T& sentinel, Parse parse, Print print,
               Valid valid) {
  T value = sentinel;
  const bool ok = parse(value, text);
  FUZZ_CHECK(ok == valid(text), "%s: the check and the parser disagree on \"%s\"", kind, text.c_str());
  if (!ok) {
    FUZZ_CHECK(value == sentinel, "%s: a refused \"%s\" changed the value", kind, text.c_str());
    return false;
  }
  const std::string canonical = print(value);
  T again = sentinel;
  FUZZ_CHECK(parse(again, canonical) && again == value && print(again) == canonical,
             "%s: \"%s\" reads back as \"%s\", which does not round-trip", kind, text.c_str(),
             canonical.c_str());
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), std::min<size_t>(size, 200));

  const Ipv4Address v4Sentinel("198.51.100.7");
  if (RoundTrip(
          "IPv4", text, v4Sentinel, [](Ipv4Address& a, const std::string& t) { return a.SetAddress(t); },
          [](const Ipv4Address& a) { return a.GetStringAddress(); }, Ipv4Address::IsValidAddress)) {
    // Dotted quads have one spelling: what was accepted is what is shown.
    FUZZ_CHECK(Ipv4Address(text).GetStringAddress() == text, "IPv4 \"%s\" is not shown as typed",
               text.c_str());
    Ipv4Address mask(text);
    FUZZ_CHECK(
        Ipv4Address::IsValidNetmask(text) ==
            (mask.GetPrefixLength() > 0 && Ipv4Address::FromPrefixLength(mask.GetPrefixLength()) == mask),
        "netmask check wrong for \"%s\"", text.c_str());
  }

  const Ipv6Address v6Sentinel("2001:db8::7%nuk0");
  RoundTrip(
      "IPv6", text, v6Sentinel, [](Ipv6Address& a, const std::string& t) { return a.SetAddress(t); },
      [](const Ipv6Address& a) { return a.GetScopedStringAddress(); }, Ipv6Address::IsValidAddress);

  const Ipv6Network netSentinel(Ipv6Address("2001:db8::9"), 48, Ipv6AddressType::kDhcp, Ipv6Scope::kSite);
  if (RoundTrip(
          "IPv6 network", text, netSentinel,
          [](Ipv6Network& n, const std::string& t) { return n.SetAddressAndNetmask(t); },
          [](const Ipv6Network& n) { return n.GetStringNetwork(); }, Ipv6Network::IsValidAddressAndNetmask)) {
    Ipv6Network parsed = netSentinel;
    parsed.SetAddressAndNetmask(text);
    FUZZ_CHECK(parsed.GetPrefixLength() <= 128, "prefix %u", parsed.GetPrefixLength());
    FUZZ_CHECK(
        parsed.GetIpv6AddressType() == Ipv6AddressType::kDhcp && parsed.GetIpv6Scope() == Ipv6Scope::kSite,
        "parsing \"%s\" changed the type or scope", text.c_str());
  }

  const MacAddress macSentinel("02:00:00:aa:bb:cc");
  if (RoundTrip(
          "MAC", text, macSentinel, [](MacAddress& m, const std::string& t) { return m.SetAddress(t); },
          [](const MacAddress& m) { return m.GetStringAddress(); }, MacAddress::IsValidAddress)) {
    std::string expected = text;
    for (char& c : expected)
      c = c == '-' ? ':' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    FUZZ_CHECK(MacAddress(text).GetStringAddress() == expected, "MAC \"%s\" shown otherwise", text.c_str());
  }
  return 0;
}
