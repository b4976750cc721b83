// The library's exports: attach, detach and the test counters.

#include "sample_core.h"
#include "stats.h"

#if defined(_WIN32)
#define PLR_CORE_EXPORT extern "C" __declspec(dllexport)
#else
#define PLR_CORE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

using tvr::plr::core::AdaptorInterface;
using tvr::plr::core::CoreInterface;
using tvr::plr::core::sample::SampleCore;

// A null adaptor gets no core: the loader then simply finds none attached.
PLR_CORE_EXPORT CoreInterface* attach(AdaptorInterface* adaptor) {
    if (adaptor == nullptr) return nullptr;
    CoreInterface* core = new SampleCore(adaptor);
    ++tvr::plr::core::sample::stats().attaches;
    return core;
}

PLR_CORE_EXPORT void detach(CoreInterface* core) {
    if (core == nullptr) return;
    delete core;
    ++tvr::plr::core::sample::stats().detaches;
}

PLR_CORE_EXPORT const PlrSampleCoreStats* plr_sample_core_stats() { return &tvr::plr::core::sample::stats(); }
