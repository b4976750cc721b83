// The system's platform with the registry read from a REGEDIT4 file instead:
// how hostsim takes --registry on Windows, where the system registry is real.
#pragma once

#include <map>
#include <string>

#include "platform.h"

namespace hostsim {

class RegistryFilePlatform : public tvr::platform::Platform {
public:
    // String values by upper-case key path ("HKEY_LOCAL_MACHINE\SOFTWARE\...") and lower-case name.
    using Keys = std::map<std::string, std::map<std::string, std::string>>;

    RegistryFilePlatform(tvr::platform::Platform& system, Keys keys) : system_(system), keys_(std::move(keys)) {}

    // Reads the string values of a REGEDIT4 text; other lines are skipped.
    static Keys parse(const std::string& text);

    long regOpenKeyEx(tvr::platform::KeyHandle root, const char* subKey, std::uint32_t options, std::uint32_t access,
                      tvr::platform::KeyHandle* result) override;
    long regQueryValueEx(tvr::platform::KeyHandle key, const char* valueName, std::uint32_t* type,
                         unsigned char* data, std::uint32_t* size) override;
    long regCloseKey(tvr::platform::KeyHandle key) override;

    bool setDllDirectory(const char* path) override { return system_.setDllDirectory(path); }
    tvr::platform::ModuleHandle loadLibrary(const char* path) override { return system_.loadLibrary(path); }
    void* getProcAddress(tvr::platform::ModuleHandle m, const char* name) override {
        return system_.getProcAddress(m, name);
    }
    bool freeLibrary(tvr::platform::ModuleHandle m) override { return system_.freeLibrary(m); }
    tvr::platform::ModuleHandle getModuleHandle(const char* name) override { return system_.getModuleHandle(name); }
    std::uint16_t registerClass(const char* name, tvr::platform::WindowProc proc) override {
        return system_.registerClass(name, proc);
    }
    bool unregisterClass(const char* name, tvr::platform::ModuleHandle instance) override {
        return system_.unregisterClass(name, instance);
    }
    tvr::platform::WindowHandle createWindowEx(std::uint32_t exStyle, const char* className, const char* title,
                                               std::uint32_t style, int x, int y, int w, int h,
                                               tvr::platform::WindowHandle parent, void* menu,
                                               tvr::platform::ModuleHandle instance, void* param) override {
        return system_.createWindowEx(exStyle, className, title, style, x, y, w, h, parent, menu, instance, param);
    }
    bool destroyWindow(tvr::platform::WindowHandle w) override { return system_.destroyWindow(w); }
    std::uintptr_t setTimer(tvr::platform::WindowHandle w, std::uintptr_t id, std::uint32_t ms, void* proc) override {
        return system_.setTimer(w, id, ms, proc);
    }
    std::intptr_t defWindowProc(tvr::platform::WindowHandle w, std::uint32_t msg, std::uintptr_t wp,
                                std::intptr_t lp) override {
        return system_.defWindowProc(w, msg, wp, lp);
    }
    int messageBox(tvr::platform::WindowHandle owner, const char* text, const char* caption,
                   std::uint32_t type) override {
        return system_.messageBox(owner, text, caption, type);
    }
    std::uint32_t getLastError() override { return system_.getLastError(); }
    std::uint32_t formatMessage(std::uint32_t flags, const void* source, std::uint32_t id, std::uint32_t language,
                                char** buffer, std::uint32_t size) override {
        return system_.formatMessage(flags, source, id, language, buffer, size);
    }
    tvr::platform::LocalHandle localAlloc(std::uint32_t flags, std::size_t bytes) override {
        return system_.localAlloc(flags, bytes);
    }
    std::size_t localSize(tvr::platform::LocalHandle m) override { return system_.localSize(m); }
    tvr::platform::LocalHandle localFree(tvr::platform::LocalHandle m) override { return system_.localFree(m); }

private:
    tvr::platform::Platform& system_;
    Keys keys_;
    std::map<int, std::string> handles_;
    int nextHandle_ = 1;
};

}  // namespace hostsim
