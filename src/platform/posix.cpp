// The system platform off Windows: an emulation in this process. The registry comes from the
// REGEDIT4 file named by PLR_REGISTRY_FILE, libraries from dlopen, message boxes are printed.
#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>

#include "platform/emulated_platform.h"
#include "platform/error_codes.h"
#include "platform/message_box.h"
#include "platform/platform.h"

namespace tvr::platform {
namespace {

constexpr std::streamsize MaxRegistryFile = 16 << 20;

std::string& diagnostic() {
    static auto* d = new std::string();
    return *d;
}

RegistryData readRegistryFile() {
    RegistryData data;
    const char* path = std::getenv("PLR_REGISTRY_FILE");
    if (!path || !*path) return data;
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    std::streamsize length = in ? static_cast<std::streamsize>(in.tellg()) : -1;
    if (length < 0 || length > MaxRegistryFile) return data;  // not a registry file we would write
    std::string text(static_cast<std::size_t>(length), '\0');
    in.seekg(0);
    in.read(text.data(), length);
    text.resize(static_cast<std::size_t>(in.gcount()));
    data.parse(text);
    return data;
}

// Windows paths to this system's: every '\' becomes '/', and wine's drive Z: is the root.
std::string mapPath(std::string path) {
    for (char& c : path)
        if (c == '\\') c = '/';
    if (path.size() >= 3 && (path[0] == 'Z' || path[0] == 'z') && path[1] == ':' && path[2] == '/') path.erase(0, 2);
    return path;
}

bool exists(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

class DlopenLoader : public LibraryLoader {
public:
    ModuleHandle load(const std::string& path, const std::string& dllDirectory, std::uint32_t& error) override {
        std::string file = mapPath(path);
        bool bare = file.find('/') == std::string::npos;
        if (bare && !dllDirectory.empty()) {
            std::string inDir = mapPath(dllDirectory) + "/" + file;
            if (exists(inDir)) {
                file = inDir;
                bare = false;
            }
        }
        void* h = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!h) {
            const char* why = ::dlerror();
            diagnostic() = why ? why : "dlopen failed";
            bool missing = bare ? diagnostic().find("No such file") != std::string::npos : !exists(file);
            error = missing ? ErrorModNotFound : ErrorBadExeFormat;
            return nullptr;
        }
        auto& entry = loaded_[h];
        ++entry.count;
        entry.path = file;
        return h;
    }

    void* symbol(ModuleHandle module, const char* name, std::uint32_t& error) override {
        if (!loaded_.count(module)) {
            error = ErrorInvalidHandle;
            return nullptr;
        }
        void* p = ::dlsym(module, name);
        if (!p) error = ErrorProcNotFound;
        return p;
    }

    bool release(ModuleHandle module, std::uint32_t& error) override {
        auto it = loaded_.find(module);
        if (it == loaded_.end()) {
            error = ErrorInvalidHandle;
            return false;
        }
        if (--it->second.count == 0) loaded_.erase(it);
        ::dlclose(module);
        return true;
    }

    ModuleHandle find(const std::string& name, std::uint32_t& error) override {
        std::string file = mapPath(name);
        for (const auto& l : loaded_) {
            const std::string& p = l.second.path;
            if (p == file || (p.size() > file.size() && p.compare(p.size() - file.size(), file.size(), file) == 0 &&
                              p[p.size() - file.size() - 1] == '/'))
                return l.first;
        }
        error = ErrorModNotFound;
        return nullptr;
    }

    void* hostSymbol(const char* name) override { return ::dlsym(RTLD_DEFAULT, name); }

private:
    struct Loaded {
        int count = 0;
        std::string path;
    };
    std::map<void*, Loaded> loaded_;
};

int showBox(const char* text, const char* caption, std::uint32_t type) {
    MessageBoxSink sink = messageBoxSink();
    return sink ? sink(text, caption, type) : printMessageBox(text, caption, type);
}

}  // namespace

Platform& systemPlatform() {
    // Never destroyed: modules may still call in while the process ends.
    static auto* p = new EmulatedPlatform(readRegistryFile, std::make_unique<DlopenLoader>(), showBox);
    return *p;
}

const char* lastLoaderDiagnostic() { return diagnostic().c_str(); }

}  // namespace tvr::platform
