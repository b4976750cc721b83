#include "platform/emulated_platform.h"

#include <cctype>
#include <utility>

#include "platform/error_codes.h"
#include "platform/system_messages.h"

namespace tvr::platform {
namespace {

std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

}  // namespace

EmulatedPlatform::EmulatedPlatform(RegistrySource registry, std::unique_ptr<LibraryLoader> loader,
                                   MessageBoxHandler boxes)
    : registry_(std::move(registry)), loader_(std::move(loader)), boxes_(std::move(boxes)) {}

std::uint32_t EmulatedPlatform::getLastError() { return lastError_; }

ModuleHandle EmulatedPlatform::hostModule() {
    // The classic image base of a Windows program: fixed, non-null, never a loader handle.
    return reinterpret_cast<ModuleHandle>(static_cast<std::uintptr_t>(0x400000));
}

bool EmulatedPlatform::keyPath(KeyHandle key, std::string& path) const {
    std::string root = rootKeyName(key);
    if (!root.empty()) {
        path = root;
        return true;
    }
    auto it = keys_.find(reinterpret_cast<std::uintptr_t>(key));
    if (it == keys_.end()) return false;
    path = it->second.path;
    return true;
}

long EmulatedPlatform::regOpenKeyEx(KeyHandle root, const char* subKey, std::uint32_t, std::uint32_t,
                                    KeyHandle* result) {
    if (!result) return static_cast<long>(ErrorInvalidParameter);
    std::string path;
    if (!keyPath(root, path)) return static_cast<long>(ErrorInvalidHandle);
    bool isRoot = !rootKeyName(root).empty() && (!subKey || !*subKey);
    if (subKey && *subKey) path += std::string("\\") + subKey;
    RegistryData data = registry_ ? registry_() : RegistryData{};
    if (!isRoot && !data.hasKey(path)) return static_cast<long>(ErrorFileNotFound);
    std::uintptr_t handle = nextKey_;
    nextKey_ += 4;
    keys_[handle] = OpenKey{path, data.values(path)};
    *result = reinterpret_cast<KeyHandle>(handle);
    return ErrorSuccess;
}

long EmulatedPlatform::regQueryValueEx(KeyHandle key, const char* valueName, std::uint32_t* type, unsigned char* data,
                                       std::uint32_t* size) {
    RegistryData::Values rootValues;
    const RegistryData::Values* values = nullptr;
    auto it = keys_.find(reinterpret_cast<std::uintptr_t>(key));
    if (it != keys_.end()) {
        values = &it->second.values;
    } else if (!rootKeyName(key).empty()) {
        rootValues = registry_ ? registry_().values(rootKeyName(key)) : RegistryData::Values{};
        values = &rootValues;
    } else {
        return static_cast<long>(ErrorInvalidHandle);
    }
    auto v = values->find(lower(valueName ? valueName : ""));
    return queryRegistryValue(v == values->end() ? nullptr : &v->second, type, data, size);
}

long EmulatedPlatform::regCloseKey(KeyHandle key) {
    if (keys_.erase(reinterpret_cast<std::uintptr_t>(key)) || !rootKeyName(key).empty()) return ErrorSuccess;
    return static_cast<long>(ErrorInvalidHandle);
}

bool EmulatedPlatform::setDllDirectory(const char* path) {
    dllDirectory_ = path ? path : "";
    return true;
}

ModuleHandle EmulatedPlatform::loadLibrary(const char* path) {
    std::uint32_t error = 0;
    if (!path || !*path) {
        lastError_ = ErrorInvalidParameter;
        return nullptr;
    }
    ModuleHandle m = loader_->load(path, dllDirectory_, error);
    if (!m) lastError_ = error;
    return m;
}

void* EmulatedPlatform::getProcAddress(ModuleHandle module, const char* name) {
    if (!name) {
        lastError_ = ErrorInvalidParameter;
        return nullptr;
    }
    std::uint32_t error = ErrorProcNotFound;
    void* p = module == hostModule() ? loader_->hostSymbol(name) : loader_->symbol(module, name, error);
    if (!p) lastError_ = error;
    return p;
}

bool EmulatedPlatform::freeLibrary(ModuleHandle module) {
    std::uint32_t error = 0;
    if (module == hostModule()) return true;  // the program itself stays
    bool ok = loader_->release(module, error);
    if (!ok) lastError_ = error;
    return ok;
}

ModuleHandle EmulatedPlatform::getModuleHandle(const char* name) {
    if (!name) return hostModule();
    std::uint32_t error = ErrorModNotFound;
    ModuleHandle m = loader_->find(name, error);
    if (!m) lastError_ = error;
    return m;
}

std::uint16_t EmulatedPlatform::registerClass(const char* className, WindowProc proc) {
    std::uint32_t error = 0;
    std::uint16_t atom = windows_.registerClass(className, proc, error);
    if (!atom) lastError_ = error;
    return atom;
}

bool EmulatedPlatform::unregisterClass(const char* className, ModuleHandle) {
    std::uint32_t error = 0;
    bool ok = windows_.unregisterClass(className, error);
    if (!ok) lastError_ = error;
    return ok;
}

WindowHandle EmulatedPlatform::createWindowEx(std::uint32_t, const char* className, const char*, std::uint32_t, int,
                                              int, int, int, WindowHandle, void*, ModuleHandle, void*) {
    std::uint32_t error = 0;
    WindowHandle w = windows_.createWindow(className, error);
    if (!w) lastError_ = error;
    return w;
}

bool EmulatedPlatform::destroyWindow(WindowHandle window) {
    std::uint32_t error = 0;
    bool ok = windows_.destroyWindow(window, error);
    if (!ok) lastError_ = error;
    return ok;
}

std::uintptr_t EmulatedPlatform::setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs,
                                          void* timerProc) {
    std::uint32_t error = 0;
    std::uintptr_t r = windows_.setTimer(window, id, elapseMs, timerProc, error);
    if (!r) lastError_ = error;
    return r;
}

std::intptr_t EmulatedPlatform::defWindowProc(WindowHandle, std::uint32_t, std::uintptr_t, std::intptr_t) { return 0; }

int EmulatedPlatform::messageBox(WindowHandle, const char* text, const char* caption, std::uint32_t type) {
    // A null caption shows as "Error", as on Windows.
    return boxes_ ? boxes_(text ? text : "", caption ? caption : "Error", type) : IdOk;
}

std::uint32_t EmulatedPlatform::formatMessage(std::uint32_t flags, const void*, std::uint32_t messageId, std::uint32_t,
                                              char** buffer, std::uint32_t size) {
    std::uint32_t error = 0;
    std::uint32_t n = formatSystemMessage(flags, messageId, buffer, size, memory_, error);
    if (!n) lastError_ = error;
    return n;
}

LocalHandle EmulatedPlatform::localAlloc(std::uint32_t, std::size_t bytes) {
    std::uint32_t error = 0;
    void* block = memory_.alloc(bytes, error);
    if (!block) lastError_ = error;
    return block;
}

std::size_t EmulatedPlatform::localSize(LocalHandle block) {
    std::uint32_t error = 0;
    std::size_t n = memory_.size(block, error);
    if (error) lastError_ = error;
    return n;
}

LocalHandle EmulatedPlatform::localFree(LocalHandle block) {
    std::uint32_t error = 0;
    LocalHandle r = memory_.free(block, error);
    if (r) lastError_ = error;
    return r;
}

}  // namespace tvr::platform
