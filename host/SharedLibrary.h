// SharedLibrary: a library loaded at run time (dlopen) for the object's lifetime, and its
// functions by name. Libraries that only some paths need are loaded this way, at their first
// use, so that they cost a start of the console nothing.
#pragma once

#include <dlfcn.h>

#include <string>

namespace Konu {

class SharedLibrary {
 public:
  explicit SharedLibrary(const std::string& name) : handle_(dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_) {
      const char* why = dlerror();
      error_ = why ? why : name + ": cannot be loaded";
    }
  }
  ~SharedLibrary() {
    if (handle_) dlclose(handle_);
  }
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  bool Loaded() const { return handle_ != nullptr; }
  // dlerror's text when the library could not be loaded.
  const std::string& Error() const { return error_; }
  // The function `name` as type F, or null when the library or the function is missing.
  template <typename F>
  F Get(const char* name) const {
    return handle_ ? reinterpret_cast<F>(dlsym(handle_, name)) : nullptr;
  }

 private:
  void* handle_;
  std::string error_;
};

}  // namespace Konu
