// The standard message box: a title and a message, closed with Enter.
#pragma once

#include <string>

#include "ui/Dialog.h"

namespace Konu {

class MessageDialog : public Dialog {
 public:
  // The message is looked up in the string table at once.
  MessageDialog(Frame* owner, int titleId, int messageId);
  MessageDialog(Frame* owner, int titleId, std::string message);
  ~MessageDialog() override;

  // Shows the texts and waits for Enter (every other key, Esc too, is ignored); returns 1.
  int EventLoop() override;

  int TitleId() const { return titleId_; }
  int MessageId() const { return messageId_; }
  const std::string& Message() const { return message_; }

 private:
  int titleId_;
  int messageId_ = -1;  // -1 when the message was given as text
  std::string message_;
};

}  // namespace Konu
