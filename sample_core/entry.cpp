// The library's exports: attach, detach, the test counters, the command channel
// and the coverage table.

#include <cstdint>
#include <string>

#include "sample_core/command_channel.h"
#include "sample_core/coverage.h"
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

// Row `index` of the coverage table: the operation's name and how often the
// core called it since the library was loaded. Answers 0 past the last row.
PLR_CORE_EXPORT int plr_sample_core_coverage(int index, const char** name, int64_t* count) {
    const auto rows = tvr::plr::core::sample::coverageTable();
    if (index < 0 || static_cast<std::size_t>(index) >= rows.size()) return 0;
    if (name) *name = rows[static_cast<std::size_t>(index)].name;
    if (count) *count = rows[static_cast<std::size_t>(index)].count;
    return 1;
}
