// The network test's form: three addresses to ping and a host name to resolve, filled from
// the host (IPv4 default gateway, primary and alternate name servers, the host's fully
// qualified name). Enter runs the test; Esc closes.
//
// Design: the fields accept what the DNS settings' fields accept (DnsFieldKeys.h). Enter
// hands every non-empty address other than "0.0.0.0", then a non-empty name, to
// RunTestDialog, and comes back to this form afterwards, its fields as they were, so the
// operator can test again with other addresses. A host query that fails leaves its field
// empty and is logged.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"

namespace Konu {

class TestDialog : public Dialog {
 public:
  explicit TestDialog(Frame* owner);
  ~TestDialog() override;

  // 0 when closed with Esc (the only way out).
  int EventLoop() override;

 private:
  static constexpr int kPingFields = 3;

  void FillFromHost();
  void RunTest();
  void Draw();

  std::unique_ptr<InputItem> fields_[kPingFields + 1];  // three addresses, then the name
  std::unique_ptr<ItemList> list_;
  std::string interfaceName_;
  std::vector<std::string> ownNames_;  // the host's names, kept out of the hosts file during the test
};

}  // namespace Konu
