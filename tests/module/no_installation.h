// A machine without an installation: the registry names no root, whatever the
// system's own registry holds (the Windows run under wine names one). Tests
// whose fake core must be the only core hold one of these.
#pragma once

#include <memory>

#include "platform/platform.h"
#include "platform/registry_overlay.h"

namespace tvr::plr::test {

class NoInstallation {
public:
    NoInstallation()
        : overlay_(tvr::platform::RegistryOverlayPlatform::fromText(tvr::platform::platform(), "REGEDIT4\n")) {
        if (overlay_) tvr::platform::setPlatform(overlay_.get());
    }
    ~NoInstallation() { tvr::platform::setPlatform(nullptr); }
    NoInstallation(const NoInstallation&) = delete;
    NoInstallation& operator=(const NoInstallation&) = delete;

private:
    std::unique_ptr<tvr::platform::RegistryOverlayPlatform> overlay_;
};

}  // namespace tvr::plr::test
