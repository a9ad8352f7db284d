// RootWindow: builds the two-pane layout from the screen size at construction.
#include "ui/RootWindow.h"

#include <curses.h>
#include <syslog.h>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/Log.h"
#include "ui/CursesStyle.h"
#include "ui/FormKeys.h"

namespace Konu {

RootWindow::RootWindow(Frame* owner) : Frame(owner, 0, 0, COLS, LINES, 0, 7) {
  const HostCtl::Host& host = Runtime::Get().Host();
  dnsConfig_ = host.CreateDnsConfig(HostCtl::kDefaultTcpipStack);
  routingInfo_ = host.CreateRoutingInfo(HostCtl::kDefaultTcpipStack);
  virtualSwitchInfo_ = host.CreateVirtualSwitchInfo();
  const int half = COLS / 2;
  mainArea_ = std::make_unique<Window>(this, 0, 0, COLS, LINES - 1, 2, 7);
  bottomLine_ = std::make_unique<Window>(this, 0, LINES - 1, COLS, 1, 0, 2);
  leftPane_ = std::make_unique<Window>(mainArea_.get(), 0, 0, half, LINES - 1, 3, 7);
  rightPane_ = std::make_unique<Window>(mainArea_.get(), half, 0, half, LINES - 1, 6, 7);
  menuList_ = std::make_unique<ItemList>(leftPane_.get(), 2, 4, half - 2, LINES - 6);
  menuTitle_ = std::make_unique<TextArea>(leftPane_.get(), 3, 1, half - 6, 1, 0);
  leftFooter_ = std::make_unique<TextArea>(leftPane_.get(), 2, LINES - 3, half - 3, 1, 0);
  informationTitle_ = std::make_unique<TextArea>(rightPane_.get(), 2, 1, half - 6, 1, 7);
  informationText_ = std::make_unique<TextArea>(rightPane_.get(), 2, 4, half - 4, LINES - 6, 2);
  rightFooter_ = std::make_unique<TextArea>(rightPane_.get(), 1, LINES - 3, half - 3, 1, 7);

  if (WINDOW* main = mainArea_->Curses()) {
    DrawFrame(main);
    DrawHorizontalLine(main, 2, 1, mainArea_->Width() - 2);  // under the two titles
  }
  Log(LOG_INFO, "COLS=%d, LINES=%d", COLS, LINES);
}

RootWindow::~RootWindow() = default;

int RootWindow::RunMenu(uint32_t title, const std::function<void(int index)>& act) {
  MenuTitle().SetText(GetString(title));
  MenuList().Draw();
  Refresh();
  for (;;) {
    const int key = GetKey(true);
    if (key == kKeyEsc) return 0;
    if (key == KEY_DOWN) {
      MenuList().Down();
    } else if (key == KEY_UP) {
      MenuList().Up();
    } else if (IsEnterKey(key)) {
      act(MenuList().Focus().FocusedIndex());
      MenuList().Draw();
    } else {
      continue;
    }
    Refresh();
  }
}

}  // namespace Konu
