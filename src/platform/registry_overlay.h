// The registry answered from a REGEDIT4 text and every other call by another
// platform: how hostsim takes --registry where the system registry is real.
#pragma once

#include <memory>
#include <string>

#include "platform/platform.h"
#include "platform/platform_overrides.h"

namespace tvr::platform {

class EmulatedPlatform;

class PLR_PLATFORM_EXPORT RegistryOverlayPlatform : public Platform {
public:
    // Null when the text is not a REGEDIT4 file.
    static std::unique_ptr<RegistryOverlayPlatform> fromText(Platform& target, const std::string& regedit4);
    ~RegistryOverlayPlatform() override;
    RegistryOverlayPlatform(const RegistryOverlayPlatform&) = delete;
    RegistryOverlayPlatform& operator=(const RegistryOverlayPlatform&) = delete;

    PLR_PLATFORM_OVERRIDES

private:
    RegistryOverlayPlatform(Platform& target, std::unique_ptr<EmulatedPlatform> registry);

    Platform& target_;
    std::unique_ptr<EmulatedPlatform> registry_;
};

}  // namespace tvr::platform
