// KeyboardDialog: 76 x 18, one radio item per layout, Space marks, Enter applies.
#include "ops/KeyboardDialog.h"

#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "ui/Markup.h"

namespace Konu {
namespace {

constexpr int kWidth = 76;
constexpr int kHeight = 18;
constexpr int kHeaderHeight = 6;
constexpr int kTitle = 15;  // "Configure Keyboard"
constexpr int kText = 248;  // "If you are having difficulty using your keyboard, ..."
constexpr const char* kFooter =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Toggle Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

}  // namespace

KeyboardDialog::KeyboardDialog(Frame* owner) : Dialog(owner, kWidth, kHeight, kHeaderHeight) {
  std::string current;
  try {
    systemInfo_ = Runtime::Get().Host().CreateSystemInfo();
    current = systemInfo_->GetKeyboardLayout();
    layouts_ = systemInfo_->GetKeyboardLayouts();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Unable to read the keyboard layouts: %s", e.what());
  }
  std::vector<Item*> items;
  for (size_t i = 0; i < layouts_.size(); ++i) {
    const bool on = layouts_[i] == current;
    if (on) chosen_ = static_cast<unsigned>(i);
    items_.push_back(std::make_unique<RadioItem>(LiteralMarkup(layouts_[i]), on));
    items.push_back(items_.back().get());
  }
  Window* content = Content();
  list_ = std::make_unique<ItemList>(content, 0, 0, content->Width(), content->Height());
  list_->SetItems(items);
}

KeyboardDialog::~KeyboardDialog() = default;

void KeyboardDialog::Mark(int cursor) {
  if (chosen_ < items_.size()) items_[chosen_]->SetChecked(false);
  items_[cursor]->SetChecked(true);
  // The index of the marked item in the whole list, so that Enter applies what the
  // operator marked even when the list was scrolled.
  chosen_ = static_cast<unsigned>(cursor);
}

bool KeyboardDialog::Apply() {
  if (chosen_ >= layouts_.size()) return false;
  const std::string& name = layouts_[chosen_];
  try {
    systemInfo_->LoadKeyboardMappings(name);
    systemInfo_->SetKeyboardLayout(name);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Unable to change the keyboard layout to %s: %s", name.c_str(), e.what());
    return false;
  }
  Log(LOG_INFO, "Keyboard Layout changed to %s", name.c_str());
  return true;
}

int KeyboardDialog::EventLoop() {
  SetTitle(GetString(kTitle));
  SetText(GetString(kText));
  SetFooter(kFooter);
  return RunList(
      *list_, [this](int index) { Mark(index); }, [this] { return Apply() ? 1 : 0; });
}

}  // namespace Konu
