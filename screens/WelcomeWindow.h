// The welcome screen: what the host is and how to reach it, F2 to log in and customise the
// system, F12 to log in and shut down. It also holds the console session around the login.
#pragma once

#include <memory>
#include <string>

#include "host/DnsConfig.h"
#include "host/SystemInfo.h"
#include "ui/Frame.h"
#include "ui/TextArea.h"

namespace Konu {

class WelcomeWindow : public Frame {
 public:
  // Full screen, no owner. Makes the host objects it reads (DNS configuration of
  // "defaultTcpipStack", system information); a host-control failure there goes on to the
  // caller.
  WelcomeWindow();
  ~WelcomeWindow() override;

  // Draws the custom welcome message, or the standard layout with every fact read afresh.
  // (Hides Window::Redraw, which only marks rows for repainting.)
  void Redraw();

  // The key loop; never returns (the process ends inside it).
  int EventLoop() override;

 private:
  void DrawCustom(const std::string& message);
  void DrawStandard();
  void BuildStandardLayout();
  void DrawBorder();
  void DestroyStandardLayout();
  void FillFacts();
  void RaiseNoAdapterAlert();

  // F2 (customize) or F12: the login dialog and what a successful login leads to, then the
  // end of the session and the deferred exit.
  void RunSession(bool customize);
  void RunCustomization();
  void RunShutdown();

  std::unique_ptr<HostCtl::Network::DnsConfig> dns_;
  std::unique_ptr<HostCtl::SystemInfo> systemInfo_;

  // Standard layout; the halves first, so the areas inside them are destroyed before them.
  std::unique_ptr<Window> upper_;
  std::unique_ptr<Window> lower_;
  std::unique_ptr<TextArea> productLine_;
  std::unique_ptr<TextArea> hardwareLine_;
  std::unique_ptr<TextArea> cpuMemoryLines_;
  std::unique_ptr<TextArea> managementText_;
  std::unique_ptr<TextArea> warning_;
  std::unique_ptr<TextArea> footer_;

  // Custom layout.
  std::unique_ptr<TextArea> customMessage_;
};

}  // namespace Konu
