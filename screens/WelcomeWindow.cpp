// WelcomeWindow: the two layouts, the facts they show and the key loop.
#include "screens/WelcomeWindow.h"

#include <curses.h>
#include <syslog.h>

#include <algorithm>

#include "app/Runtime.h"
#include "host/Host.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "screens/WelcomeFacts.h"
#include "screens/WelcomeHostFacts.h"
#include "ui/Markup.h"
#include "ui/strings/StringFactory.h"

namespace Konu {
namespace {

constexpr uint32_t kProductLineId = 2;
constexpr uint32_t kCustomizeKeyId = 0;  // "Customize System/View Logs"
constexpr uint32_t kShutdownKeyId = 1;   // "Shut Down/Restart"

// Colours (background, foreground) of the two halves.
constexpr int kUpperBackground = 6;
constexpr int kLowerBackground = 3;
constexpr int kHalfForeground = 7;
constexpr int kWarningForeground = 6;
constexpr int kInherit = -1;
constexpr int kTextColumn = 8;
constexpr int kManagementRow = 1;
// Heading, host name, IPv4 address and five IPv6 addresses (or four and "...").
constexpr int kManagementRows = 8;
constexpr int kWarningRow = 9;
constexpr int kWarningRows = 6;
constexpr int kWarningColumn = 16;
// The longer of the two warnings takes three rows in the warning's own width, two in the
// management text's width.
constexpr int kWarningRowsInOwnWidth = 3;
constexpr int kWarningRowsInWideWidth = 2;
// Rows below the warning: the footer and the bottom of the box.
constexpr int kRowsBelowWarning = 2;
// The lower half never gets fewer rows than it needs for all of that, so on the smallest
// terminals (80x24) the halves meet one row higher.
constexpr int kLowestLowerHalf = kWarningRow + kWarningRowsInWideWidth + kRowsBelowWarning;

// The no-adapter alert goes to the host once in the life of the process.
bool noAdapterAlertRaised = false;

}  // namespace

WelcomeWindow::WelcomeWindow() : Frame(nullptr, 0, 0, COLS, LINES, 0, 7) {
  const HostCtl::Host& host = Runtime::Get().Host();
  dns_ = host.CreateDnsConfig(HostCtl::kDefaultTcpipStack);
  systemInfo_ = host.CreateSystemInfo();
}

WelcomeWindow::~WelcomeWindow() {
  customMessage_.reset();
  DestroyStandardLayout();
}

void WelcomeWindow::Redraw() {
  std::string message;
  try {
    message = systemInfo_->GetWelcomeMessage();
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Could not read the welcome message: %s", e.what());
  }
  if (!message.empty()) {
    DrawCustom(message);
  } else {
    DrawStandard();
  }
}

void WelcomeWindow::DrawCustom(const std::string& message) {
  DestroyStandardLayout();
  ClearFramed();
  Update();
  if (!customMessage_) customMessage_ = std::make_unique<TextArea>(this, 2, 2, COLS - 4, LINES - 4, 7);
  customMessage_->SetText(message);
}

void WelcomeWindow::DrawStandard() {
  customMessage_.reset();
  Clear();
  if (!upper_) BuildStandardLayout();
  DrawBorder();
  footer_->SetText(std::string("<F2> {color:dark-grey}") + GetString(kCustomizeKeyId) + "{/color}" +
                   "{align:right}<F12> {color:dark-grey}" + GetString(kShutdownKeyId) + "{/color}{/align}");
  FillFacts();
  Update();
}

void WelcomeWindow::BuildStandardLayout() {
  const int lowerHeight = std::max((LINES + 1) / 2, kLowestLowerHalf);
  const int upperHeight = LINES - lowerHeight;
  // Blank from the start: the frame beneath was just cleared.
  upper_ = std::make_unique<Window>(this, 0, 0, COLS, upperHeight, kUpperBackground, kHalfForeground,
                                    Window::Start::kBlank);
  lower_ = std::make_unique<Window>(this, 0, upperHeight, COLS, lowerHeight, kLowerBackground,
                                    kHalfForeground, Window::Start::kBlank);
  const int textWidth = COLS - 2 * kTextColumn;
  productLine_ = std::make_unique<TextArea>(upper_.get(), kTextColumn, 5, textWidth, 1, kInherit);
  hardwareLine_ = std::make_unique<TextArea>(upper_.get(), kTextColumn, 7, textWidth, 1, kInherit);
  cpuMemoryLines_ = std::make_unique<TextArea>(upper_.get(), kTextColumn, 9, textWidth, 2, kInherit);
  managementText_ = std::make_unique<TextArea>(lower_.get(), kTextColumn, kManagementRow, textWidth,
                                               kManagementRows, kInherit);
  // Six rows from row 9, cut short where the half is too low to hold them above the
  // footer, so the warning never runs into the key help. Where that leaves too few rows
  // for a whole warning (24 to 26 rows), it takes the management text's wider column.
  const int warningRows = std::clamp(lowerHeight - kRowsBelowWarning - kWarningRow, 0, kWarningRows);
  const bool wide = warningRows < kWarningRowsInOwnWidth;
  const int warningColumn = wide ? kTextColumn : kWarningColumn;
  warning_ = std::make_unique<TextArea>(lower_.get(), warningColumn, kWarningRow, COLS - 2 * warningColumn,
                                        warningRows, kWarningForeground);
  footer_ = std::make_unique<TextArea>(lower_.get(), 2, lowerHeight - 2, COLS - 4, 1, kInherit);
}

void WelcomeWindow::DestroyStandardLayout() {
  footer_.reset();
  warning_.reset();
  managementText_.reset();
  cpuMemoryLines_.reset();
  hardwareLine_.reset();
  productLine_.reset();
  lower_.reset();
  upper_.reset();
}

// One box round the whole screen, drawn in the halves so that each part of it takes the
// colours of its half: the upper half carries the top and its corners, the lower half the
// bottom and its corners.
void WelcomeWindow::DrawBorder() {
  upper_->ClearFramed(OpenSide::kBottom);
  lower_->ClearFramed(OpenSide::kTop);
}

void WelcomeWindow::FillFacts() {
  const StringFactory& strings = *Strings();
  const ManagementFacts facts = ReadManagementFacts(*dns_);
  warning_->SetText(WarningText(facts, ReadAuditMode(), strings));
  managementText_->SetText(ManagementText(facts, strings));
  if (!facts.hasPhysicalNic) RaiseNoAdapterAlert();

  productLine_->SetText(GetString(kProductLineId));
  const HostCtl::Hardware hardware = ReadHardware();
  hardwareLine_->SetText(LiteralMarkup(HardwareLine(hardware.vendor, hardware.product)));
  cpuMemoryLines_->SetText(LiteralMarkup(CpuLine(hardware.cpuPackages, hardware.cpuModel)) + "\n" +
                           MemoryLine(hardware.memoryBytes));
}

void WelcomeWindow::RaiseNoAdapterAlert() {
  if (noAdapterAlertRaised) return;
  noAdapterAlertRaised = true;
  try {
    systemInfo_->SetSystemAlert(kNoAdapterAlert);
  } catch (const HostCtl::Lib::HostCtlException& e) {
    Log(LOG_ERR, "Could not raise the system alert \"%s\": %s", kNoAdapterAlert, e.what());
  }
}

int WelcomeWindow::EventLoop() {
  Redraw();
  for (;;) {
    const int key = GetKey(false);  // nobody is logged in here: no idle time-out
    if (key == KEY_F(2) || key == KEY_F(12)) {
      RunSession(key == KEY_F(2));
    } else if (key == KEY_F(4) && !Runtime::Get().monochrome) {
      Runtime::Get().alternateColors = !Runtime::Get().alternateColors;
      Redraw();
    } else {
      // Any other key repaints the whole screen with the facts read again.
      RepaintAll();
      Redraw();
    }
  }
}

}  // namespace Konu
