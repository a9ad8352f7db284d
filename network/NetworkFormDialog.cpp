// NetworkFormDialog: the item list, the key loop and the refusal of a field's value.
#include "network/NetworkFormDialog.h"

#include <curses.h>

#include <algorithm>
#include <cctype>

#include "ui/FormKeys.h"
#include "ui/MessageDialog.h"

namespace Konu {
namespace {

bool Ascii(int key) { return key >= 0 && key < 128; }

// Backspace, Delete, Left, Right, Home, End: every field takes them.
bool MovesOrDeletes(int key) { return IsEditingKey(key) && !(key >= 32 && key < 127); }

}  // namespace

bool Ipv4Char(int key) { return Ascii(key) && (std::isdigit(key) || key == '.'); }
bool Ipv6Char(int key) { return Ascii(key) && (std::isalnum(key) || key == ':' || key == '/' || key == '%'); }
bool DnsServerChar(int key) { return Ascii(key) && (std::isxdigit(key) || key == '.' || key == ':'); }
bool HostnameChar(int key) { return Ascii(key) && (std::isalnum(key) || key == '-' || key == '.'); }
bool SuffixesChar(int key) {
  return Ascii(key) && (std::isalnum(key) || key == ',' || key == '-' || key == '.' || key == ' ');
}

NetworkFormDialog::NetworkFormDialog(Frame* owner, int width, int height, int headerHeight, int titleId,
                                     int textId, const char* footer)
    : Dialog(owner, width, height, headerHeight), titleId_(titleId), textId_(textId), footer_(footer) {}

NetworkFormDialog::~NetworkFormDialog() = default;

RadioItem* NetworkFormDialog::AddChoice(int labelId, bool checked) {
  auto choice = std::make_unique<RadioItem>(GetString(static_cast<uint32_t>(labelId)), checked);
  RadioItem* raw = choice.get();
  choices_.push_back(raw);
  order_.push_back(raw);
  marks_.push_back(std::move(choice));
  return raw;
}

CheckItem* NetworkFormDialog::AddCheck(const std::string& label, bool checked) {
  auto check = std::make_unique<CheckItem>(label, checked);
  CheckItem* raw = check.get();
  order_.push_back(raw);
  marks_.push_back(std::move(check));
  return raw;
}

void NetworkFormDialog::AddSpacer() {
  marks_.push_back(std::make_unique<LabelItem>("", false));
  order_.push_back(marks_.back().get());
}

InputItem* NetworkFormDialog::AddInput(const std::string& label, const std::string& value, Accepts accepts) {
  inputs_.push_back({std::make_unique<InputItem>(label, value, -1), accepts});
  order_.push_back(inputs_.back().item.get());
  return inputs_.back().item.get();
}

void NetworkFormDialog::Finish(RadioItem* inputsChoice) {
  inputsChoice_ = inputsChoice;
  const bool enabled = inputsChoice_ == nullptr || inputsChoice_->IsChecked();
  for (Input& input : inputs_) input.item->SetEnabled(enabled);
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems(order_);
}

void NetworkFormDialog::Mark(RadioItem* choice) {
  for (RadioItem* other : choices_) other->SetChecked(other == choice);
  const bool enabled = inputsChoice_ == nullptr || inputsChoice_->IsChecked();
  for (Input& input : inputs_) input.item->SetEnabled(enabled);
}

void NetworkFormDialog::Space(Item* item) {
  auto found = std::find(choices_.begin(), choices_.end(), item);
  if (found != choices_.end()) Mark(*found);
}

const NetworkFormDialog::Input* NetworkFormDialog::FocusedInput() const {
  const Item* focused = list_->FocusedItem();
  for (const Input& input : inputs_)
    if (input.item.get() == focused) return &input;
  return nullptr;
}

void NetworkFormDialog::Draw() {
  list_->Draw();
  ShowCursor(FocusedInput() != nullptr);
}

void NetworkFormDialog::Refuse(int titleId, int textId, Item* field) {
  {
    MessageDialog message(this, titleId, textId);
    message.RunModal();
  }
  const auto at = std::find(order_.begin(), order_.end(), field);
  int ordinal = 0;
  for (auto it = order_.begin(); it != at; ++it) ordinal += (*it)->IsFocusable() ? 1 : 0;
  list_->FocusOrdinal(ordinal);
  Draw();
}

int NetworkFormDialog::EventLoop() {
  SetTitle(GetString(static_cast<uint32_t>(titleId_)));
  SetText(GetString(static_cast<uint32_t>(textId_)));
  SetFooter(footer_);
  Draw();
  for (;;) {
    const int key = GetKey(true);
    const Input* input = FocusedInput();
    if (key == kKeyEsc) {
      ShowCursor(false);
      return 0;
    }
    if (IsEnterKey(key)) {
      if (Accept()) {
        ShowCursor(false);
        return 1;
      }
      continue;
    }
    if (key == KEY_UP) {
      list_->Up();
    } else if (key == KEY_DOWN) {
      list_->Down();
    } else if (input != nullptr) {
      // A key the field does not take is ignored.
      if (MovesOrDeletes(key) || input->accepts(key)) input->item->HandleKey(key);
    } else if (key == ' ') {
      Space(list_->FocusedItem());
    }
    Draw();
  }
}

}  // namespace Konu
