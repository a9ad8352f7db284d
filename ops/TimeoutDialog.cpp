// TimeoutDialog: the minute fields, their keys and the day-long limit.
#include "ops/TimeoutDialog.h"

#include <curses.h>

#include <cstdlib>

#include "ui/Footers.h"
#include "ui/FormKeys.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {
constexpr int kWidth = 70;
constexpr int kInvalidTitle = 262;    // "Invalid timeout value"
constexpr int kInvalidMessage = 263;  // "Timeout value must be between 0 (disabled) and 1440 minutes"

// Digits, and the editing keys that are not characters.
bool IsTimeoutKey(int key) {
  if (key >= '0' && key <= '9') return true;
  return IsEditingKey(key) && (key < 32 || key >= 127);
}
}  // namespace

TimeoutDialog::TimeoutDialog(Frame* owner, int height, int headerHeight, int titleId, int textId,
                             const std::vector<int>& labels, const std::vector<uint32_t>& minutes)
    : Dialog(owner, kWidth, height, headerHeight), titleId_(titleId), textId_(textId) {
  std::vector<Item*> items;
  for (size_t i = 0; i < labels.size(); ++i) {
    fields_.push_back(std::make_unique<InputItem>(GetString(static_cast<uint32_t>(labels[i])),
                                                  std::to_string(minutes[i]), -1));
    items.push_back(fields_.back().get());
  }
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems(items);
}

TimeoutDialog::~TimeoutDialog() = default;

uint32_t TimeoutDialog::Minutes(const std::string& value) {
  return static_cast<uint32_t>(std::strtol(value.c_str(), nullptr, 10));
}

bool TimeoutDialog::Acceptable(uint32_t minutes) {
  if (minutes <= kMaxMinutes) return true;
  MessageDialog(this, kInvalidTitle, kInvalidMessage).RunModal();
  return false;
}

int TimeoutDialog::EventLoop() {
  SetTitle(GetString(static_cast<uint32_t>(titleId_)));
  SetText(GetString(static_cast<uint32_t>(textId_)));
  SetFooter(kFooterOkCancel);
  ShowCursor(true);
  list_->Draw();
  for (;;) {
    const int key = GetKey(true);
    if (key == kKeyEsc) break;
    if (IsEnterKey(key)) {
      ShowCursor(false);
      Apply();
      return 1;
    }
    if (key == KEY_DOWN) {
      list_->Down();
    } else if (key == KEY_UP) {
      list_->Up();
    } else if (IsTimeoutKey(key)) {
      static_cast<InputItem*>(list_->FocusedItem())->HandleKey(key);
      list_->Draw();
    }
  }
  ShowCursor(false);
  return 0;
}

}  // namespace Konu
