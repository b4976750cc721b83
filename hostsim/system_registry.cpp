#include "hostsim/system_registry.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "platform/registry_data.h"

namespace hostsim {
namespace {

constexpr const char* kRoot = "hkey_local_machine\\";

void removeHolder(const std::string& holder) { RegDeleteTreeA(HKEY_CURRENT_USER, holder.c_str()); }

}  // namespace

std::unique_ptr<SystemRegistryOverride> SystemRegistryOverride::fromText(const std::string& regedit4,
                                                                         std::string& error) {
    tvr::platform::RegistryData data;
    if (!data.parse(regedit4)) {
        error = "is not a REGEDIT4 file";
        return nullptr;
    }
    const std::string rootName(kRoot);
    for (const std::string& path : data.keyPaths()) {
        if (path.compare(0, rootName.size(), rootName) != 0) {
            error = "names a key outside HKEY_LOCAL_MACHINE (" + path + ")";
            return nullptr;
        }
    }
    const std::string holder = "Software\\PelloranHostsim\\" + std::to_string(GetCurrentProcessId());
    removeHolder(holder);  // left by an earlier process of the same number
    auto fail = [&](const std::string& what, LONG code) {
        removeHolder(holder);
        error = what + " failed with error " + std::to_string(code);
        return nullptr;
    };
    HKEY top = nullptr;
    LONG r = RegCreateKeyExA(HKEY_CURRENT_USER, holder.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                             nullptr, &top, nullptr);
    if (r != ERROR_SUCCESS) return fail("RegCreateKeyExA", r);
    for (const std::string& path : data.keyPaths()) {
        HKEY key = nullptr;
        r = RegCreateKeyExA(top, path.substr(rootName.size()).c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &key, nullptr);
        if (r != ERROR_SUCCESS) break;
        for (const auto& [name, value] : data.values(path)) {
            r = RegSetValueExA(key, name.c_str(), 0, value.type, value.data.data(),
                               static_cast<DWORD>(value.data.size()));
            if (r != ERROR_SUCCESS) break;
        }
        RegCloseKey(key);
        if (r != ERROR_SUCCESS) break;
    }
    if (r != ERROR_SUCCESS) {
        RegCloseKey(top);
        return fail("writing the registry file's keys", r);
    }
    r = RegOverridePredefKey(HKEY_LOCAL_MACHINE, top);
    RegCloseKey(top);  // the override holds its own handle
    if (r != ERROR_SUCCESS) return fail("RegOverridePredefKey", r);
    return std::unique_ptr<SystemRegistryOverride>(new SystemRegistryOverride(holder));
}

SystemRegistryOverride::~SystemRegistryOverride() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    removeHolder(holder_);
}

}  // namespace hostsim
