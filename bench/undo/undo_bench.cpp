// The core's steps in the host's undo stack at length: N steps added to one
// document, each its own group, then every one undone and redone by the
// user's undo and redo, one press and one event-loop pass each; and the
// manager's own part of a step (DoUndo and DoRedo by one position). Run for
// N = 1000 and 10000: the time per step stays flat when the work is linear.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/cundo.h"
#include "embedded_host/runtime/embedded_host.h"
#include "embedded_host/runtime/host_context.h"
#include "plugin/plugin_main.h"
#include "undo/c4d_undo_manager.h"

namespace {

namespace emb = tvr::plr::embedded;
using namespace tvr::plr::adaptor::cinema4d;

// A core step that does nothing but count (back to 0 after an undo and a
// redo of each), so the figures are the adaptor's and the host's.
class CountingStep : public tvr::plr::CUndo {
public:
    explicit CountingStep(long long& value) : value_(value) {}
    int undo(bool) override { return static_cast<int>(--value_); }
    int redo() override { return static_cast<int>(++value_); }
    void release() override {}

private:
    long long& value_;
};

struct Scene {
    Scene() : host(options()) {
        host.loadModule(&c4d_main, "pelloran");
        host.newDocument("bench");
        adaptor = C4DAdaptorInterface::instance();
    }
    ~Scene() { host.shutdown(); }

    static emb::HostOptions options() {
        emb::HostOptions o;
        o.crashHandlers = false;
        return o;
    }
    void addSteps(std::size_t n) {
        for (std::size_t i = 0; i < n; ++i) {
            steps.push_back(std::make_unique<CountingStep>(value));
            adaptor->beginUndo("step");
            adaptor->addUndo(steps.back().get());
            adaptor->acceptUndo();
        }
    }
    void settle() {
        emb::HostContext& c = host.context();
        while (c.eventPending || !c.specialEvents.empty()) host.runCycle();
    }

    emb::EmbeddedHost host;
    C4DAdaptorInterface* adaptor = nullptr;
    std::vector<std::unique_ptr<CountingStep>> steps;
    long long value = 0;
};

void perStep(benchmark::State& state, std::size_t steps) {
    state.counters["per_step"] = benchmark::Counter(static_cast<double>(steps),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

// Ends a timed run: the scene goes (untimed); false, with the run marked
// failed, when some step did not come back.
bool allBack(benchmark::State& state, std::unique_ptr<Scene>& scene) {
    state.PauseTiming();
    const bool whole = scene->value == 0;
    scene.reset();
    state.ResumeTiming();
    if (!whole) state.SkipWithError("the steps did not all come back");
    return whole;
}

void BM_AddSteps(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>();
        state.ResumeTiming();
        scene->addSteps(n);
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
    perStep(state, n);
}

// Every step undone and redone by a press of the user's undo or redo and the
// event-loop passes that follow it (the tag notices, the message runs the step).
void BM_UserUndoRedoEachStep(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>();
        scene->addSteps(n);
        scene->settle();
        state.ResumeTiming();
        for (std::size_t i = 0; i < n; ++i) {
            scene->host.undo();
            scene->settle();
        }
        for (std::size_t i = 0; i < n; ++i) {
            scene->host.redo();
            scene->settle();
        }
        if (!allBack(state, scene)) break;
    }
    perStep(state, 2 * n);
}

// The manager's own part: one position back, then one forward, for every step.
void BM_ManagerUndoRedoEachStep(benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto scene = std::make_unique<Scene>();
        scene->addSteps(n);
        C4DUndoManager* manager = C4DUndoManager::instance();
        state.ResumeTiming();
        for (std::size_t i = n; i > 0; --i) manager->DoUndo(static_cast<std::uint32_t>(i - 1));
        for (std::size_t i = 0; i < n; ++i) manager->DoRedo(static_cast<std::uint32_t>(i + 1));
        if (!allBack(state, scene)) break;
    }
    perStep(state, 2 * n);
}

BENCHMARK(BM_AddSteps)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_UserUndoRedoEachStep)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ManagerUndoRedoEachStep)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
