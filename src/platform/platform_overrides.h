// The declarations of every Platform operation, for the classes that implement
// them all (the emulation and the recording platform).
#pragma once

#include "platform/platform.h"

#define PLR_PLATFORM_OVERRIDES                                                                                         \
    long regOpenKeyEx(KeyHandle root, const char* subKey, std::uint32_t options, std::uint32_t access,                 \
                      KeyHandle* result) override;                                                                     \
    long regQueryValueEx(KeyHandle key, const char* valueName, std::uint32_t* type, unsigned char* data,               \
                         std::uint32_t* size) override;                                                                \
    long regCloseKey(KeyHandle key) override;                                                                          \
    bool setDllDirectory(const char* path) override;                                                                   \
    ModuleHandle loadLibrary(const char* path) override;                                                               \
    void* getProcAddress(ModuleHandle module, const char* name) override;                                              \
    bool freeLibrary(ModuleHandle module) override;                                                                    \
    ModuleHandle getModuleHandle(const char* name) override;                                                           \
    std::uint16_t registerClass(const char* className, WindowProc proc) override;                                      \
    bool unregisterClass(const char* className, ModuleHandle instance) override;                                       \
    WindowHandle createWindowEx(std::uint32_t exStyle, const char* className, const char* title, std::uint32_t style,  \
                                int x, int y, int width, int height, WindowHandle parent, void* menu,                  \
                                ModuleHandle instance, void* param) override;                                          \
    bool destroyWindow(WindowHandle window) override;                                                                  \
    std::uintptr_t setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs, void* timerProc) override; \
    std::intptr_t defWindowProc(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam)   \
        override;                                                                                                      \
    int messageBox(WindowHandle owner, const char* text, const char* caption, std::uint32_t type) override;            \
    std::uint32_t getLastError() override;                                                                             \
    std::uint32_t formatMessage(std::uint32_t flags, const void* source, std::uint32_t messageId,                      \
                                std::uint32_t languageId, char** buffer, std::uint32_t size) override;                 \
    LocalHandle localAlloc(std::uint32_t flags, std::size_t bytes) override;                                           \
    std::size_t localSize(LocalHandle memory) override;                                                                \
    LocalHandle localFree(LocalHandle memory) override;
