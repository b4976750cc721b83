#include "plugin/core_loader.h"

#include <cstdio>
#include <cstring>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/core_interface.h"
#include "platform/error_codes.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {

namespace {

namespace pf = tvr::platform;

constexpr const char* kRegistryKey = "SOFTWARE\\Wow6432Node\\Tavrelo";
constexpr const char* kRegistryValue = "path";
constexpr std::uint32_t kValueBufferSize = 1024;
constexpr const char* kWindowClass = "PLRRunLoopWindow";
constexpr std::uintptr_t kTimerId = 1;
constexpr std::uint32_t kTimerPeriodMs = 40;

using AttachFunction = core::CoreInterface* (*)(core::AdaptorInterface*);
using DetachFunction = void (*)(core::CoreInterface*);

// Only one window handle is kept: a second load replaces it (see loadCore).
pf::WindowHandle g_runLoopWindow = nullptr;

template <typename Function>
Function toFunction(void* address) {
    Function f = nullptr;
    static_assert(sizeof(f) == sizeof(address), "function and data pointers differ in size");
    std::memcpy(&f, &address, sizeof(f));
    return f;
}

const char* suffixFor(const std::string& key) {
    if (key == "data") return "/pelloran/data";
    if (key == "plugin") return "/pelloran/plugins/win/x64";
    if (key == "doc") return "/pelloran/doc";
    if (key == "prm") return "/pelloran/prm";
    if (key.empty() || key == "plr") return "/pelloran";
    return "";
}

// A core without one of its two exports cannot be driven; say so instead of
// calling through a null address.
void reportMissingExport(const char* name) {
    tvr::util::Log(1).write(std::string("core.dll has no export \"") + name + "\"", -1);
    showLastError("GetProcAddress");
}

}  // namespace

std::string installPath(const std::string& key) {
    pf::Platform& os = pf::platform();
    pf::KeyHandle hkey = nullptr;
    if (os.regOpenKeyEx(pf::HKeyLocalMachine, kRegistryKey, 0, pf::KeyRead, &hkey) != pf::ErrorSuccess) return "";
    char value[kValueBufferSize] = {};
    std::uint32_t size = kValueBufferSize;
    std::uint32_t type = 0;
    const long rc = os.regQueryValueEx(hkey, kRegistryValue, &type, reinterpret_cast<unsigned char*>(value), &size);
    os.regCloseKey(hkey);
    // A number or binary value under the name is no path: treated as no value at all.
    if (rc != pf::ErrorSuccess || type != pf::RegSz) return "";
    // The value need not be terminated within the size it reports.
    const std::size_t length = strnlen(value, size < kValueBufferSize ? size : kValueBufferSize);
    return std::string(value, length) + suffixFor(key);
}

void showLastError(const std::string& functionName) {
    pf::Platform& os = pf::platform();
    const std::uint32_t error = os.getLastError();
    char* systemText = nullptr;
    os.formatMessage(pf::FormatMessageAllocateFromSystem, nullptr, error, pf::LangNeutralDefault, &systemText, 0);
    const char* text = systemText ? systemText : "";
    pf::LocalHandle box = os.localAlloc(pf::LmemZeroInit, std::strlen(text) + functionName.size() + 40);
    if (box) {
        char* out = static_cast<char*>(box);
        std::snprintf(out, os.localSize(box), "%s failed with error %d: %s", functionName.c_str(),
                      static_cast<int>(error), text);
        os.messageBox(nullptr, out, "Error", pf::MbOk);
        os.localFree(box);
    } else {
        tvr::util::Log(1).write(functionName + " failed with error " + std::to_string(error), -1);
    }
    if (systemText) os.localFree(systemText);
}

std::int32_t loadCore(C4DAdaptorInterface* adaptor) {
    pf::Platform& os = pf::platform();
    std::string directory = installPath("") + R"(\data\core\win\x64)";
    for (char& c : directory) {
        if (c == '/') c = '\\';
    }
    os.setDllDirectory(directory.c_str());
    adaptor->coreLibrary = os.loadLibrary((directory + "\\core.dll").c_str());
    os.setDllDirectory(nullptr);

    if (!adaptor->coreLibrary) {
        showLastError("LoadLibrary");
        // Names the product's historical file on purpose, not the one tried.
        const std::string text = "Couldn't load " + installPath("data") + "\\Core\\Core64.dll";
        os.messageBox(nullptr, text.c_str(), "Error", pf::MbOk);
        return 1;
    }

    auto attach = toFunction<AttachFunction>(os.getProcAddress(adaptor->coreLibrary, "attach"));
    if (!attach) {
        reportMissingExport("attach");
        os.freeLibrary(adaptor->coreLibrary);
        adaptor->coreLibrary = nullptr;
        return 1;
    }
    adaptor->core = attach(static_cast<core::AdaptorInterface*>(adaptor));

    // A second load registers the class again and fails; that is harmless.
    os.registerClass(kWindowClass, &runLoopWindowProc);
    g_runLoopWindow =
        os.createWindowEx(0, kWindowClass, "", 0, 0, 0, 0, 0, nullptr, nullptr, os.getModuleHandle(nullptr), nullptr);
    os.setTimer(g_runLoopWindow, kTimerId, kTimerPeriodMs, nullptr);
    return 0;
}

std::int32_t detachCore(C4DAdaptorInterface* adaptor) {
    if (!adaptor->core) return 0;
    pf::Platform& os = pf::platform();
    os.destroyWindow(g_runLoopWindow);
    g_runLoopWindow = nullptr;
    os.unregisterClass(kWindowClass, os.getModuleHandle(nullptr));
    auto detach = toFunction<DetachFunction>(os.getProcAddress(adaptor->coreLibrary, "detach"));
    if (detach) {
        detach(adaptor->core);
    } else {
        reportMissingExport("detach");
    }
    adaptor->core = nullptr;
    os.freeLibrary(adaptor->coreLibrary);
    adaptor->coreLibrary = nullptr;
    return 0;
}

std::intptr_t runLoopWindowProc(pf::WindowHandle window, std::uint32_t msg, std::uintptr_t wParam,
                                std::intptr_t lParam) {
    if (msg == pf::WmTimer) {
        if (core::CoreInterface* core = C4DAdaptorInterface::instance()->getCore()) core->runLoopStep();
    }
    return pf::platform().defWindowProc(window, msg, wParam, lParam);
}

pf::WindowHandle runLoopWindow() { return g_runLoopWindow; }

}  // namespace tvr::plr::adaptor::cinema4d
