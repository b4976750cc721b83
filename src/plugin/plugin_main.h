// Start, end and messages of the module, and the two hooks it installs into
// the host's table.
#pragma once

#include <cstdint>

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

bool PluginStart();
void PluginEnd();
bool PluginMessage(std::int32_t id, void* data);

void PluginCrashHandler(char* info);
LONG AddUndoHook(BaseDocument* doc, void* element, LONG type);

}  // namespace tvr::plr::adaptor::cinema4d

// The host's entry point. Exported from the module; declared here so that a
// test can link the module's code directly.
C4D_MAIN_EXPORT LONG c4d_main(LONG action, void* p1, void* p2, void* p3);
