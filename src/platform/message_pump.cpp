#include "platform/message_pump.h"

#include "platform/window_system.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif

namespace tvr::platform {

void pumpMessages(std::uint64_t nowMs) {
#if defined(_WIN32)
    // Bounded, so that a procedure that keeps posting cannot hold the host's loop.
    MSG msg;
    for (int i = 0; i < 10000 && PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE); ++i) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
#endif
    WindowSystem::pumpAll(nowMs);
}

}  // namespace tvr::platform
