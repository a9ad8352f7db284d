// Where the programs under test are: beside the test executables' own folder, found at run
// time so that a test object does not depend on the checkout it was built in.
#pragma once

#include <limits.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace KonuTest {

// The build folder: the parent of the folder holding this test executable.
inline const std::string& BuildDir() {
  static const std::string dir = [] {
    char self[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    if (n <= 0) throw std::runtime_error("cannot read /proc/self/exe");
    std::string path(self, static_cast<size_t>(n));
    path.erase(path.rfind('/'));  // the test's folder
    path.erase(path.rfind('/'));  // the build folder
    return path;
  }();
  return dir;
}

inline const std::string& KonuBin() {
  static const std::string path = BuildDir() + "/konu";
  return path;
}

inline const std::string& HostSimBin() {
  static const std::string path = BuildDir() + "/konu-hostsim";
  return path;
}

}  // namespace KonuTest

#define KONU_BIN (::KonuTest::KonuBin())
#define KONU_HOSTSIM_BIN (::KonuTest::HostSimBin())
