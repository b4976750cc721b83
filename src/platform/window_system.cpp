#include "platform/window_system.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/error_codes.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace tvr::platform {
namespace {

using TimerProc = void (*)(WindowHandle, std::uint32_t, std::uintptr_t, std::uint32_t);

constexpr std::uint32_t MinimumPeriodMs = 10;  // USER_TIMER_MINIMUM
constexpr std::uint32_t MaximumPeriodMs = 0x7FFFFFFF;

std::mutex& liveMutex() {
    static std::mutex m;
    return m;
}
std::vector<WindowSystem*>& live() {
    static std::vector<WindowSystem*> v;
    return v;
}
bool isLive(WindowSystem* s) {
    std::lock_guard<std::mutex> lock(liveMutex());
    return std::find(live().begin(), live().end(), s) != live().end();
}

// Class names compare without regard to case; a small integer in place of the name is an atom.
bool isAtom(const char* name) { return reinterpret_cast<std::uintptr_t>(name) < 0x10000; }

std::string classKey(const char* name) {
    std::string k(name);
    for (char& c : k) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return k;
}

const void* codeAddress(WindowProc proc) {
    const void* address = nullptr;
    static_assert(sizeof proc == sizeof address, "function and data pointers differ in size");
    std::memcpy(&address, &proc, sizeof address);
    return address;
}

}  // namespace

WindowSystem::CodeOwner WindowSystem::ownerOf(WindowProc proc) {
    CodeOwner owner;
#if defined(_WIN32)
    HMODULE module = nullptr;
    if (GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<LPCSTR>(codeAddress(proc)), &module)) {
        owner.base = module;
        char name[MAX_PATH] = {};
        const DWORD length = GetModuleFileNameA(module, name, MAX_PATH);
        owner.file.assign(name, length < MAX_PATH ? length : MAX_PATH);
    }
#else
    Dl_info info{};
    if (::dladdr(codeAddress(proc), &info) != 0) {
        owner.base = info.dli_fbase;
        owner.file = info.dli_fname ? info.dli_fname : "";
    }
#endif
    return owner;
}

std::intptr_t WindowSystem::dispatch(const Window& window, WindowHandle handle, std::uint32_t msg,
                                     std::uintptr_t wParam, std::intptr_t lParam) {
    const CodeOwner now = ownerOf(window.proc);
    if (now.base != window.owner.base || now.file != window.owner.file) return 0;
    return window.proc(handle, msg, wParam, lParam);
}

WindowSystem::WindowSystem() {
    std::lock_guard<std::mutex> lock(liveMutex());
    live().push_back(this);
}

WindowSystem::~WindowSystem() {
    std::lock_guard<std::mutex> lock(liveMutex());
    live().erase(std::remove(live().begin(), live().end(), this), live().end());
}

std::uint16_t WindowSystem::registerClass(const char* className, WindowProc proc, std::uint32_t& error) {
    if (isAtom(className) || !*className || !proc) {
        error = ErrorInvalidParameter;
        return 0;
    }
    std::string key = classKey(className);
    if (classes_.count(key) || nextAtom_ == 0) {
        error = ErrorClassAlreadyExists;
        return 0;
    }
    WindowClass c;
    c.proc = proc;
    c.owner = ownerOf(proc);
    c.atom = nextAtom_++;
    classes_[key] = c;
    return c.atom;
}

std::map<std::string, WindowSystem::WindowClass>::iterator WindowSystem::findClass(const char* className) {
    if (!isAtom(className)) return classes_.find(classKey(className));
    auto atom = static_cast<std::uint16_t>(reinterpret_cast<std::uintptr_t>(className));
    for (auto it = classes_.begin(); it != classes_.end(); ++it)
        if (atom && it->second.atom == atom) return it;
    return classes_.end();
}

bool WindowSystem::unregisterClass(const char* className, std::uint32_t& error) {
    auto it = findClass(className);
    if (it == classes_.end()) {
        error = ErrorClassDoesNotExist;
        return false;
    }
    for (const auto& w : windows_) {
        if (w.second.classKey == it->first) {
            error = ErrorClassHasWindows;
            return false;
        }
    }
    classes_.erase(it);
    return true;
}

WindowHandle WindowSystem::createWindow(const char* className, std::uint32_t& error) {
    auto it = findClass(className);
    if (it == classes_.end()) {
        error = ErrorCannotFindClass;
        return nullptr;
    }
    std::uintptr_t handle = nextWindow_;
    nextWindow_ += 2;
    Window w;
    w.classKey = it->first;
    w.proc = it->second.proc;
    w.owner = it->second.owner;
    windows_[handle] = w;
    return reinterpret_cast<WindowHandle>(handle);
}

bool WindowSystem::destroyWindow(WindowHandle window, std::uint32_t& error) {
    if (!windows_.erase(reinterpret_cast<std::uintptr_t>(window))) {
        error = ErrorInvalidWindowHandle;
        return false;
    }
    return true;
}

std::uintptr_t WindowSystem::setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs, void* timerProc,
                                      std::uint32_t& error) {
    auto it = windows_.find(reinterpret_cast<std::uintptr_t>(window));
    if (it == windows_.end()) {
        // Thread timers (no window) are not emulated: nothing here would deliver them.
        error = ErrorInvalidWindowHandle;
        return 0;
    }
    Timer t;
    t.periodMs = std::clamp(elapseMs, MinimumPeriodMs, MaximumPeriodMs);
    t.dueMs = nowMs_ + t.periodMs;
    t.timerProc = timerProc;
    it->second.timers[id] = t;  // the same id again replaces the timer
    return id ? id : 1;
}

void WindowSystem::pump(std::uint64_t nowMs) {
    nowMs_ = nowMs;
    std::vector<std::pair<std::uintptr_t, std::uintptr_t>> due;
    for (auto& w : windows_) {
        for (auto& t : w.second.timers) {
            // A clock that went back must not leave a timer waiting for longer than its period.
            if (t.second.dueMs > nowMs + t.second.periodMs) t.second.dueMs = nowMs + t.second.periodMs;
            if (t.second.dueMs <= nowMs) due.emplace_back(w.first, t.first);
        }
    }
    // Procedures may create or destroy windows and timers: look each one up again before its call.
    for (const auto& d : due) {
        auto w = windows_.find(d.first);
        if (w == windows_.end()) continue;
        auto t = w->second.timers.find(d.second);
        if (t == w->second.timers.end() || t->second.dueMs > nowMs) continue;
        t->second.dueMs = nowMs + t->second.periodMs;
        auto window = reinterpret_cast<WindowHandle>(d.first);
        if (t->second.timerProc) {
            TimerProc proc;
            void* raw = t->second.timerProc;
            std::memcpy(&proc, &raw, sizeof proc);
            proc(window, WmTimer, d.second, static_cast<std::uint32_t>(nowMs));
        } else {
            dispatch(w->second, window, WmTimer, d.second, 0);
        }
    }
}

std::intptr_t WindowSystem::send(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam, std::intptr_t lParam) {
    auto it = windows_.find(reinterpret_cast<std::uintptr_t>(window));
    if (it == windows_.end()) return 0;
    return dispatch(it->second, window, msg, wParam, lParam);
}

std::size_t WindowSystem::timerCount() const {
    std::size_t n = 0;
    for (const auto& w : windows_) n += w.second.timers.size();
    return n;
}

void WindowSystem::pumpAll(std::uint64_t nowMs) {
    std::vector<WindowSystem*> systems;
    {
        std::lock_guard<std::mutex> lock(liveMutex());
        systems = live();
    }
    for (WindowSystem* s : systems)
        if (isLive(s)) s->pump(nowMs);
}

}  // namespace tvr::platform
