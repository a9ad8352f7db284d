// The details of one physical NIC: name, hardware label, MAC address, link and who uses it.
#pragma once

#include <memory>
#include <string>

#include "host/Pnic.h"
#include "ui/Dialog.h"
#include "ui/TextArea.h"

namespace Konu {

class AdapterInfoDialog : public Dialog {
 public:
  // `usedBy`: the connection that uses the NIC, "" for none.
  AdapterInfoDialog(Frame* owner, const HostCtl::Network::Pnic& pnic, const std::string& usedBy);
  ~AdapterInfoDialog() override;

  // Closes on Enter or Esc.
  int EventLoop() override;

 private:
  std::string details_;
  std::unique_ptr<TextArea> text_;
};

}  // namespace Konu
