// Registering many nodes in one document, through the module loaded into the
// embedded host: the multi-document check must keep registration linear.
//
// A program of its own: it changes the allocator's trim threshold, which also
// turns off glibc's moving mmap threshold for the rest of the process and would
// change what the other node benchmarks measure.
#include <benchmark/benchmark.h>

#include <vector>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "loaded_host.h"
#include "nodes/c4d_node.h"

namespace {

using namespace tvr::plr::bench;
using tvr::plr::adaptor::cinema4d::CC4DNode;

// The nodes of one round are freed while the clock is stopped. The allocator keeps
// a small heap for the next round but hands a large one back to the system, so
// that only the large counts would make their nodes in fresh pages and pay the
// page faults: the counts are compared on a heap kept for the next round alike.
struct HeapKeptBetweenRounds {
    HeapKeptBetweenRounds() { setTrimThreshold(1 << 30); }
    ~HeapKeptBetweenRounds() { setTrimThreshold(128 * 1024); }  // the allocator's default
    static void setTrimThreshold(int bytes) {
#if defined(__GLIBC__)
        mallopt(M_TRIM_THRESHOLD, bytes);
#else
        (void)bytes;
#endif
    }
};

// Nodes over objects already in the document, registered one by one as the
// core's stored state would bind them. The node count is the argument.
void BM_RegisterNodes(benchmark::State& state) {
    HeapKeptBetweenRounds heap;
    LoadedHost h;
    const auto count = static_cast<std::size_t>(state.range(0));
    std::vector<BaseObject*> objects;
    for (std::size_t i = 0; i < count; ++i) objects.push_back(addObject(h.doc, nullptr));
    std::vector<CC4DNode*> nodes;
    nodes.reserve(count);
    for (auto _ : state) {
        for (BaseObject* op : objects) nodes.push_back(new CC4DNode(&h.master, "n", nullptr, op, false));
        state.PauseTiming();
        for (auto it = nodes.rbegin(); it != nodes.rend(); ++it) delete *it;
        nodes.clear();
        state.ResumeTiming();
    }
    state.counters["per node"] =
        benchmark::Counter(static_cast<double>(count), benchmark::Counter::kIsIterationInvariantRate |
                                                           benchmark::Counter::kInvert);
}

// The adaptor's share alone: nodes already made are taken out of the live
// list and registered again, multi-document check included.
void BM_RegisterOnly(benchmark::State& state) {
    LoadedHost h;
    const auto count = static_cast<std::size_t>(state.range(0));
    std::vector<CC4DNode*> nodes;
    for (std::size_t i = 0; i < count; ++i) nodes.push_back(new CC4DNode(&h.master, "n", nullptr, addObject(h.doc, nullptr), false));
    for (auto _ : state) {
        state.PauseTiming();
        h.adaptor->nodes.clear();
        state.ResumeTiming();
        for (CC4DNode* n : nodes) h.adaptor->registerNode(n);
    }
    for (auto it = nodes.rbegin(); it != nodes.rend(); ++it) delete *it;
}
BENCHMARK(BM_RegisterOnly)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RegisterNodes)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
