// Choosing the console keyboard layout from the layouts the host offers; the marked one is
// loaded and made the host's layout on Enter.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/SystemInfo.h"
#include "ui/Dialog.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

class KeyboardDialog : public Dialog {
 public:
  // Reads the current layout and the list; the current one's item is on.
  explicit KeyboardDialog(Frame* owner);
  ~KeyboardDialog() override;

  // Enter applies the layout marked with Space (the current one when nothing was marked)
  // and returns 1; Esc returns 0.
  int EventLoop() override;

  const std::vector<std::string>& Layouts() const { return layouts_; }
  unsigned Chosen() const { return chosen_; }

 private:
  void Mark(int index);
  bool Apply();

  std::unique_ptr<HostCtl::SystemInfo> systemInfo_;
  std::vector<std::string> layouts_;
  std::vector<std::unique_ptr<RadioItem>> items_;
  std::unique_ptr<ItemList> list_;
  unsigned chosen_ = 0;
};

}  // namespace Konu
