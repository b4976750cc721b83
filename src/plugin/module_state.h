// Module-wide state of the entry point and its hooks. The host's table itself
// is C4DOS() of the host API layer.
#pragma once

#include <cstdint>

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

using CrashHandler = void (*)(char* info);
using AddUndoFunction = LONG (*)(BaseDocument* doc, void* element, LONG type);

struct ModuleState {
    std::int32_t initCount = 0;
    Filename* pluginPath = nullptr;
    CrashHandler previousCrashHandler = nullptr;
    AddUndoFunction previousAddUndo = nullptr;
    // Set by the scene node while it records its own delete and new steps.
    std::int32_t ownUndoInProgress = 0;
};

// Plain data with constant initialisation: it exists before the host's first call.
ModuleState& moduleState();

}  // namespace tvr::plr::adaptor::cinema4d
