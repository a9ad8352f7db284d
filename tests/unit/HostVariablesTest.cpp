// The fingerprint variables against stand-in host tools: the arguments the tools get, what
// is read back from them, the failure log line, and that each tool runs only once however
// often a text is laid out.
#include <gtest/gtest.h>
#include <syslog.h>

#include "screens/HostVariables.h"
#include "tests/unit/OpsTestSupport.h"
#include "ui/MarkupTables.h"

namespace Konu {
namespace {

using OpsTest::CapturedLog;
using OpsTest::ReadLines;
using OpsTest::SimulatedRoot;

std::string Expand(const char* name) { return VariableTable::Standard().Find(name)->provider(); }

class HostVariables : public ::testing::Test {
 protected:
  // Each stand-in tool appends its arguments to a file of its own, one line per run.
  void AddTool(const std::string& hostPath, const std::string& log, const std::string& rest) {
    root_.AddScript(hostPath, "echo \"$@\" >> '" + root_.Path() + "/" + log + "'\n" + rest);
  }
  std::vector<std::string> Runs(const std::string& log) { return ReadLines(root_.Path() + "/" + log); }

  SimulatedRoot root_;
  CapturedLog log_;
};

TEST_F(HostVariables, SslThumbprintIsReadFromOpensslOnceAndKept) {
  AddTool("/bin/openssl", "openssl.runs", "echo 'SHA1 Fingerprint=AB:CD:EF:01'\n");
  RegisterHostVariables();
  EXPECT_EQ(Expand("ssl-thumbprint"), "AB:CD:EF:01");
  EXPECT_EQ(Expand("ssl-thumbprint"), "AB:CD:EF:01");
  EXPECT_EQ(Runs("openssl.runs"), std::vector<std::string>{"x509 -noout -sha1 -fingerprint -in " +
                                                           root_.Path() + "/etc/corbel/ssl/rui.crt"});
}

TEST_F(HostVariables, SslThumbprintInAnotherFormIsEmptyAndLogged) {
  AddTool("/bin/openssl", "openssl.runs", "echo 'sha1 Fingerprint=ab:cd'\n");  // not the host's capitals
  RegisterHostVariables();
  EXPECT_EQ(Expand("ssl-thumbprint"), "");
  EXPECT_EQ(Expand("ssl-thumbprint"), "");
  EXPECT_EQ(Runs("openssl.runs").size(), 1u) << "a failure is kept too";
  int errors = 0;
  for (const auto& line : log_.Lines()) errors += line.priority == LOG_ERR;
  EXPECT_EQ(errors, 1);
}

TEST_F(HostVariables, SshFingerprintsComeFromSshKeygenPerKey) {
  AddTool("/usr/lib/corbel/openssh/bin/ssh-keygen", "keygen.runs",
          "case \"$3\" in\n"
          "  *rsa_key) echo '3072 SHA256:rsaPrint root@konu-host (RSA)' ;;\n"
          "  *) echo \"$3: No such file or directory\" >&2; exit 255 ;;\n"
          "esac\n");
  RegisterHostVariables();
  EXPECT_EQ(Expand("ssh-rsa-fingerprint"), "SHA256:rsaPrint");
  EXPECT_EQ(Expand("ssh-dsa-fingerprint"), "");
  EXPECT_EQ(Expand("ssh-rsa-fingerprint"), "SHA256:rsaPrint");
  EXPECT_EQ(Expand("ssh-dsa-fingerprint"), "");
  EXPECT_EQ(Runs("keygen.runs"),
            (std::vector<std::string>{"-l -f " + root_.Path() + "/etc/ssh/ssh_host_rsa_key",
                                      "-l -f " + root_.Path() + "/etc/ssh/ssh_host_dsa_key"}));
  EXPECT_EQ(log_.Count(LOG_ERR, "Error generating SSH Key Fingerprint: " + root_.Path() +
                                    "/etc/ssh/ssh_host_dsa_key: No such file or directory"),
            1);
}

TEST_F(HostVariables, MissingToolGivesEmptyValues) {
  RegisterHostVariables();
  EXPECT_EQ(Expand("ssl-thumbprint"), "");
  EXPECT_EQ(Expand("ssh-rsa-fingerprint"), "");
  bool sshLogged = false;
  for (const auto& line : log_.Lines())
    sshLogged |= line.text.rfind("Error generating SSH Key Fingerprint: ", 0) == 0;
  EXPECT_TRUE(sshLogged);
}

}  // namespace
}  // namespace Konu
