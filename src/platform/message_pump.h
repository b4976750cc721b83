// Delivers the timer messages of the hidden windows; the host's event loop calls it every cycle.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace tvr::platform {

// Windows: dispatches every queued message of the thread (PeekMessageA / TranslateMessage /
// DispatchMessageA). Everywhere: sends one WM_TIMER per due timer of every emulated window,
// which is next due one period after nowMs (late timers coalesce, as on Windows).
PLR_PLATFORM_EXPORT void pumpMessages(std::uint64_t nowMs);

}  // namespace tvr::platform
