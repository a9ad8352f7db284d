// The welcome screen in a pseudo-terminal on a fresh simulated host: the host's facts, the
// management URLs and their marks, warnings, the IPv6 line rule, the no-adapter text and its
// alert, and the custom welcome message with its variables. (The login refusal:
// e2e.ConsoleLogin.WithoutTheMarkerFileF2OpensTheRefusalNeverTheForm.)
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "tests/harness/SimHostFixture.h"

namespace {

using KonuTest::SimHostFixture;
using KonuTest::Terminal;

// The text at (row, col), `width` columns, without trailing blanks.
std::string TextAt(const Terminal& term, int row, int col, int width) {
  std::string text = term.Region(row, col, 1, width);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

// What a machine command printed on its standard output.
std::string CommandOutput(const std::string& command) {
  std::string out;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    char buffer[512];
    while (size_t n = fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
    pclose(pipe);
  }
  return out;
}

class WelcomeScreen : public SimHostFixture {
 protected:
  // Starts the console and waits until its welcome screen waits for a key.
  void Start(Terminal& term, const std::string& firstText) {
    StartKonu(term);
    ASSERT_NO_FATAL_FAILURE(Ready(term, firstText));
  }
  // Presses a key that only refreshes the screen and waits for `text` to appear.
  void RefreshUntil(Terminal& term, const std::string& text) {
    ASSERT_TRUE(term.WaitUntilPolling());
    ASSERT_NO_FATAL_FAILURE(PressUntil(term, "x", text));
  }
  void SetIpv6Addresses(const std::vector<std::string>& addresses) {
    nlohmann::json list = nlohmann::json::array();
    for (const std::string& a : addresses) list.push_back({{"address", a}, {"prefixLength", 64}});
    SetState("/network/nukNics/nuk0/ipv6/addresses", list);
  }
};

TEST_F(WelcomeScreen, StandardLayoutShowsTheHostAndHowToReachIt) {
  Terminal term(24, 80);
  Start(term, ProductLine());
  // Upper half: product, hardware, CPU and memory at column 8.
  EXPECT_EQ(TextAt(term, 5, 8, 64), ProductLine());
  EXPECT_EQ(TextAt(term, 7, 8, 64), "Tessera Computing Inc. Tessera TX740 Server");
  EXPECT_EQ(TextAt(term, 9, 8, 64), "2 x Sample(R) Server(R) 8-Core CPU @ 2.10GHz");
  EXPECT_EQ(TextAt(term, 10, 8, 64), "128 GiB Memory");
  // Lower half from row 11 (on 24 rows the halves meet one row higher, so that every line
  // fits): the management text at its row 1.
  EXPECT_EQ(TextAt(term, 12, 8, 64), "To manage this host, go to:");
  EXPECT_EQ(TextAt(term, 13, 8, 64), "https://konu-host/");
  EXPECT_EQ(TextAt(term, 14, 8, 64), "https://10.0.0.5/ (STATIC)");
  // IPv6 is on: the addresses sorted as text, the link-local one without a mark.
  EXPECT_EQ(TextAt(term, 15, 8, 64), "https://[2001:db8:10::50]/ (STATIC)");
  EXPECT_EQ(TextAt(term, 16, 8, 64), "https://[2001:db8:10::5]/ (STATIC)");
  EXPECT_EQ(TextAt(term, 17, 8, 64), "https://[fe80::4b:4eff:fe6a:1005]/");
  // The footer on the lower half's second row from the bottom: F2 left, F12 right-aligned.
  EXPECT_EQ(TextAt(term, 22, 2, 31), "<F2> Customize System/View Logs");
  EXPECT_EQ(term.Region(22, 54, 1, 24), " <F12> Shut Down/Restart")
      << "ends at the footer's right edge, column 77";
  // Colours: white on dark grey above, on yellow below; key labels in dark grey.
  EXPECT_EQ(term.Colors(5, 8).background, 6);
  EXPECT_EQ(term.Colors(5, 8).foreground, 7);
  EXPECT_EQ(term.Colors(12, 8).background, 3);
  EXPECT_EQ(term.Colors(22, 2).foreground, 7) << "<F2> in the normal colour";
  EXPECT_EQ(term.Colors(22, 7).foreground, 6) << "its text in dark grey";
  // The box round the screen in its halves' colours, on this 256-colour terminal too.
  for (auto [row, col] : {std::pair{0, 0}, {0, 40}, {6, 0}, {10, 79}, {11, 0}, {17, 79}, {23, 0}, {23, 40}}) {
    const KonuTest::CellColors cell = term.Colors(row, col);
    EXPECT_EQ(cell.background, row < 11 ? 6 : 3) << row << "," << col;
    EXPECT_EQ(cell.foreground, 7) << row << "," << col;
  }
}

// The hardware line shows the product alone when it begins with the vendor; one CPU package
// has no count; the host name "localhost" gives no host name line. The facts are read afresh
// at every draw: any key brings the new ones, and a host name's braces are no mark-up.
TEST_F(WelcomeScreen, FactsAreTidiedAndReadAfreshAtEveryDraw) {
  SetState("/hardware/vendor", "  Tessera ");
  SetState("/hardware/product", " Tessera TX740 Server  ");
  SetState("/hardware/cpuPackages", 1);
  SetState("/hardware/cpuModel", "  Sample Core 8100 ");
  SetState("/hardware/memoryBytes", 1073741823);
  SetState("/host/hostname", "localhost");
  Terminal term(24, 80);
  Start(term, ProductLine());
  EXPECT_EQ(TextAt(term, 7, 8, 64), "Tessera TX740 Server");
  EXPECT_EQ(TextAt(term, 9, 8, 64), "Sample Core 8100");
  EXPECT_EQ(TextAt(term, 10, 8, 64), "1024 MiB Memory");
  EXPECT_EQ(TextAt(term, 12, 8, 64), "To manage this host, go to:");
  EXPECT_EQ(TextAt(term, 13, 8, 64), "https://10.0.0.5/ (STATIC)");
  EXPECT_FALSE(term.WaitForText("https://localhost", 0));

  SetState("/hardware/memoryBytes", 1073741824);
  SetState("/host/hostname", "konu-{color:red}07");
  RefreshUntil(term, "https://konu-{color:red}07/");
  EXPECT_EQ(TextAt(term, 10, 8, 64), "1 GiB Memory");
  EXPECT_EQ(TextAt(term, 14, 8, 64), "https://10.0.0.5/ (STATIC)");
}

// A lease shows with its mark; a failed lookup warns, and audit mode takes the warning's
// place (on a static host too: EveryLineShowsOnTheSmallestTerminals... below).
TEST_F(WelcomeScreen, DhcpLeaseIsMarkedAFailureWarnsAndAuditModeTakesThePlaceOfTheWarning) {
  SetState("/network/nukNics/nuk0/ipv4/dhcp", true);
  SetState("/network/nukNics/nuk0/ipv4Lease", {{"address", "10.0.0.77"}, {"netmask", "255.255.255.0"}});
  Terminal term(40, 100);  // tall enough for the whole six-row warning area
  Start(term, ProductLine());
  EXPECT_TRUE(term.WaitForText("https://10.0.0.77/ (DHCP)", 0)) << term.Screen();
  EXPECT_FALSE(term.WaitForText("Warning:", 0)) << term.Screen();

  SetState("/network/nukNics/nuk0/ipv4Lease", {{"address", "0.0.0.0"}, {"netmask", "0.0.0.0"}});
  RefreshUntil(term, "https://0.0.0.0/ (Waiting for DHCP...)");
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find("Warning: DHCP lookup failed.", &row, &col)) << term.Screen();
  EXPECT_EQ(row, 20 + 9) << "row 9 of the lower half";
  EXPECT_EQ(col, 16);
  EXPECT_EQ(term.Colors(row, col).foreground, 6);
  EXPECT_TRUE(term.WaitForText("customize its network configuration.", 0)) << "wrapped, not cut";

  SetState("/bootOption", 1);
  RefreshUntil(term, "Warning: Host is running in audit mode.");
  EXPECT_FALSE(term.WaitForText("DHCP lookup failed", 0)) << term.Screen();
  EXPECT_TRUE(term.WaitForText("(Waiting for DHCP...)", 0));
}

// On the smallest terminals every line shows: heading, host name, IPv4 address, five IPv6
// addresses (or four sorted and "..."), the whole audit warning and the footer.
TEST_F(WelcomeScreen, EveryLineShowsOnTheSmallestTerminalsFiveIpv6AddressesWholeSixAsFourAndDots) {
  SetState("/bootOption", 1);
  const std::string warning =
      "Warning: Host is running in audit mode. Your configuration will not be persistent across reboots. "
      "Please contact support.";
  for (int rows : {24, 25}) {
    SCOPED_TRACE(rows);
    SetIpv6Addresses({"2001:db8::e", "2001:db8::c", "2001:db8::a", "2001:db8::d", "2001:db8::b"});
    Terminal term(rows, 80);
    Start(term, ProductLine());
    int top = 0, col = 0;
    ASSERT_TRUE(term.Find("To manage this host, go to:", &top, &col)) << term.Screen();
    EXPECT_EQ(col, 8);
    EXPECT_EQ(TextAt(term, top + 1, 8, 64), "https://konu-host/");
    EXPECT_EQ(TextAt(term, top + 2, 8, 64), "https://10.0.0.5/ (STATIC)");
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(TextAt(term, top + 3 + i, 8, 64),
                std::string("https://[2001:db8::") + "abcde"[i] + "]/ (STATIC)")
          << i;
    }
    EXPECT_FALSE(term.WaitForText("...", 0)) << term.Screen();
    // The warning below the addresses, whole, above the key help.
    std::istringstream below(term.Region(top + 8, 1, rows - 2 - (top + 8), 78));
    std::string shown, word;
    while (below >> word) shown += (shown.empty() ? "" : " ") + word;
    EXPECT_EQ(shown, warning) << term.Screen();
    EXPECT_EQ(TextAt(term, rows - 2, 2, 31), "<F2> Customize System/View Logs");
    EXPECT_EQ(term.Colors(top, 8).background, 3);
    EXPECT_EQ(term.Colors(10, 8).background, 6) << "the memory line stays in the upper half";

    // A sixth: the first four of the interface's list, sorted, then "...".
    SetIpv6Addresses(
        {"2001:db8::e", "2001:db8::c", "2001:db8::a", "2001:db8::d", "2001:db8::b", "2001:db8::1"});
    RefreshUntil(term, "...");
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(TextAt(term, top + 3 + i, 8, 64),
                std::string("https://[2001:db8::") + "acde"[i] + "]/ (STATIC)")
          << i;
    }
    EXPECT_EQ(TextAt(term, top + 7, 8, 64), "...");
    EXPECT_FALSE(term.WaitForText("2001:db8::b]", 0));
    EXPECT_FALSE(term.WaitForText("2001:db8::1]", 0));
  }
}

TEST_F(WelcomeScreen, NoNetworkAdapterShowsTheTextAndRaisesTheAlertOnce) {
  SetState("/network/pnics", nlohmann::json::object());
  Terminal term(24, 80);
  Start(term, "No compatible network adapter found. Please consult");
  EXPECT_FALSE(term.WaitForText("To manage this host", 0)) << term.Screen();
  EXPECT_EQ(State("/host/systemAlerts"), nlohmann::json::array({"No compatible network adapter found."}));

  SetState("/hardware/product", "Other Box");
  RefreshUntil(term, "Tessera Computing Inc. Other Box");
  EXPECT_TRUE(term.WaitForText("No compatible network adapter found.", 0));
  EXPECT_EQ(State("/host/systemAlerts").size(), 1u) << "raised once per process";
}

TEST_F(WelcomeScreen, CustomWelcomeMessageReplacesTheLayoutWithItsVariablesFilledIn) {
  unlink(HostFile("etc/ssh/ssh_host_dsa_key").c_str());  // one fingerprint that cannot be taken
  SetState("/host/welcomeMessage",
           "{color:yellow}Welcome{/color} to {ip} with {memory}\nSSL [{ssl-thumbprint}]\n"
           "RSA [{ssh-rsa-fingerprint}]\nDSA [{ssh-dsa-fingerprint}]\nTag [{servicetag}]");
  SetState("/support/serviceTag", "TX7-{bgcolor:red}1");
  Terminal term(24, 80);
  Start(term, "Welcome to 10.0.0.5 with 128 GiB");
  int row = 0, col = 0;
  ASSERT_TRUE(term.Find("Welcome to", &row, &col));
  EXPECT_EQ(row, 2);
  EXPECT_EQ(col, 2);
  EXPECT_EQ(term.Colors(row, col).foreground, 3) << "its mark-up is drawn";
  EXPECT_FALSE(term.WaitForText(ProductLine(), 0)) << term.Screen();
  EXPECT_FALSE(term.WaitForText("To manage this host", 0));

  // The same fingerprints the machine's tools give for the host's files.
  std::string ssl =
      CommandOutput("openssl x509 -noout -sha1 -fingerprint -in " + HostFile("etc/corbel/ssl/rui.crt"));
  ASSERT_NE(ssl.find('='), std::string::npos) << ssl;
  ssl = ssl.substr(ssl.find('=') + 1);
  ssl.erase(ssl.find_last_not_of("\n") + 1);
  EXPECT_TRUE(term.WaitForText("SSL [" + ssl + "]", 0)) << term.Screen();
  std::istringstream rsa(CommandOutput("ssh-keygen -l -f " + HostFile("etc/ssh/ssh_host_rsa_key")));
  std::string bits, fingerprint;
  rsa >> bits >> fingerprint;
  ASSERT_EQ(fingerprint.rfind("SHA256:", 0), 0u) << fingerprint;
  EXPECT_TRUE(term.WaitForText("RSA [" + fingerprint + "]", 0)) << term.Screen();
  EXPECT_TRUE(term.WaitForText("DSA []", 0)) << term.Screen();
  EXPECT_NE(Syslog().find("Error generating SSH Key Fingerprint: "), std::string::npos) << Syslog();
  EXPECT_TRUE(term.WaitForText("Tag [TX7-{bgcolor:red}1]", 0)) << "a value is no mark-up\n" << term.Screen();

  // Without the message the standard layout comes back.
  SetState("/host/welcomeMessage", "");
  RefreshUntil(term, ProductLine());
  EXPECT_TRUE(term.WaitForText("To manage this host, go to:", 0));
  EXPECT_FALSE(term.WaitForText("Welcome to", 0));
}

}  // namespace
