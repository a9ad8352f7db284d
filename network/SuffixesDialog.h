// Custom DNS Suffixes: one field with the search suffixes as typed, separated by blanks or
// commas (split only when the settings are applied).
#pragma once

#include <string>

#include "network/NetworkFormDialog.h"

namespace Konu {

class SuffixesDialog : public NetworkFormDialog {
 public:
  SuffixesDialog(Frame* owner, const std::string& suffixes);
  ~SuffixesDialog() override;

  // After acceptance: the text as typed.
  const std::string& Suffixes() const { return suffixes_; }

 protected:
  bool Accept() override;

 private:
  std::string suffixes_;
  InputItem* field_;
};

}  // namespace Konu
