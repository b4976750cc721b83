#include "platform/platform.h"

#include <atomic>

namespace tvr::platform {
namespace {
std::atomic<Platform*> installed{nullptr};
}

Platform& platform() {
    Platform* p = installed.load();
    return p ? *p : systemPlatform();
}

void setPlatform(Platform* p) { installed.store(p); }

}  // namespace tvr::platform
