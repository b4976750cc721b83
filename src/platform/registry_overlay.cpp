#include "platform/registry_overlay.h"

#include "platform/emulated_platform.h"
#include "platform/registry_data.h"

namespace tvr::platform {

std::unique_ptr<RegistryOverlayPlatform> RegistryOverlayPlatform::fromText(Platform& target,
                                                                           const std::string& regedit4) {
    RegistryData data;
    if (!data.parse(regedit4)) return nullptr;
    // The emulation's registry rules, with a fixed registry and no libraries of its own.
    auto registry = std::make_unique<EmulatedPlatform>([data] { return data; }, nullptr, nullptr);
    return std::unique_ptr<RegistryOverlayPlatform>(new RegistryOverlayPlatform(target, std::move(registry)));
}

RegistryOverlayPlatform::RegistryOverlayPlatform(Platform& target, std::unique_ptr<EmulatedPlatform> registry)
    : target_(target), registry_(std::move(registry)) {}

RegistryOverlayPlatform::~RegistryOverlayPlatform() = default;

long RegistryOverlayPlatform::regOpenKeyEx(KeyHandle root, const char* subKey, std::uint32_t options,
                                           std::uint32_t access, KeyHandle* result) {
    return registry_->regOpenKeyEx(root, subKey, options, access, result);
}
long RegistryOverlayPlatform::regQueryValueEx(KeyHandle key, const char* valueName, std::uint32_t* type,
                                              unsigned char* data, std::uint32_t* size) {
    return registry_->regQueryValueEx(key, valueName, type, data, size);
}
long RegistryOverlayPlatform::regCloseKey(KeyHandle key) { return registry_->regCloseKey(key); }

bool RegistryOverlayPlatform::setDllDirectory(const char* path) { return target_.setDllDirectory(path); }
ModuleHandle RegistryOverlayPlatform::loadLibrary(const char* path) { return target_.loadLibrary(path); }
void* RegistryOverlayPlatform::getProcAddress(ModuleHandle module, const char* name) {
    return target_.getProcAddress(module, name);
}
bool RegistryOverlayPlatform::freeLibrary(ModuleHandle module) { return target_.freeLibrary(module); }
ModuleHandle RegistryOverlayPlatform::getModuleHandle(const char* name) { return target_.getModuleHandle(name); }
std::uint16_t RegistryOverlayPlatform::registerClass(const char* className, WindowProc proc) {
    return target_.registerClass(className, proc);
}
bool RegistryOverlayPlatform::unregisterClass(const char* className, ModuleHandle instance) {
    return target_.unregisterClass(className, instance);
}
WindowHandle RegistryOverlayPlatform::createWindowEx(std::uint32_t exStyle, const char* className, const char* title,
                                                     std::uint32_t style, int x, int y, int width, int height,
                                                     WindowHandle parent, void* menu, ModuleHandle instance,
                                                     void* param) {
    return target_.createWindowEx(exStyle, className, title, style, x, y, width, height, parent, menu, instance, param);
}
bool RegistryOverlayPlatform::destroyWindow(WindowHandle window) { return target_.destroyWindow(window); }
std::uintptr_t RegistryOverlayPlatform::setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs,
                                                 void* timerProc) {
    return target_.setTimer(window, id, elapseMs, timerProc);
}
std::intptr_t RegistryOverlayPlatform::defWindowProc(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam,
                                                     std::intptr_t lParam) {
    return target_.defWindowProc(window, msg, wParam, lParam);
}
int RegistryOverlayPlatform::messageBox(WindowHandle owner, const char* text, const char* caption, std::uint32_t type) {
    return target_.messageBox(owner, text, caption, type);
}
std::uint32_t RegistryOverlayPlatform::getLastError() { return target_.getLastError(); }
std::uint32_t RegistryOverlayPlatform::formatMessage(std::uint32_t flags, const void* source, std::uint32_t messageId,
                                                     std::uint32_t languageId, char** buffer, std::uint32_t size) {
    return target_.formatMessage(flags, source, messageId, languageId, buffer, size);
}
LocalHandle RegistryOverlayPlatform::localAlloc(std::uint32_t flags, std::size_t bytes) {
    return target_.localAlloc(flags, bytes);
}
std::size_t RegistryOverlayPlatform::localSize(LocalHandle memory) { return target_.localSize(memory); }
LocalHandle RegistryOverlayPlatform::localFree(LocalHandle memory) { return target_.localFree(memory); }

}  // namespace tvr::platform
