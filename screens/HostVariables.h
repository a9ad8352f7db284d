// The host's values behind the mark-up variables that screen texts may name.
#pragma once

namespace Konu {

// Wires "ip", "memory", "ssl-thumbprint", "ssh-dsa-fingerprint" and "ssh-rsa-fingerprint"
// of the standard variable table to the host. The address and the memory size are read
// from the host at every use; the fingerprints are taken once, at their first use, and
// kept (a failure too, so a broken tool is not run again on every draw).
void RegisterHostVariables();

}  // namespace Konu
