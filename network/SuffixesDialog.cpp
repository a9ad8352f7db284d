// SuffixesDialog: 70 x 13; the field has the cursor at once, Enter takes the text as typed.
#include "network/SuffixesDialog.h"

#include "ui/Footers.h"

namespace Konu {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 13;
constexpr int kHeaderHeight = 8;
constexpr int kTitle = 52;   // "Custom DNS Suffixes"
constexpr int kText = 120;   // "DNS queries will attempt to locate hosts by appending ..."
constexpr int kLabel = 121;  // "Suffixes:"

}  // namespace

SuffixesDialog::SuffixesDialog(Frame* owner, const std::string& suffixes)
    : NetworkFormDialog(owner, kWidth, kHeight, kHeaderHeight, kTitle, kText, kFooterOkCancel),
      suffixes_(suffixes) {
  field_ = AddInput(GetString(kLabel), suffixes, SuffixesChar);
  Finish(nullptr);
}

SuffixesDialog::~SuffixesDialog() = default;

bool SuffixesDialog::Accept() {
  suffixes_ = field_->Value();
  return true;
}

}  // namespace Konu
