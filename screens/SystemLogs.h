// The host's log files that "View System Logs" offers, and viewing one in the pager.
#pragma once

#include <vector>

namespace Konu {

class Frame;

struct SystemLog {
  const char* name;  // as the menu lists it
  const char* path;  // host path
};

// The seven logs in menu order.
const std::vector<SystemLog>& SystemLogTable();

// The logs whose file exists now (stat succeeds), in table order.
std::vector<const SystemLog*> AvailableLogs();

// The available log numbered `number` (from 1, in table order); null for any other number.
const SystemLog* AvailableLogByNumber(int number);

// Hands the terminal to the pager for `log` and, when it ends, gives `screen` the terminal
// back: attributes, keypad, the top frame, and a repaint of every cell.
void ShowLogInPager(Frame& screen, const SystemLog& log);

}  // namespace Konu
