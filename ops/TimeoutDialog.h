// A dialog of numeric minute fields: the timeout dialogs of the troubleshooting menu share
// their keys, their parsing and the refusal of values above a day.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"

namespace Konu {

class TimeoutDialog : public Dialog {
 public:
  ~TimeoutDialog() override;

  // Down and Up move between the fields; digits and the editing keys go to the selected
  // field; Esc returns 0 with no change; Enter calls Apply and returns 1.
  int EventLoop() override;

  // The longest timeout, a day in minutes.
  static constexpr uint32_t kMaxMinutes = 1440;

 protected:
  // `labels` and `minutes` give the fields, top to bottom.
  TimeoutDialog(Frame* owner, int height, int headerHeight, int titleId, int textId,
                const std::vector<int>& labels, const std::vector<uint32_t>& minutes);

  // Acts on the fields' values; the dialog closes afterwards.
  virtual void Apply() = 0;

  // The field's text; "" when it was emptied.
  const std::string& Value(size_t field) const { return fields_[field]->Value(); }
  // The text as whole minutes, the way the host's tools parse it (base 10, cut to 32 bits).
  static uint32_t Minutes(const std::string& value);
  // Shows "Invalid timeout value" unless `minutes` is at most a day; true when it is.
  bool Acceptable(uint32_t minutes);

 private:
  int titleId_;
  int textId_;
  std::vector<std::unique_ptr<InputItem>> fields_;
  std::unique_ptr<ItemList> list_;
};

}  // namespace Konu
