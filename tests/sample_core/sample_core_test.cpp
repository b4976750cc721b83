// Loads core.dll at run time, as the module does, and drives it through a
// recording adaptor (TestAdaptor, shared with the interface tests).

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>
#include <utility>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include "sample_core/stats.h"
#include "test_support/core_api_implementations.h"

namespace tvr::plr::test {
namespace {

void* openLibrary(std::string path) {
#if defined(_WIN32)
    for (char& c : path)
        if (c == '/') c = '\\';
    if (!path.empty() && path[0] == '\\') path = "Z:" + path;
    return LoadLibraryA(path.c_str());
#else
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
#endif
}

template <class Fn>
Fn symbol(void* library, const char* name) {
#if defined(_WIN32)
    return reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name)));
#else
    return reinterpret_cast<Fn>(dlsym(library, name));
#endif
}

// Runs `action` and answers what the core wrote to stdout meanwhile.
template <class Action>
std::string output(Action action) {
    ::testing::internal::CaptureStdout();
    action();
    return ::testing::internal::GetCapturedStdout();
}

// The library is loaded once and stays loaded for the whole run.
class SampleCoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        static void* const loaded = openLibrary(PLR_SAMPLE_CORE_PATH);
        library = loaded;
        ASSERT_NE(library, nullptr) << PLR_SAMPLE_CORE_PATH;
        attach = symbol<AttachFn>(library, "attach");
        detach = symbol<DetachFn>(library, "detach");
        const auto statsFn = symbol<PlrSampleCoreStatsFn>(library, "plr_sample_core_stats");
        ASSERT_TRUE(attach && detach && statsFn);
        stats = statsFn();
        before = *stats;
    }

    void* library = nullptr;
    AttachFn attach = nullptr;
    DetachFn detach = nullptr;
    const PlrSampleCoreStats* stats = nullptr;
    PlrSampleCoreStats before{};
    TestAdaptor adaptor;
};

TEST_F(SampleCoreTest, AttachShowsTheHostIdentityAndDetachFreesTheCore) {
    EXPECT_EQ(attach(nullptr), nullptr);
    CoreInterface* core = attach(&adaptor);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(stats->attaches, before.attaches + 1);
    EXPECT_TRUE(adaptor.calls.empty()) << "attach alone asks the adaptor nothing";

    EXPECT_EQ(output([&] { core->showMain(0); }),
              "core: main window opened in CINEMA4D R 11008 (Cinema 4D R10 Adaptor)\n");
    const std::set<std::string> asked(adaptor.calls.begin(), adaptor.calls.end());
    EXPECT_EQ(asked, (std::set<std::string>{"getInterfaceVersion", "getDisplayName", "getHostName",
                                            "getHostVersion", "getHostIdentifiers"}));
    // The identifiers came back through a sink whose storage the core owns.
    EXPECT_EQ(stats->hostIdentifiers, 3);
    EXPECT_EQ(stats->mainWindowsOpened, before.mainWindowsOpened + 1);

    // An adaptor of another interface version is told so first.
    adaptor.version = 9100;
    EXPECT_EQ(output([&] { core->showMain(0); }),
              "core: adaptor interface version 9100, expected 9201\n"
              "core: main window opened in CINEMA4D R 11008 (Cinema 4D R10 Adaptor)\n");

    detach(core);
    detach(nullptr);
    EXPECT_EQ(stats->detaches, before.detaches + 1);
}

TEST_F(SampleCoreTest, RunLoopReportsOnceEveryTwentyFiveSlicesPerCore) {
    CoreInterface* core = attach(&adaptor);
    CoreInterface* second = attach(&adaptor);
    ASSERT_TRUE(core && second);
    const auto steps = [](CoreInterface* target, int count) {
        return output([&] {
            for (int i = 0; i < count; ++i) target->runLoopStep();
        });
    };
    EXPECT_EQ(steps(core, 24), "");
    EXPECT_EQ(steps(core, 26), "core: 25 time slices\ncore: 50 time slices\n");
    EXPECT_EQ(steps(second, 25), "core: 25 time slices\n");
    EXPECT_EQ(stats->timeSlices, before.timeSlices + 75);
    EXPECT_TRUE(adaptor.calls.empty());
    detach(second);
    detach(core);
}

TEST_F(SampleCoreTest, StateSurvivesSaveAndLoadWithoutGrowing) {
    CoreInterface* core = attach(&adaptor);
    CoreInterface* next = attach(&adaptor);
    ASSERT_TRUE(core && next);
    util::xml::Element fresh;
    core->saveState(fresh);
    EXPECT_EQ(fresh.name(), "samplecore");
    EXPECT_EQ(fresh.attribute("timeSlices"), "0");
    EXPECT_EQ(fresh.childCount(), 0u);

    util::xml::Tag document("PLT");
    document.addChild(util::xml::TagWithData("masternodes", "rig"));
    EXPECT_EQ(output([&] { core->loadState(document); }), "core: state loaded (PLT)\n");
    for (int i = 0; i < 3; ++i) core->runLoopStep();
    util::xml::Element saved;
    core->saveState(saved);
    EXPECT_EQ(saved.attribute("timeSlices"), "3");
    ASSERT_EQ(saved.childCount(), 1u);
    EXPECT_EQ(*saved.childAt(0), document);

    // A core handed its own saved element back saves the same tree again.
    output([&] { next->loadState(saved); });
    for (int i = 0; i < 3; ++i) next->runLoopStep();
    util::xml::Element again;
    next->saveState(again);
    EXPECT_EQ(again, saved);

    EXPECT_EQ(stats->statesLoaded, before.statesLoaded + 2);
    EXPECT_EQ(stats->statesSaved, before.statesSaved + 3);
    detach(next);
    detach(core);
}

// The range verb hands the adaptor start and end through the time-range slot,
// and reports what the adaptor then answers.
TEST_F(SampleCoreTest, RangeVerbHandsTheAdaptorStartAndEnd) {
    using CommandFn = int (*)(const char* line, const char** answer);
    const auto command = symbol<CommandFn>(library, "plr_sample_core_command");
    ASSERT_NE(command, nullptr);
    CoreInterface* core = attach(&adaptor);
    ASSERT_NE(core, nullptr);
    const char* answer = nullptr;
    EXPECT_EQ(command("range 0.5 4.25", &answer), 1);
    EXPECT_EQ(adaptor.timeRange, (std::pair<double, double>{0.5, 4.25}));
    EXPECT_STREQ(answer, "range 0.5 s to 4.25 s");
    EXPECT_EQ(adaptor.calls, (std::vector<std::string>{"setTimeRange", "getTimeRange"}));
    detach(core);
}

#if defined(__linux__)
TEST_F(SampleCoreTest, ExportsOnlyItsEntryPoints) {
    std::FILE* pipe = popen("nm -D --defined-only '" PLR_SAMPLE_CORE_PATH "' 2>/dev/null", "r");
    ASSERT_NE(pipe, nullptr);
    std::set<std::string> exported;
    char line[512], name[400];
    // "<address> <type> <name>"
    while (std::fgets(line, sizeof line, pipe))
        if (std::sscanf(line, "%*s %*c %399s", name) == 1) exported.insert(name);
    if (pclose(pipe) != 0 && exported.empty()) GTEST_SKIP() << "nm is not available";
    EXPECT_EQ(exported, (std::set<std::string>{"attach", "detach", "plr_sample_core_command", "plr_sample_core_coverage",
                                              "plr_sample_core_stats"}));
}
#endif

}  // namespace
}  // namespace tvr::plr::test
