#include "test_support/recording_platform.h"

#include <cctype>
#include <cstdio>
#include <type_traits>
#include <utility>

#include "platform/emulated_platform.h"
#include "platform/error_codes.h"

namespace tvr::platform {
namespace {

std::string quoted(const char* s) { return s ? "\"" + std::string(s) + "\"" : "null"; }

std::string hex(std::uintptr_t v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "0x%llx", static_cast<unsigned long long>(v));
    return buf;
}

std::string handle(const void* p) { return p ? hex(reinterpret_cast<std::uintptr_t>(p)) : "null"; }

template <typename T>
std::string dec(T v) {
    return std::to_string(v);
}

// The answer of a call as the record keeps it.
template <typename T>
std::uintptr_t asInteger(T value) {
    if constexpr (std::is_pointer_v<T>)
        return reinterpret_cast<std::uintptr_t>(value);
    else
        return static_cast<std::uintptr_t>(value);
}

std::string present(const void* p, const char* what) { return p ? what : "null"; }

// Paths compare as Windows compares them: case and slash direction do not matter.
std::string pathKey(std::string path) {
    for (char& c : path) c = c == '/' ? '\\' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return path;
}

class FakeLoader : public LibraryLoader {
public:
    struct Library {
        std::map<std::string, void*> symbols;
        std::uintptr_t handle = 0;
        int loads = 0;
    };

    ModuleHandle load(const std::string& path, const std::string& dllDirectory, std::uint32_t& error) override {
        auto it = libraries.find(pathKey(path));
        if (it == libraries.end() && !dllDirectory.empty() && path.find_first_of("\\/") == std::string::npos)
            it = libraries.find(pathKey(dllDirectory + "\\" + path));
        if (it == libraries.end()) {
            error = ErrorModNotFound;
            return nullptr;
        }
        ++it->second.loads;
        return reinterpret_cast<ModuleHandle>(it->second.handle);
    }

    Library* loaded(ModuleHandle module) {
        for (auto& l : libraries)
            if (l.second.loads > 0 && reinterpret_cast<ModuleHandle>(l.second.handle) == module) return &l.second;
        return nullptr;
    }

    void* symbol(ModuleHandle module, const char* name, std::uint32_t& error) override {
        Library* l = loaded(module);
        if (!l) {
            error = ErrorInvalidHandle;
            return nullptr;
        }
        auto s = l->symbols.find(name);
        if (s == l->symbols.end()) {
            error = ErrorProcNotFound;
            return nullptr;
        }
        return s->second;
    }

    bool release(ModuleHandle module, std::uint32_t& error) override {
        Library* l = loaded(module);
        if (!l) {
            error = ErrorInvalidHandle;
            return false;
        }
        --l->loads;
        return true;
    }

    ModuleHandle find(const std::string& name, std::uint32_t& error) override {
        std::string key = pathKey(name);
        for (auto& l : libraries) {
            if (l.second.loads <= 0) continue;
            const std::string& p = l.first;
            if (p == key || (p.size() > key.size() && p.compare(p.size() - key.size(), key.size(), key) == 0 &&
                             p[p.size() - key.size() - 1] == '\\'))
                return reinterpret_cast<ModuleHandle>(l.second.handle);
        }
        error = ErrorModNotFound;
        return nullptr;
    }

    void* hostSymbol(const char*) override { return nullptr; }

    std::size_t loadCount() const {
        std::size_t n = 0;
        for (const auto& l : libraries) n += static_cast<std::size_t>(l.second.loads);
        return n;
    }

    std::map<std::string, Library> libraries;  // by pathKey
    std::uintptr_t nextHandle = 0x71000000;
};

}  // namespace

struct RecordingPlatform::Fake {
    RegistryData registry;
    FakeLoader* loader = nullptr;  // owned by the emulation
    int boxAnswer = IdOk;
    std::vector<MessageBoxRecord> boxes;
    std::unique_ptr<EmulatedPlatform> emulation;

    Fake() {
        auto l = std::make_unique<FakeLoader>();
        loader = l.get();
        emulation = std::make_unique<EmulatedPlatform>(
            [this] { return registry; }, std::move(l), [this](const char* text, const char* caption, std::uint32_t type) {
                boxes.push_back(MessageBoxRecord{caption, text, type});
                return boxAnswer;
            });
    }
};

std::string PlatformCall::text() const {
    std::string t = function + "(";
    for (std::size_t i = 0; i < args.size(); ++i) t += (i ? ", " : "") + args[i];
    return t + ")";
}

std::string PlatformCall::str(std::size_t i) const {
    if (i >= args.size()) return "";
    const std::string& a = args[i];
    return a.size() >= 2 && a.front() == '"' && a.back() == '"' ? a.substr(1, a.size() - 2) : a;
}

RecordingPlatform::RecordingPlatform(Platform* forwardTo) : forward_(forwardTo), fake_(std::make_unique<Fake>()) {}

RecordingPlatform::~RecordingPlatform() = default;

Platform& RecordingPlatform::target() { return forward_ ? *forward_ : *fake_->emulation; }

std::size_t RecordingPlatform::begin(const char* function, std::vector<std::string> args) {
    calls_.push_back(PlatformCall{function, std::move(args), 0, {}});
    return calls_.size() - 1;
}

void RecordingPlatform::end(std::size_t index, std::uintptr_t result, std::string out) {
    calls_[index].result = result;
    calls_[index].out = std::move(out);
}

std::vector<std::string> RecordingPlatform::transcript() const {
    std::vector<std::string> t;
    for (const auto& c : calls_) t.push_back(c.text());
    return t;
}

std::vector<std::string> RecordingPlatform::functions() const {
    std::vector<std::string> t;
    for (const auto& c : calls_) t.push_back(c.function);
    return t;
}

std::size_t RecordingPlatform::count(const std::string& function) const {
    std::size_t n = 0;
    for (const auto& c : calls_) n += c.function == function;
    return n;
}

const PlatformCall* RecordingPlatform::find(const std::string& function, std::size_t nth) const {
    for (const auto& c : calls_)
        if (c.function == function && nth-- == 0) return &c;
    return nullptr;
}

void RecordingPlatform::setRegistryValue(const std::string& keyPath, const std::string& name,
                                         const std::string& value) {
    fake_->registry.setString(keyPath, name, value);
}

bool RecordingPlatform::setRegistryText(const std::string& regedit4) {
    fake_->registry.clear();
    return fake_->registry.parse(regedit4);
}

void RecordingPlatform::addLibrary(const std::string& path, std::map<std::string, void*> symbols) {
    auto& l = fake_->loader->libraries[pathKey(path)];
    l.symbols = std::move(symbols);
    if (!l.handle) {
        l.handle = fake_->loader->nextHandle;
        fake_->loader->nextHandle += 0x10000;
    }
}

void RecordingPlatform::setMessageBoxAnswer(int answer) { fake_->boxAnswer = answer; }
void RecordingPlatform::setLastError(std::uint32_t error) { fake_->emulation->setLastError(error); }
void RecordingPlatform::pumpTimers(std::uint64_t nowMs) { fake_->emulation->windows().pump(nowMs); }

std::intptr_t RecordingPlatform::sendMessage(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam,
                                             std::intptr_t lParam) {
    return fake_->emulation->windows().send(window, msg, wParam, lParam);
}

std::vector<MessageBoxRecord> RecordingPlatform::messageBoxes() const { return fake_->boxes; }
std::size_t RecordingPlatform::windowCount() const { return fake_->emulation->windows().windowCount(); }
std::size_t RecordingPlatform::timerCount() const { return fake_->emulation->windows().timerCount(); }
std::size_t RecordingPlatform::openKeys() const { return fake_->emulation->openKeys(); }
std::size_t RecordingPlatform::loadedLibraries() const { return fake_->loader->loadCount(); }
std::size_t RecordingPlatform::liveLocalBlocks() const { return fake_->emulation->memory().liveBlocks(); }
std::string RecordingPlatform::dllDirectory() const { return fake_->emulation->dllDirectory(); }

template <typename Call>
auto RecordingPlatform::record(const char* function, std::vector<std::string> args, Call call) {
    const std::size_t i = begin(function, std::move(args));
    auto r = call(target());
    end(i, asInteger(r));
    return r;
}

long RecordingPlatform::regOpenKeyEx(KeyHandle root, const char* subKey, std::uint32_t options, std::uint32_t access,
                                     KeyHandle* result) {
    std::size_t i = begin("RegOpenKeyExA", {handle(root), quoted(subKey), dec(options), hex(access)});
    long r = target().regOpenKeyEx(root, subKey, options, access, result);
    end(i, static_cast<std::uintptr_t>(r), result && r == ErrorSuccess ? handle(*result) : "");
    return r;
}

long RecordingPlatform::regQueryValueEx(KeyHandle key, const char* valueName, std::uint32_t* type,
                                        unsigned char* data, std::uint32_t* size) {
    std::size_t i = begin("RegQueryValueExA", {handle(key), quoted(valueName), present(type, "type"),
                                               present(data, "buffer"), size ? dec(*size) : "null"});
    long r = target().regQueryValueEx(key, valueName, type, data, size);
    std::string out = size ? dec(*size) : "";
    if (r == ErrorSuccess && data && size && type && *type == RegSz && *size > 0)
        out += " \"" + std::string(reinterpret_cast<const char*>(data), *size - 1) + "\"";
    end(i, static_cast<std::uintptr_t>(r), out);
    return r;
}

long RecordingPlatform::regCloseKey(KeyHandle key) {
    return record("RegCloseKey", {handle(key)}, [&](Platform& p) { return p.regCloseKey(key); });
}

bool RecordingPlatform::setDllDirectory(const char* path) {
    return record("SetDllDirectoryA", {quoted(path)}, [&](Platform& p) { return p.setDllDirectory(path); });
}

ModuleHandle RecordingPlatform::loadLibrary(const char* path) {
    return record("LoadLibraryA", {quoted(path)}, [&](Platform& p) { return p.loadLibrary(path); });
}

void* RecordingPlatform::getProcAddress(ModuleHandle module, const char* name) {
    return record("GetProcAddress", {handle(module), quoted(name)},
                  [&](Platform& p) { return p.getProcAddress(module, name); });
}

bool RecordingPlatform::freeLibrary(ModuleHandle module) {
    return record("FreeLibrary", {handle(module)}, [&](Platform& p) { return p.freeLibrary(module); });
}

ModuleHandle RecordingPlatform::getModuleHandle(const char* name) {
    return record("GetModuleHandleA", {quoted(name)}, [&](Platform& p) { return p.getModuleHandle(name); });
}

std::uint16_t RecordingPlatform::registerClass(const char* className, WindowProc proc) {
    return record("RegisterClassA", {quoted(className), proc ? "proc" : "null"},
                  [&](Platform& p) { return p.registerClass(className, proc); });
}

bool RecordingPlatform::unregisterClass(const char* className, ModuleHandle instance) {
    return record("UnregisterClassA", {quoted(className), handle(instance)},
                  [&](Platform& p) { return p.unregisterClass(className, instance); });
}

WindowHandle RecordingPlatform::createWindowEx(std::uint32_t exStyle, const char* className, const char* title,
                                               std::uint32_t style, int x, int y, int width, int height,
                                               WindowHandle parent, void* menu, ModuleHandle instance, void* param) {
    return record("CreateWindowExA",
                  {hex(exStyle), quoted(className), quoted(title), hex(style), dec(x), dec(y), dec(width),
                   dec(height), handle(parent), handle(menu), handle(instance), handle(param)},
                  [&](Platform& p) {
                      return p.createWindowEx(exStyle, className, title, style, x, y, width, height, parent, menu,
                                              instance, param);
                  });
}

bool RecordingPlatform::destroyWindow(WindowHandle window) {
    return record("DestroyWindow", {handle(window)}, [&](Platform& p) { return p.destroyWindow(window); });
}

std::uintptr_t RecordingPlatform::setTimer(WindowHandle window, std::uintptr_t id, std::uint32_t elapseMs,
                                           void* timerProc) {
    return record("SetTimer", {handle(window), dec(id), dec(elapseMs), timerProc ? "proc" : "null"},
                  [&](Platform& p) { return p.setTimer(window, id, elapseMs, timerProc); });
}

std::intptr_t RecordingPlatform::defWindowProc(WindowHandle window, std::uint32_t msg, std::uintptr_t wParam,
                                               std::intptr_t lParam) {
    return record("DefWindowProcA", {handle(window), dec(msg), dec(wParam), dec(lParam)},
                  [&](Platform& p) { return p.defWindowProc(window, msg, wParam, lParam); });
}

int RecordingPlatform::messageBox(WindowHandle owner, const char* text, const char* caption, std::uint32_t type) {
    return record("MessageBoxA", {handle(owner), quoted(text), quoted(caption), hex(type)},
                  [&](Platform& p) { return p.messageBox(owner, text, caption, type); });
}

std::uint32_t RecordingPlatform::getLastError() {
    return record("GetLastError", {}, [&](Platform& p) { return p.getLastError(); });
}

std::uint32_t RecordingPlatform::formatMessage(std::uint32_t flags, const void* source, std::uint32_t messageId,
                                               std::uint32_t languageId, char** buffer, std::uint32_t size) {
    std::size_t i = begin("FormatMessageA", {hex(flags), handle(source), dec(messageId), hex(languageId),
                                             present(buffer, "buffer"), dec(size)});
    std::uint32_t r = target().formatMessage(flags, source, messageId, languageId, buffer, size);
    std::string out;
    if (r && buffer) {
        const char* text = (flags & 0x100) ? *buffer : reinterpret_cast<const char*>(buffer);
        out = quoted(text);
    }
    end(i, r, out);
    return r;
}

LocalHandle RecordingPlatform::localAlloc(std::uint32_t flags, std::size_t bytes) {
    return record("LocalAlloc", {hex(flags), dec(bytes)}, [&](Platform& p) { return p.localAlloc(flags, bytes); });
}

std::size_t RecordingPlatform::localSize(LocalHandle memory) {
    return record("LocalSize", {handle(memory)}, [&](Platform& p) { return p.localSize(memory); });
}

LocalHandle RecordingPlatform::localFree(LocalHandle memory) {
    return record("LocalFree", {handle(memory)}, [&](Platform& p) { return p.localFree(memory); });
}

}  // namespace tvr::platform
