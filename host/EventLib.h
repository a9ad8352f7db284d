// The host's event (observation) service: one init / add / close round per event.
#pragma once

#include <string>

namespace HostCtl {

class EventLib {
 public:
  virtual ~EventLib() = default;
  EventLib() = default;
  EventLib(const EventLib&) = delete;
  EventLib& operator=(const EventLib&) = delete;

  // 0 when the service is ready, else an error code.
  virtual int ZebUserLib_Init() = 0;
  // Posts one finished message ("@&!*@*@(zeb.user.konu.reboot.host)Rebooting host").
  // Answers 0 on success.
  virtual int ZebUserLib_AddZeb(const std::string& message) = 0;
  virtual void ZebUserLib_Close() = 0;
};

}  // namespace HostCtl
