// The host's values behind the mark-up variables that screen texts may name.
#pragma once

namespace Konu {

// Wires every variable of the standard table ("ip", "memory", the fingerprints, the product
// and the support facts) to the host. The address and the memory size are read
// from the host at every use; the fingerprints are taken once, at their first use, and
// kept (a failure too, so a broken tool is not run again on every draw). "orinproduct" and
// "orinversion" come from the kernel's version record, the support-contract and firmware
// variables from the host's support facts; both are read once, at their first use.
void RegisterHostVariables();

}  // namespace Konu
