// The network test's form: three addresses to ping and a host name to resolve, filled from
// the host (IPv4 default gateway, primary and alternate name servers, the host's fully
// qualified name). Enter runs the test; Esc closes.
//
// Design: the fields take what the DNS dialog's server and host name fields take. Enter
// hands every non-empty address other than "0.0.0.0", then a non-empty name, to
// RunTestDialog, and comes back to this form afterwards with its fields as they were, so
// the operator can test again with other addresses. A host query that fails leaves its
// field empty and is logged.
#pragma once

#include <string>
#include <vector>

#include "network/NetworkFormDialog.h"

namespace Konu {

class TestDialog : public NetworkFormDialog {
 public:
  explicit TestDialog(Frame* owner);
  ~TestDialog() override;

 private:
  static constexpr int kPingFields = 3;

  // Runs the test; the form stays open (false).
  bool Accept() override;

  InputItem* fields_[kPingFields + 1] = {};  // three addresses, then the name
  std::string interfaceName_;
  std::vector<std::string> ownNames_;  // the host's names, kept out of the hosts file during the test
};

}  // namespace Konu
