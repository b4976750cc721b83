#pragma once
// Opening shared libraries and finding c4d_main (dlopen / LoadLibraryA).
#include <string>

#include "host_api/c4d.h"

namespace tvr::plr::embedded {

// Null on failure, with the system's reason in error.
void* openLibrary(const std::string& path, std::string& error);
C4DMainFunction findEntry(void* library);
void closeLibrary(void* library);

}  // namespace tvr::plr::embedded
