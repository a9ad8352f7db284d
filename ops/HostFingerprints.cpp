// Certificate thumbprint and SSH key fingerprints through openssl and ssh-keygen.
#include "ops/HostFingerprints.h"

#include <syslog.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "host/HostRoot.h"
#include "host/Log.h"
#include "ops/CommandRunner.h"
#include "ops/HostFacts.h"

namespace Konu {
namespace {

// What one tool run left behind.
struct ToolOutput {
  int exitCode = -1;
  std::string out;
  std::string err;
};

ToolOutput RunTool(const char* tool, const char* const argv[]) {
  char out[4096];
  char err[4096];
  int outLength = sizeof out;
  int errLength = sizeof err;
  ToolOutput result;
  result.exitCode = RunCommand(tool, argv, out, &outLength, err, &errLength);
  if (result.exitCode == -1 && outLength == static_cast<int>(sizeof out)) {
    // No child ran: the buffers were never filled.
    result.err = std::strerror(errno);
    return result;
  }
  if (outLength > 0) result.out.assign(out, static_cast<size_t>(outLength));
  if (errLength > 0) result.err.assign(err, static_cast<size_t>(errLength));
  return result;
}

}  // namespace

std::string SslThumbprint() {
  const std::string certificate = HostPath(kHostCertificate);
  const char* argv[] = {"openssl",           "x509", "-noout", "-sha1", "-fingerprint", "-in",
                        certificate.c_str(), nullptr};
  ToolOutput result = RunTool(kOpensslTool, argv);
  char fingerprint[256] = "";
  if (result.exitCode != 0 || std::sscanf(result.out.c_str(), "SHA1 Fingerprint=%255s", fingerprint) != 1) {
    Log(LOG_ERR, "Error reading SSL thumbprint of %s: %s", kHostCertificate,
        CollapseWhitespace(result.err.empty() ? result.out : result.err).c_str());
    return "";
  }
  return fingerprint;
}

std::string SshKeyFingerprint(const char* keyPath) {
  const std::string key = HostPath(keyPath);
  const char* argv[] = {"ssh-keygen", "-l", "-f", key.c_str(), nullptr};
  ToolOutput result = RunTool(kSshKeygenTool, argv);
  // "2048 SHA256:abc... root@host (RSA)": the second field is the fingerprint.
  std::istringstream fields(result.out);
  std::string bits;
  std::string fingerprint;
  if (result.exitCode != 0 || !(fields >> bits >> fingerprint)) {
    std::string reason = CollapseWhitespace(result.err);
    if (reason.empty()) reason = "exit code " + std::to_string(result.exitCode);
    Log(LOG_ERR, "Error generating SSH Key Fingerprint: %s", reason.c_str());
    return "";
  }
  return fingerprint;
}

}  // namespace Konu
