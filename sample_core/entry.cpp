// The library's exports: attach, detach, the test counters and the command channel.

#include <string>

#include "sample_core/command_channel.h"
#include "sample_core/sample_core.h"
#include "sample_core/stats.h"

#if defined(_WIN32)
#define PLR_CORE_EXPORT extern "C" __declspec(dllexport)
#else
#define PLR_CORE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

using tvr::plr::core::AdaptorInterface;
using tvr::plr::core::CoreInterface;
using tvr::plr::core::sample::SampleCore;

namespace {
// The core that the command channel drives: the one attached last.
SampleCore* current = nullptr;
}  // namespace

// A null adaptor gets no core: the loader then simply finds none attached.
PLR_CORE_EXPORT CoreInterface* attach(AdaptorInterface* adaptor) {
    if (adaptor == nullptr) return nullptr;
    auto* core = new SampleCore(adaptor);
    current = core;
    ++tvr::plr::core::sample::stats().attaches;
    return core;
}

PLR_CORE_EXPORT void detach(CoreInterface* core) {
    if (core == nullptr) return;
    if (core == current) current = nullptr;
    delete core;
    ++tvr::plr::core::sample::stats().detaches;
}

PLR_CORE_EXPORT const PlrSampleCoreStats* plr_sample_core_stats() { return &tvr::plr::core::sample::stats(); }

// Runs one command line against the attached core. *answer points at the text
// to print, valid until the next call. Answers 1 when the verb succeeded.
PLR_CORE_EXPORT int plr_sample_core_command(const char* line, const char** answer) {
    static std::string text;
    int ok = 0;
    if (current == nullptr) {
        text = "the core is not attached";
    } else {
        const auto result = tvr::plr::core::sample::runCommand(*current, line ? line : "");
        text = result.text;
        ok = result.ok ? 1 : 0;
    }
    if (answer) *answer = text.c_str();
    return ok;
}
