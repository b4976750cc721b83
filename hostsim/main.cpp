// hostsim: the command-line host. Loads the modules of a plug-ins folder into
// the embedded host and plays a session script, or reads commands typed in,
// printing what the host shows its user: console lines, dialogs, message boxes.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <io.h>
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <unistd.h>
#endif

#include "embedded_host/runtime/embedded_host.h"
#include "hostsim/embedded_driver.h"
#include "hostsim/script.h"
#include "hostsim/session.h"
#include "platform/message_box.h"
#include "platform/message_pump.h"
#include "platform/platform.h"
#include "platform/registry_overlay.h"
#if defined(_WIN32)
#include "hostsim/system_registry.h"
#endif

namespace fs = std::filesystem;

namespace {

std::string usage() {
    return "usage: hostsim [--registry FILE] [--plugins DIR] [--real-time] [--quiet] [--trace] [SCRIPT]\n"
           "Loads every module of the plug-ins folder (default: ../plugins beside hostsim),\n"
           "then plays SCRIPT, or reads commands from the input when none is given.\n"
           "  --quiet   does not echo the host's console lines and dialogs as they happen\n"
           "  --trace   prints every host call the modules make as it happens (the journal)\n"
           "Exit status: 0 when every command succeeded, 1 when one failed or the script is bad,\n"
           "2 for bad arguments. Commands:\n" +
           hostsim::helpText();
}

#if defined(_WIN32)
constexpr const char* kModuleSuffix = ".cdl64";
#else
constexpr const char* kModuleSuffix = ".so";
#endif

struct Options {
    std::string registry;
    std::string plugins;
    std::string script;
#if defined(_WIN32)
    bool realTime = true;  // the system's timers fire in real time only
#else
    bool realTime = false;
#endif
    bool quiet = false;
    bool trace = false;
};

fs::path programDirectory(const char* argv0) {
#if defined(_WIN32)
    char path[MAX_PATH] = {};
    if (GetModuleFileNameA(nullptr, path, MAX_PATH) > 0) return fs::path(path).parent_path();
#else
    std::error_code ec;
    fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) return self.parent_path();
#endif
    return fs::absolute(fs::path(argv0)).parent_path();
}

bool interactiveInput() {
#if defined(_WIN32)
    return _isatty(_fileno(stdin)) != 0;
#else
    return isatty(STDIN_FILENO) != 0;
#endif
}

std::vector<fs::path> findModules(const fs::path& folder) {
    std::vector<fs::path> modules;
    std::error_code ec;
    for (fs::recursive_directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        if (it->is_regular_file(ec) && it->path().extension() == kModuleSuffix) modules.push_back(it->path());
    }
    std::sort(modules.begin(), modules.end());
    return modules;
}

bool parseArguments(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if ((arg == "--registry" || arg == "--plugins") && i + 1 < argc) {
            (arg == "--registry" ? options.registry : options.plugins) = argv[++i];
        } else if (arg == "--real-time") {
            options.realTime = true;
        } else if (arg == "--quiet") {
            options.quiet = true;
        } else if (arg == "--trace") {
            options.trace = true;
        } else if (arg == "--help" || arg == "-h") {
            std::cout << usage();
            std::exit(0);
        } else if (!arg.empty() && arg[0] != '-' && options.script.empty()) {
            options.script = arg;
        } else {
            std::cerr << "hostsim: unexpected argument \"" << arg << "\"\n" << usage();
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parseArguments(argc, argv, options)) return 2;

    std::ifstream script;
    if (!options.script.empty()) {
        script.open(options.script);
        if (!script) {
            std::cerr << "hostsim: cannot read " << options.script << "\n";
            return 2;
        }
    }

    // The registry file answers the module's registry calls; everything else stays the system's.
    // On Windows the module has its own copy of the platform layer, which only the system reaches.
#if defined(_WIN32)
    std::unique_ptr<hostsim::SystemRegistryOverride> systemRegistry;
#else
    std::unique_ptr<tvr::platform::RegistryOverlayPlatform> registryPlatform;
#endif
    if (!options.registry.empty()) {
        std::ifstream in(options.registry, std::ios::binary);
        if (!in) {
            std::cerr << "hostsim: cannot read " << options.registry << "\n";
            return 2;
        }
        std::ostringstream text;
        text << in.rdbuf();
#if defined(_WIN32)
        std::string error;
        systemRegistry = hostsim::SystemRegistryOverride::fromText(text.str(), error);
        if (!systemRegistry) {
            std::cerr << "hostsim: " << options.registry << " " << error << "\n";
            return 2;
        }
#else
        registryPlatform = tvr::platform::RegistryOverlayPlatform::fromText(tvr::platform::platform(), text.str());
        if (!registryPlatform) {
            std::cerr << "hostsim: " << options.registry << " is not a REGEDIT4 file\n";
            return 2;
        }
        tvr::platform::setPlatform(registryPlatform.get());
#endif
    }
    // Boxes never block here: they are printed where the session's output goes. The variable
    // reaches the module's own copy of the platform layer on Windows.
    tvr::platform::setMessageBoxSink(&tvr::platform::printMessageBox);
#if defined(_WIN32)
    SetEnvironmentVariableA("PLR_UNATTENDED", "1");
#endif

    tvr::plr::embedded::HostOptions hostOptions;
    hostOptions.echoConsole = !options.quiet;
    int status = 0;
    {
        tvr::plr::embedded::EmbeddedHost host(hostOptions);
        host.setMessagePump([](std::uint64_t nowMs) { tvr::platform::pumpMessages(nowMs); });
        if (options.trace) {
            host.journal().setObserver([](const tvr::plr::embedded::JournalEntry& e) {
                std::printf("[trace] %s%s%s\n", e.kind.c_str(), e.text.empty() ? "" : " ", e.text.c_str());
            });
        }

        const fs::path plugins =
            options.plugins.empty() ? programDirectory(argv[0]) / ".." / "plugins" : fs::path(options.plugins);
        const std::vector<fs::path> modules = findModules(plugins);
        if (modules.empty()) std::cerr << "hostsim: no modules in " << plugins.string() << "\n";
        for (const fs::path& module : modules) {
            // The host tells the user itself why it refused a module.
            if (!host.loadModule(module.string())) status = 1;
        }
        host.newDocument();

        hostsim::EmbeddedDriver driver(host, options.realTime);
        hostsim::Session session(driver, std::cout, std::cerr);
        const int played = options.script.empty() ? session.interact(std::cin, interactiveInput())
                                                  : session.playScript(script, options.script);
        status = std::max(status, played);
        host.shutdown();
    }
    tvr::platform::setPlatform(nullptr);
    std::fflush(stdout);
    return status;
}
