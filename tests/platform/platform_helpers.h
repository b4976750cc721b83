// Helpers shared by the platform tests.
#pragma once

#include <cstdint>
#include <string>

#include "platform/platform.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif

namespace tvr::platform::test {

// The test library as a Windows-style path (backslashes), the way the module names files.
inline std::string testLibraryPath() {
#if defined(_WIN32)
    char exe[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, exe, MAX_PATH);
    std::string dir(exe);
    return dir.substr(0, dir.find_last_of("\\/")) + "\\" + PLR_TEST_LIBRARY_NAME;
#else
    std::string p = PLR_TEST_LIBRARY_FILE;
    for (char& c : p)
        if (c == '/') c = '\\';
    return p;
#endif
}

// Counts the timer messages each test window procedure receives.
struct TimerLog {
    static inline int timers = 0;
    static inline std::uintptr_t lastId = 0;
    static inline void* lastWindow = nullptr;
    static void reset() { timers = 0; lastId = 0; lastWindow = nullptr; }
    // Real windows need the default handling of their creation messages.
    static std::intptr_t proc(void* window, std::uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) {
        if (msg == WmTimer) { ++timers; lastId = wParam; lastWindow = window; }
        return systemPlatform().defWindowProc(window, msg, wParam, lParam);
    }
};

// A window of a new class with timer 1 every 40 ms; null if any step fails.
inline WindowHandle timerWindow(const char* className, WindowProc proc) {
    Platform& p = systemPlatform();
    if (!p.registerClass(className, proc)) return nullptr;
    WindowHandle w = p.createWindowEx(0, className, "", 0, 0, 0, 0, 0, nullptr, nullptr, p.getModuleHandle(nullptr),
                                      nullptr);
    return w && p.setTimer(w, 1, 40, nullptr) == 1u ? w : nullptr;
}

}  // namespace tvr::platform::test
