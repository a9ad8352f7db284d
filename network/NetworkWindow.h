// The Configure Management Network screen: six entries with a summary pane each, the dialogs
// behind them, and on leaving the confirmation and the ordered apply of every change.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/NetworkInfo.h"
#include "host/NukNic.h"
#include "network/NetworkModel.h"
#include "ui/LabelItem.h"
#include "ui/RootWindow.h"

namespace Konu {

class NetworkWindow : public RootWindow {
 public:
  // The menu entries, in their order on the screen.
  enum Entry { kAdapters = 0, kVlan, kIpv4, kIpv6, kDns, kSuffixes, kEntryCount };

  explicit NetworkWindow(Frame* owner);
  ~NetworkWindow() override;

  // Loads the model and runs the screen until the operator leaves. Returns 0, after the
  // error message, when there is no management interface (the screen is not shown), else 1.
  int Run();

  // Rebuilds the summary pane of the selected entry.
  void Refresh() override;
  int EventLoop() override;

  const NetworkModel& Model() const { return model_; }

 private:
  // Entry: clears the flags, finds the interface and loads the model; false when there is
  // no management interface.
  bool Load();
  void LoadAdaptersAndVlan();
  void LoadDns();
  // Enter on the selected entry.
  void Open(int entry);
  void OpenAdapters();
  void OpenVlan();
  // Esc: true when the screen closes.
  bool Leave();
  // The fourteen steps, in their order.
  void Apply();
  // Runs one step of the apply; a library error is logged and shown as the step's message
  // followed by the error's text, and the apply goes on.
  void Step(const char* failure, const std::function<void()>& work);
  std::string SummaryText(int entry) const;
  int Selected() const;

  NetworkModel model_;
  std::unique_ptr<HostCtl::Network::NetworkInfo> networkInfo_;
  std::unique_ptr<HostCtl::Network::NukNic> nic_;
  std::vector<std::unique_ptr<LabelItem>> entries_;
};

}  // namespace Konu
