// The form the IPv4, IPv6, DNS and suffix dialogs share: radio choices and check boxes above
// input fields that take only their own characters and are enabled only while the choice
// that needs them is marked; the text cursor shows only on an input field.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/ItemList.h"
#include "ui/LabelItem.h"

namespace Konu {

// The footer of the IPv4, IPv6 and DNS dialogs.
inline constexpr const char* kFooterMarkSelected =
    "{color:black}<Up/Down>{/color} {color:dark-grey}Select{/color}  {color:black}<Space>{/color} "
    "{color:dark-grey}Mark Selected{/color}{align:right}{color:black}<Enter>{/color} "
    "{color:dark-grey}OK{/color}  {color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

class NetworkFormDialog : public Dialog {
 public:
  ~NetworkFormDialog() override;

  // Up/Down select, Space marks, Enter accepts when Accept() agrees (1), Esc cancels (0).
  int EventLoop() override;

 protected:
  // The characters an input field takes besides the editing keys.
  using Accepts = bool (*)(int key);

  NetworkFormDialog(Frame* owner, int width, int height, int headerHeight, int titleId, int textId,
                    const char* footer);

  // Items in the order added; Finish() hands them to the list.
  RadioItem* AddChoice(int labelId, bool checked);
  CheckItem* AddCheck(const std::string& label, bool checked);
  void AddSpacer();
  InputItem* AddInput(const std::string& label, const std::string& value, Accepts accepts);
  // The inputs are enabled only while `choice` is marked (null: always).
  void Finish(RadioItem* inputsChoice);

  // Marks `choice` and unmarks the other choices; enables the inputs accordingly.
  void Mark(RadioItem* choice);
  bool IsMarked(const RadioItem* choice) const { return choice->IsChecked(); }
  // Shows the failure in a message box and moves the selection to `field`.
  void Refuse(int titleId, int textId, Item* field);

  // Space on a choice or check box (not on an input). The default marks a choice.
  virtual void Space(Item* item);
  // Enter: checks and stores the values; false keeps the dialog open.
  virtual bool Accept() = 0;

 private:
  struct Input {
    std::unique_ptr<InputItem> item;
    Accepts accepts;
  };

  const Input* FocusedInput() const;
  void Draw();

  int titleId_;
  int textId_;
  const char* footer_;
  std::vector<std::unique_ptr<Item>> marks_;  // choices, check boxes and spacers
  std::vector<RadioItem*> choices_;
  std::vector<Input> inputs_;
  std::vector<Item*> order_;
  RadioItem* inputsChoice_ = nullptr;
  std::unique_ptr<ItemList> list_;
};

// Character classes of the fields.
bool Ipv4Char(int key);       // digits and "."
bool Ipv6Char(int key);       // hexadecimal digits and letters, ":", "/", "%"
bool DnsServerChar(int key);  // hexadecimal digits, ".", ":"
bool HostnameChar(int key);   // letters, digits, "-", "."
bool SuffixesChar(int key);   // letters, digits, ",", "-", ".", the blank

}  // namespace Konu
