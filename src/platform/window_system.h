// Emulated window classes, windows and timers. Every instance alive takes part in
// pumpMessages, which is how the host's event loop delivers timer messages to them.
// Main thread only, like the windows it stands for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "platform/platform.h"

namespace tvr::platform {

class PLR_PLATFORM_EXPORT WindowSystem {
public:
    WindowSystem();
    ~WindowSystem();
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;

    // Results and failures as in Win32; `error` receives the error number of a failure.
    std::uint16_t registerClass(const char* className, WindowProc proc, std::uint32_t& error);
    bool unregisterClass(const char* className, std::uint32_t& error);
    WindowHandle createWindow(const char* className, std::uint32_t& error);
    bool destroyWindow(WindowHandle window, std::uint32_t& error);  // its timers go with it
    std::uintptr_t setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs, void* timerProc,
                            std::uint32_t& error);

    // One WM_TIMER per due timer; the timer is next due one period after nowMs.
    void pump(std::uint64_t nowMs);
    // Calls the window's procedure at once; 0 for an unknown window.
    // Windows outlive the library that registered their class when it is
    // unloaded without destroying them (a module unloaded while the host keeps
    // pumping); their procedures are then no longer called, as nothing is left
    // to call.
    std::intptr_t send(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam);

    std::size_t windowCount() const { return windows_.size(); }
    std::size_t timerCount() const;

    // Every live instance, for pumpMessages.
    static void pumpAll(std::uint64_t nowMs);

private:
    struct Timer {
        std::uint32_t periodMs = 0;
        std::uint64_t dueMs = 0;
        void* timerProc = nullptr;
    };
    // Where a window procedure's code lives, so that a procedure of a library
    // unloaded since is never called.
    struct CodeOwner {
        const void* base = nullptr;
        std::string file;
    };
    struct Window {
        std::string classKey;
        WindowProc proc = nullptr;
        CodeOwner owner;
        std::map<std::uintptr_t, Timer> timers;
    };
    struct WindowClass {
        WindowProc proc = nullptr;
        CodeOwner owner;
        std::uint16_t atom = 0;
    };

    static CodeOwner ownerOf(WindowProc proc);
    // Calls the procedure unless its library has gone; 0 then.
    static std::intptr_t dispatch(const Window& window, WindowHandle handle, std::uint32_t msg, std::uintptr_t wParam,
                                  std::intptr_t lParam);

    std::map<std::string, WindowClass>::iterator findClass(const char* className);

    std::map<std::string, WindowClass> classes_;  // by lower-case name
    std::map<std::uintptr_t, Window> windows_;    // by handle, in order of creation
    std::uint16_t nextAtom_ = 0xC000;
    std::uintptr_t nextWindow_ = 0x10010;
    std::uint64_t nowMs_ = 0;  // the time of the latest pump
};

}  // namespace tvr::platform
