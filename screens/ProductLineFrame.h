// A plain full-screen frame with the product line, waiting for keys without idle time-out.
// It is the first screen until the welcome screen takes its place.
#pragma once

#include <memory>

#include "ui/Frame.h"
#include "ui/TextArea.h"

namespace Konu {

class ProductLineFrame : public Frame {
 public:
  ProductLineFrame();
  int EventLoop() override;

 private:
  std::unique_ptr<TextArea> text_;
};

}  // namespace Konu
