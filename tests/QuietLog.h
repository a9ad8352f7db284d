// The log sink every test process starts with: it keeps nothing, so that no test writes to
// the syslog of the machine it runs on. A test that checks log lines installs its own sink
// and puts this one back with UseQuietLog().
#pragma once

namespace KonuTest {

void UseQuietLog();

}  // namespace KonuTest
