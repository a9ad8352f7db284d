// Reading the support information pages from the host's support folder.
#include "ops/SupportPages.h"

#include <dirent.h>
#include <sys/stat.h>
#include <syslog.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "host/HostRoot.h"
#include "host/Log.h"

namespace Konu {

std::vector<std::string> ReadSupportPages() {
  const std::string folder = HostPath(kSupportFolder);
  std::vector<std::string> names;
  if (DIR* dir = opendir(folder.c_str())) {
    while (const dirent* entry = readdir(dir)) {
      struct stat info;
      const std::string path = folder + "/" + entry->d_name;
      if (stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode)) names.push_back(entry->d_name);
    }
    closedir(dir);
  } else if (errno != ENOENT) {
    Log(LOG_WARNING, "Cannot read the support information folder %s: %s", kSupportFolder,
        std::strerror(errno));
  }
  std::sort(names.begin(), names.end());

  std::vector<std::string> pages;
  for (const std::string& name : names) {
    std::ifstream in(folder + "/" + name, std::ios::binary);
    std::stringstream text;
    if (in) text << in.rdbuf();
    if (!in || in.bad()) {
      Log(LOG_WARNING, "Cannot read the support information page %s/%s", kSupportFolder, name.c_str());
      continue;
    }
    pages.push_back(text.str());
  }
  return pages;
}

}  // namespace Konu
