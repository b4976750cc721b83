#include "embedded_host/runtime/module_loader.h"

#include <cstring>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace tvr::plr::embedded {

void* openLibrary(const std::string& path, std::string& error) {
#if defined(_WIN32)
  HMODULE h = LoadLibraryA(path.c_str());
  if (!h) error = "LoadLibrary failed with error " + std::to_string(GetLastError());
  return reinterpret_cast<void*>(h);
#else
  void* h = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!h) {
    const char* why = dlerror();
    error = why ? why : "dlopen failed";
  }
  return h;
#endif
}

C4DMainFunction findEntry(void* library) {
  if (!library) return nullptr;
#if defined(_WIN32)
  FARPROC p = GetProcAddress(reinterpret_cast<HMODULE>(library), "c4d_main");
  C4DMainFunction f = nullptr;
  static_assert(sizeof(p) == sizeof(f), "function pointer sizes differ");
  std::memcpy(&f, &p, sizeof f);
  return f;
#else
  void* p = dlsym(library, "c4d_main");
  C4DMainFunction f = nullptr;
  static_assert(sizeof(p) == sizeof(f), "function pointer sizes differ");
  std::memcpy(&f, &p, sizeof f);
  return f;
#endif
}

void closeLibrary(void* library) {
  if (!library) return;
#if defined(_WIN32)
  FreeLibrary(reinterpret_cast<HMODULE>(library));
#else
  dlclose(library);
#endif
}

}  // namespace tvr::plr::embedded
