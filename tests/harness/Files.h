// File helpers every kind of test uses: a temporary directory that goes with the object, and
// whole files read and written as text.
#pragma once

#include <ftw.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace KonuTest {

// The whole file, "" when it cannot be read.
inline std::string ReadFileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

inline std::vector<std::string> ReadLines(const std::string& path) {
  std::vector<std::string> lines;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Writes the whole file, making its folders first.
inline void WriteFileText(const std::string& path, const std::string& text, mode_t mode = 0644) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::trunc | std::ios::binary) << text;
  chmod(path.c_str(), mode);
}

// A directory under /tmp, removed with everything in it when the object goes.
class TempDir {
 public:
  TempDir() {
    char pattern[] = "/tmp/konu-test-XXXXXX";
    if (!mkdtemp(pattern)) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
  }
  ~TempDir() {
    nftw(
        path_.c_str(), [](const char* p, const struct stat*, int, struct FTW*) { return remove(p); }, 16,
        FTW_DEPTH | FTW_PHYS);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& Path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace KonuTest
