// The full-screen two-pane menu layout: a menu on the left, an information pane on the
// right, a footer under each and a bottom line.
#pragma once

#include <functional>
#include <memory>

#include "host/DnsConfig.h"
#include "host/RoutingInfo.h"
#include "host/VirtualSwitchInfo.h"
#include "ui/Frame.h"
#include "ui/ItemList.h"
#include "ui/TextArea.h"

namespace Konu {

class RootWindow : public Frame {
 public:
  // Fills the screen as it is now (COLS x LINES).
  explicit RootWindow(Frame* owner);
  ~RootWindow() override;

  // Rebuilds the information pane from the host.
  virtual void Refresh() = 0;

  Window& MainArea() const { return *mainArea_; }
  Window& BottomLine() const { return *bottomLine_; }
  Window& LeftPane() const { return *leftPane_; }
  Window& RightPane() const { return *rightPane_; }
  ItemList& MenuList() const { return *menuList_; }
  TextArea& MenuTitle() const { return *menuTitle_; }
  TextArea& LeftFooter() const { return *leftFooter_; }
  TextArea& InformationTitle() const { return *informationTitle_; }
  TextArea& InformationText() const { return *informationText_; }
  TextArea& RightFooter() const { return *rightFooter_; }

  // The host's objects for the default TCP/IP stack that information panes read; made from
  // the runtime's host when the window is built and kept for its life.
  HostCtl::Network::DnsConfig& DnsConfig() const { return *dnsConfig_; }
  HostCtl::Network::RoutingInfo& RoutingInfo() const { return *routingInfo_; }
  HostCtl::Network::VirtualSwitchInfo& VirtualSwitchInfo() const { return *virtualSwitchInfo_; }

 protected:
  // The key loop of a menu whose entries act on Enter: shows the title, the list and the
  // pane; Down and Up move the selection, Enter calls `act` with the selected index and then
  // redraws the list, Esc returns 0.
  int RunMenu(uint32_t title, const std::function<void(int index)>& act);

 private:
  std::unique_ptr<HostCtl::Network::DnsConfig> dnsConfig_;
  std::unique_ptr<HostCtl::Network::RoutingInfo> routingInfo_;
  std::unique_ptr<HostCtl::Network::VirtualSwitchInfo> virtualSwitchInfo_;
  // Parents before their children, so that children are destroyed first.
  std::unique_ptr<Window> mainArea_;
  std::unique_ptr<Window> bottomLine_;
  std::unique_ptr<Window> leftPane_;
  std::unique_ptr<Window> rightPane_;
  std::unique_ptr<ItemList> menuList_;
  std::unique_ptr<TextArea> menuTitle_;
  std::unique_ptr<TextArea> leftFooter_;
  std::unique_ptr<TextArea> informationTitle_;
  std::unique_ptr<TextArea> informationText_;
  std::unique_ptr<TextArea> rightFooter_;
};

}  // namespace Konu
