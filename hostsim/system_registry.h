// Windows only: a registry file made visible to every module of this process. The
// module carries its own copy of the platform layer there, so the platform
// hostsim installs does not reach it; the system's registry does. The file's
// HKEY_LOCAL_MACHINE keys are written to a volatile key of the user's hive, and
// HKEY_LOCAL_MACHINE is redirected to it for this process until destruction.
#pragma once

#include <memory>
#include <string>

namespace hostsim {

class SystemRegistryOverride {
public:
    // Null, with the reason in `error`, when the text is not a REGEDIT4 file, names
    // another root or the system refuses.
    static std::unique_ptr<SystemRegistryOverride> fromText(const std::string& regedit4, std::string& error);
    ~SystemRegistryOverride();
    SystemRegistryOverride(const SystemRegistryOverride&) = delete;
    SystemRegistryOverride& operator=(const SystemRegistryOverride&) = delete;

private:
    explicit SystemRegistryOverride(std::string holder) : holder_(std::move(holder)) {}
    std::string holder_;  // the volatile key under HKEY_CURRENT_USER
};

}  // namespace hostsim
