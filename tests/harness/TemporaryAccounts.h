// One test account for the machine's real PAM: a temporary /etc with its passwd, group and
// shadow, the distribution's common stacks and the project's /etc/pam.d/konu, to be bound
// over the machine's /etc (or its files) in a private mount namespace.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "tests/harness/SimHost.h"

namespace KonuTest {

class TemporaryAccounts {
 public:
  static constexpr const char* kUser = "konutest";
  static constexpr const char* kPassword = "Right-pass1";

  explicit TemporaryAccounts(const std::string& folder) : etc_(folder + "/etc") {
    namespace fs = std::filesystem;
    fs::create_directories(etc_ + "/pam.d");
    for (const char* file : {"nsswitch.conf", "login.defs", "ld.so.cache", "ld.so.conf"})
      if (fs::exists(std::string("/etc/") + file))
        fs::copy_file(std::string("/etc/") + file, etc_ + "/" + file);
    if (fs::exists("/etc/ld.so.conf.d"))
      fs::copy("/etc/ld.so.conf.d", etc_ + "/ld.so.conf.d", fs::copy_options::recursive);
    if (fs::exists("/etc/security"))
      fs::copy("/etc/security", etc_ + "/security", fs::copy_options::recursive);
    for (const auto& entry : fs::directory_iterator("/etc/pam.d")) {
      std::string name = entry.path().filename();
      if (name.rfind("common-", 0) == 0 || name == "other")
        fs::copy_file(entry.path(), etc_ + "/pam.d/" + name);
    }
    fs::copy_file(BuildDir() + "/packaging/konu.pam", etc_ + "/pam.d/konu");
    std::ofstream(etc_ + "/passwd") << "root:x:0:0:root:/root:/bin/sh\n"
                                    << kUser << ":x:4242:4242:KONU test:/nonexistent:/usr/sbin/nologin\n";
    std::ofstream(etc_ + "/group") << "root:x:0:\n" << kUser << ":x:4242:\n";
    CommandResult hash =
        RunCommandLine({"openssl", "passwd", "-6", "-salt", "konusalt", kPassword}, {"PATH=/usr/bin:/bin"});
    if (hash.exitCode != 0 || hash.out.empty())
      throw std::runtime_error("openssl passwd failed: " + hash.err);
    hash.out.pop_back();
    SetShadow(hash.out, "19000");
  }

  const std::string& Etc() const { return etc_; }

  // The user's shadow line: `hash`, the day of the last change ("0": must change now), the
  // days a password lasts and the day the account expires ("": never).
  void SetShadow(const std::string& hash, const std::string& lastChange, const std::string& maxDays = "99999",
                 const std::string& expires = "") {
    std::ofstream(etc_ + "/shadow") << "root:*:19000:0:99999:7:::\n"
                                    << kUser << ":" << hash << ":" << lastChange << ":0:" << maxDays
                                    << ":7::" << expires << ":\n";
    chmod((etc_ + "/shadow").c_str(), 0640);
  }

 private:
  std::string etc_;
};

}  // namespace KonuTest
