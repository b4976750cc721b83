// A Platform carried out in-process: the registry from RegistryData, libraries through a
// loader, windows and timers in a WindowSystem, local memory, the last error and message
// boxes through a handler. posix.cpp builds the system's own from it; the recording
// platform uses one as its fake.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/local_memory.h"
#include "platform/platform.h"
#include "platform/platform_overrides.h"
#include "platform/registry_data.h"
#include "platform/window_system.h"

namespace tvr::platform {

class LibraryLoader {
public:
    virtual ~LibraryLoader() = default;
    // `path` as the caller gave it; `dllDirectory` as SetDllDirectoryA left it ("" for none).
    virtual ModuleHandle load(const std::string& path, const std::string& dllDirectory, std::uint32_t& error) = 0;
    virtual void* symbol(ModuleHandle module, const char* name, std::uint32_t& error) = 0;
    virtual bool release(ModuleHandle module, std::uint32_t& error) = 0;
    virtual ModuleHandle find(const std::string& name, std::uint32_t& error) = 0;
    // A symbol of the host program, or null.
    virtual void* hostSymbol(const char* name) = 0;
};

class PLR_PLATFORM_EXPORT EmulatedPlatform : public Platform {
public:
    using RegistrySource = std::function<RegistryData()>;  // asked at every open
    using MessageBoxHandler = std::function<int(const char* text, const char* caption, std::uint32_t type)>;

    EmulatedPlatform(RegistrySource registry, std::unique_ptr<LibraryLoader> loader, MessageBoxHandler boxes);

    // The handle GetModuleHandleA(null) answers for the host program.
    static ModuleHandle hostModule();

    PLR_PLATFORM_OVERRIDES

    void setLastError(std::uint32_t error) { lastError_ = error; }
    WindowSystem& windows() { return windows_; }
    LocalMemory& memory() { return memory_; }
    const std::string& dllDirectory() const { return dllDirectory_; }
    std::size_t openKeys() const { return keys_.size(); }

private:
    struct OpenKey {
        std::string path;
        RegistryData::Values values;  // as the registry held them when the key was opened
    };
    bool keyPath(KeyHandle key, std::string& path) const;

    RegistrySource registry_;
    std::unique_ptr<LibraryLoader> loader_;
    MessageBoxHandler boxes_;
    std::map<std::uintptr_t, OpenKey> keys_;
    std::uintptr_t nextKey_ = 0x2000;  // never a predefined root
    std::string dllDirectory_;
    WindowSystem windows_;
    LocalMemory memory_;
    std::uint32_t lastError_ = 0;
};

}  // namespace tvr::platform
