// A machine without an installation: the registry names no root, whatever the
// system's own registry holds (the Windows run under wine names one), and no
// message box waits for a button. Tests and fuzzers whose fake core must be
// the only core hold one of these for as long as they run.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/error_codes.h"
#include "platform/message_box.h"
#include "platform/platform.h"
#include "platform/registry_overlay.h"

namespace tvr::plr::test {

class NoInstallation {
public:
    // Boxes go to `boxes`; by default they are answered without a trace.
    explicit NoInstallation(tvr::platform::MessageBoxSink boxes = &silentBox)
        : overlay_(tvr::platform::RegistryOverlayPlatform::fromText(tvr::platform::platform(), "REGEDIT4\n")) {
        if (overlay_) tvr::platform::setPlatform(overlay_.get());
        tvr::platform::setMessageBoxSink(boxes);
    }
    ~NoInstallation() {
        tvr::platform::setMessageBoxSink(nullptr);
        tvr::platform::setPlatform(nullptr);
    }
    NoInstallation(const NoInstallation&) = delete;
    NoInstallation& operator=(const NoInstallation&) = delete;

    static int silentBox(const char*, const char*, std::uint32_t) { return tvr::platform::IdOk; }

private:
    std::unique_ptr<tvr::platform::RegistryOverlayPlatform> overlay_;
};

}  // namespace tvr::plr::test
