// Smart-card readers (slots) and the tokens in them, with the user id each token carries.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace HostCtl {

struct SmartCardToken {
  std::string userId;  // the login name the card belongs to
};

struct SmartCardSlot {
  std::string name;                     // reader name
  std::optional<SmartCardToken> token;  // empty when no card is in the reader
};

class SmartCardInfo {
 public:
  virtual ~SmartCardInfo() = default;
  SmartCardInfo() = default;
  SmartCardInfo(const SmartCardInfo&) = delete;
  SmartCardInfo& operator=(const SmartCardInfo&) = delete;

  // Every slot, with its token when a card is present.
  virtual std::vector<SmartCardSlot> GetSlots() const = 0;
};

}  // namespace HostCtl
