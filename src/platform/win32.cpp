// The system platform on Windows: each operation is the Win32 call of the same name with the
// arguments given. Only message boxes pass through the unattended policy first.
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstring>

#include "platform/message_box.h"
#include "platform/platform.h"

namespace tvr::platform {
namespace {

template <typename To, typename From>
To castFunction(From from) {
    static_assert(sizeof(To) == sizeof(From), "function and data pointers differ in size");
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

// Read from the process's own environment rather than the C runtime's copy, so that a host
// that sets it after start (hostsim does) reaches the module's copy of this layer too.
bool unattendedByEnvironment() {
    char v[8] = {};
    const DWORD n = GetEnvironmentVariableA("PLR_UNATTENDED", v, sizeof v);
    return n > 0 && n < sizeof v && std::strcmp(v, "0") != 0;
}

class Win32Platform : public Platform {
public:
    long regOpenKeyEx(KeyHandle root, const char* subKey, std::uint32_t options, std::uint32_t access,
                      KeyHandle* result) override {
        HKEY key = nullptr;
        LONG r = RegOpenKeyExA(static_cast<HKEY>(root), subKey, options, access, result ? &key : nullptr);
        if (result) *result = key;
        return r;
    }

    long regQueryValueEx(KeyHandle key, const char* valueName, std::uint32_t* type, unsigned char* data,
                         std::uint32_t* size) override {
        DWORD t = 0;
        DWORD s = size ? *size : 0;
        LONG r = RegQueryValueExA(static_cast<HKEY>(key), valueName, nullptr, type ? &t : nullptr, data,
                                  size ? &s : nullptr);
        if (type) *type = t;
        if (size) *size = s;
        return r;
    }

    long regCloseKey(KeyHandle key) override { return RegCloseKey(static_cast<HKEY>(key)); }

    bool setDllDirectory(const char* path) override { return SetDllDirectoryA(path) != FALSE; }
    ModuleHandle loadLibrary(const char* path) override { return LoadLibraryA(path); }
    void* getProcAddress(ModuleHandle module, const char* name) override {
        return castFunction<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
    }
    bool freeLibrary(ModuleHandle module) override { return FreeLibrary(static_cast<HMODULE>(module)) != FALSE; }
    ModuleHandle getModuleHandle(const char* name) override { return GetModuleHandleA(name); }

    std::uint16_t registerClass(const char* className, WindowProc proc) override {
        WNDCLASSA wc;
        std::memset(&wc, 0, sizeof wc);
        wc.lpfnWndProc = castFunction<WNDPROC>(proc);
        wc.lpszClassName = className;
        return RegisterClassA(&wc);
    }
    bool unregisterClass(const char* className, ModuleHandle instance) override {
        return UnregisterClassA(className, static_cast<HINSTANCE>(instance)) != FALSE;
    }
    WindowHandle createWindowEx(std::uint32_t exStyle, const char* className, const char* title, std::uint32_t style,
                                int x, int y, int width, int height, WindowHandle parent, void* menu,
                                ModuleHandle instance, void* param) override {
        return CreateWindowExA(exStyle, className, title, style, x, y, width, height, static_cast<HWND>(parent),
                               static_cast<HMENU>(menu), static_cast<HINSTANCE>(instance), param);
    }
    bool destroyWindow(WindowHandle window) override { return DestroyWindow(static_cast<HWND>(window)) != FALSE; }
    std::uintptr_t setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs, void* timerProc) override {
        return SetTimer(static_cast<HWND>(window), id, elapseMs, castFunction<TIMERPROC>(timerProc));
    }
    std::intptr_t defWindowProc(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam,
                                std::intptr_t lParam) override {
        return DefWindowProcA(static_cast<HWND>(window), msg, wParam, lParam);
    }

    int messageBox(WindowHandle owner, const char* text, const char* caption, std::uint32_t type) override {
        if (MessageBoxSink sink = messageBoxSink()) return sink(text, caption, type);
        if (unattendedByEnvironment()) return printMessageBox(text, caption, type);
        return MessageBoxA(static_cast<HWND>(owner), text, caption, type);
    }
    std::uint32_t getLastError() override { return GetLastError(); }
    std::uint32_t formatMessage(std::uint32_t flags, const void* source, std::uint32_t messageId,
                                std::uint32_t languageId, char** buffer, std::uint32_t size) override {
        // With FORMAT_MESSAGE_ALLOCATE_BUFFER the buffer argument is the address of a char pointer.
        return FormatMessageA(flags, source, messageId, languageId, reinterpret_cast<LPSTR>(buffer), size, nullptr);
    }
    LocalHandle localAlloc(std::uint32_t flags, std::size_t bytes) override { return LocalAlloc(flags, bytes); }
    std::size_t localSize(LocalHandle memory) override { return LocalSize(static_cast<HLOCAL>(memory)); }
    LocalHandle localFree(LocalHandle memory) override { return LocalFree(static_cast<HLOCAL>(memory)); }
};

}  // namespace

Platform& systemPlatform() {
    static auto* p = new Win32Platform();
    return *p;
}

const char* lastLoaderDiagnostic() { return ""; }

}  // namespace tvr::platform
