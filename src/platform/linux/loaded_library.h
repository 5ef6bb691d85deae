// The functions of a shared library that is loaded with their first use. For programs without Qt as well.
#pragma once

#include <dlfcn.h>

namespace orlix {

/// Never unloaded: what a library has loaded or registered in its turn need not survive that.
class LoadedLibrary {
  public:
    /// `fileName` as the loader looks for it: a path, or a name with its version.
    explicit LoadedLibrary(const char* fileName) : handle_(dlopen(fileName, RTLD_NOW | RTLD_LOCAL)) {}

    /// Sets `function` to the one of that name, to null when there is none; without a library it stays as it
    /// is.
    template <typename Function>
    void find(const char* name, Function& function) const {
        if (handle_ != nullptr) function = reinterpret_cast<Function>(dlsym(handle_, name));
    }

  private:
    void* handle_;
};

}  // namespace orlix
