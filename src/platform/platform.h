// The operating-system calls the module makes, behind one small interface.
// win32.cpp forwards each operation to the Win32 function of the same name;
// posix.cpp emulates them in-process. Tests may install their own platform.
#pragma once

#include <cstddef>
#include <cstdint>

// Windows: linked statically into each program and into the module, so nothing is
// exported. Elsewhere: the one shared library whose state every binary shares.
#if defined(_WIN32)
#define PLR_PLATFORM_EXPORT
#else
#define PLR_PLATFORM_EXPORT __attribute__((visibility("default")))
#endif

namespace tvr::platform {

using KeyHandle = void*;     // HKEY
using ModuleHandle = void*;  // HMODULE / HINSTANCE
using WindowHandle = void*;  // HWND
using LocalHandle = void*;   // HLOCAL
using WindowProc = std::intptr_t (*)(WindowHandle, std::uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam);

// The predefined root key HKEY_LOCAL_MACHINE, with its Win32 value.
inline KeyHandle const HKeyLocalMachine = reinterpret_cast<KeyHandle>(static_cast<std::uintptr_t>(0x80000002u));
constexpr std::uint32_t KeyRead = 0x20019;                         // KEY_READ
constexpr std::uint32_t WmTimer = 275;                             // WM_TIMER
constexpr std::uint32_t MbOk = 0;                                  // MB_OK
constexpr std::uint32_t FormatMessageAllocateFromSystem = 0x1100;  // ALLOCATE_BUFFER | FROM_SYSTEM
constexpr std::uint32_t LangNeutralDefault = 0x400;
constexpr std::uint32_t LmemZeroInit = 0x40;  // LMEM_ZEROINIT
constexpr long ErrorSuccess = 0;

class Platform {
public:
    virtual ~Platform() = default;

    // Registry (RegOpenKeyExA, RegQueryValueExA, RegCloseKey); results are Win32 error codes.
    virtual long regOpenKeyEx(KeyHandle root, const char* subKey, std::uint32_t options, std::uint32_t access,
                              KeyHandle* result) = 0;
    virtual long regQueryValueEx(KeyHandle key, const char* valueName, std::uint32_t* type, unsigned char* data,
                                 std::uint32_t* size) = 0;
    virtual long regCloseKey(KeyHandle key) = 0;

    // Dynamic libraries.
    virtual bool setDllDirectory(const char* path) = 0;  // null restores the default search order
    virtual ModuleHandle loadLibrary(const char* path) = 0;
    virtual void* getProcAddress(ModuleHandle module, const char* name) = 0;
    virtual bool freeLibrary(ModuleHandle module) = 0;
    virtual ModuleHandle getModuleHandle(const char* name) = 0;  // null: the host program

    // The hidden run-loop window and its timer.
    virtual std::uint16_t registerClass(const char* className, WindowProc proc) = 0;  // 0 on failure
    virtual bool unregisterClass(const char* className, ModuleHandle instance) = 0;
    virtual WindowHandle createWindowEx(std::uint32_t exStyle, const char* className, const char* title,
                                        std::uint32_t style, int x, int y, int width, int height, WindowHandle parent,
                                        void* menu, ModuleHandle instance, void* param) = 0;
    virtual bool destroyWindow(WindowHandle window) = 0;
    virtual std::uintptr_t setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs,
                                    void* timerProc) = 0;
    virtual std::intptr_t defWindowProc(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam,
                                        std::intptr_t lParam) = 0;

    // User-visible errors.
    virtual int messageBox(WindowHandle owner, const char* text, const char* caption, std::uint32_t type) = 0;
    virtual std::uint32_t getLastError() = 0;
    // FormatMessageA with FORMAT_MESSAGE_ALLOCATE_BUFFER: *buffer receives a LocalAlloc'ed text.
    virtual std::uint32_t formatMessage(std::uint32_t flags, const void* source, std::uint32_t messageId,
                                        std::uint32_t languageId, char** buffer, std::uint32_t size) = 0;
    virtual LocalHandle localAlloc(std::uint32_t flags, std::size_t bytes) = 0;
    virtual std::size_t localSize(LocalHandle memory) = 0;
    virtual LocalHandle localFree(LocalHandle memory) = 0;
};

// The platform in force: the one installed by setPlatform, else the system's own.
PLR_PLATFORM_EXPORT Platform& platform();
// Installs a platform (tests, hostsim); null restores the system's own. Not owned.
PLR_PLATFORM_EXPORT void setPlatform(Platform* p);
// The system's own: Win32 on Windows, the in-process emulation elsewhere. Lives until the process ends.
PLR_PLATFORM_EXPORT Platform& systemPlatform();
// The dynamic loader's own words for the latest failed loadLibrary of the emulation ("" on Windows).
PLR_PLATFORM_EXPORT const char* lastLoaderDiagnostic();

}  // namespace tvr::platform
