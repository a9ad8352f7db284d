// Fingerprints of the host's certificate and SSH host keys, taken with the host's own tools.
#pragma once

#include <string>

namespace Konu {

// The host certificate, its SSH host keys, and the tools that read them (host paths).
inline constexpr const char kHostCertificate[] = "/etc/corbel/ssl/rui.crt";
inline constexpr const char kSshDsaHostKey[] = "/etc/ssh/ssh_host_dsa_key";
inline constexpr const char kSshRsaHostKey[] = "/etc/ssh/ssh_host_rsa_key";
inline constexpr const char kOpensslTool[] = "/bin/openssl";
inline constexpr const char kSshKeygenTool[] = "/usr/lib/corbel/openssh/bin/ssh-keygen";

// The SHA-1 fingerprint of the host certificate as openssl prints it after
// "SHA1 Fingerprint=" ("AB:CD:..."); "" (logged) when it cannot be taken.
std::string SslThumbprint();

// The fingerprint of one SSH host key (`keyPath` a host path) as ssh-keygen -l prints it
// ("SHA256:..."); "" when it cannot be taken, after logging
// "Error generating SSH Key Fingerprint: " and the reason.
std::string SshKeyFingerprint(const char* keyPath);

}  // namespace Konu
