// The IPv4, IPv6, DNS and suffix entries of the management network screen: each runs its
// dialog on copies of the held values and, when the dialog is accepted with a real
// difference, takes the new values into the model and marks it changed.
#pragma once

#include "network/NetworkModel.h"

namespace Konu {

class Frame;

// Each returns the dialog's result: 1 accepted (the summary pane is then rebuilt), 0 Esc.
int EditIpv4(Frame* owner, NetworkModel& model);
// Changed when the enable/disable answer differs from the pending flag or, with the same
// answer, when the DHCPv6 or router-advertisement choice differs; the IPv6-gateway-changed
// flag when the gateway was edited.
int EditIpv6(Frame* owner, NetworkModel& model);
int EditDns(Frame* owner, NetworkModel& model);
int EditSuffixes(Frame* owner, NetworkModel& model);

}  // namespace Konu
