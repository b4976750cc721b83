// Counters the sample core keeps for tests, read through its one extra
// export, plr_sample_core_stats. Plain C so that a test can declare the
// export without any of the core's classes.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct PlrSampleCoreStats {
    int32_t attaches;           // attach calls that returned a core
    int32_t detaches;           // cores deleted by detach
    int32_t mainWindowsOpened;  // showMain calls
    int32_t hostIdentifiers;    // identifiers the adaptor handed back on the last showMain
    int64_t timeSlices;         // runLoopStep calls, over every core
    int32_t statesSaved;
    int32_t statesLoaded;
};

typedef const struct PlrSampleCoreStats* (*PlrSampleCoreStatsFn)(void);

#ifdef __cplusplus
}
#endif
