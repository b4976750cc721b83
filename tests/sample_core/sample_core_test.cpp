// Loads core.dll at run time, as the module does, and drives it through a
// recording adaptor (TestAdaptor, shared with the interface tests).

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include "implementations.h"
#include "stats.h"

namespace tvr::plr::test {
namespace {

using core::CoreInterface;

class Library {
public:
    explicit Library(std::string path) {
#if defined(_WIN32)
        for (char& c : path)
            if (c == '/') c = '\\';
        if (!path.empty() && path[0] == '\\') path = "Z:" + path;
        handle_ = LoadLibraryA(path.c_str());
#else
        handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
#endif
    }
    ~Library() {
        if (!handle_) return;
#if defined(_WIN32)
        FreeLibrary(static_cast<HMODULE>(handle_));
#else
        dlclose(handle_);
#endif
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    bool loaded() const { return handle_ != nullptr; }

    template <class Fn>
    Fn symbol(const char* name) const {
#if defined(_WIN32)
        return reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name)));
#else
        return reinterpret_cast<Fn>(dlsym(handle_, name));
#endif
    }

private:
    void* handle_ = nullptr;
};

class SampleCoreTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { library = new Library(PLR_SAMPLE_CORE_PATH); }
    static void TearDownTestSuite() {
        delete library;
        library = nullptr;
    }

    void SetUp() override {
        ASSERT_TRUE(library->loaded()) << PLR_SAMPLE_CORE_PATH;
        attach = library->symbol<core::AttachFn>("attach");
        detach = library->symbol<core::DetachFn>("detach");
        auto statsFn = library->symbol<PlrSampleCoreStatsFn>("plr_sample_core_stats");
        ASSERT_NE(attach, nullptr);
        ASSERT_NE(detach, nullptr);
        ASSERT_NE(statsFn, nullptr);
        stats = statsFn();
    }

    static Library* library;
    core::AttachFn attach = nullptr;
    core::DetachFn detach = nullptr;
    const PlrSampleCoreStats* stats = nullptr;
};

Library* SampleCoreTest::library = nullptr;

TEST_F(SampleCoreTest, AttachShowsTheHostIdentityAndDetachFreesTheCore) {
    TestAdaptor adaptor;
    const PlrSampleCoreStats before = *stats;

    EXPECT_EQ(attach(nullptr), nullptr);
    CoreInterface* core = attach(&adaptor);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(stats->attaches, before.attaches + 1);
    EXPECT_TRUE(adaptor.calls.empty()) << "attach alone asks the adaptor nothing";

    ::testing::internal::CaptureStdout();
    core->showMain(0);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "core: main window opened in CINEMA4D R 11008 (Cinema 4D R10 Adaptor)\n");
    const std::set<std::string> asked(adaptor.calls.begin(), adaptor.calls.end());
    EXPECT_EQ(asked, (std::set<std::string>{"getInterfaceVersion", "getDisplayName", "getHostName",
                                            "getHostVersion", "getHostIdentifiers"}));
    // The identifiers came back through a sink whose storage the core owns.
    EXPECT_NE(adaptor.identifierTarget, nullptr);
    EXPECT_EQ(stats->hostIdentifiers, 3);
    EXPECT_EQ(stats->mainWindowsOpened, before.mainWindowsOpened + 1);

    detach(core);
    detach(nullptr);
    EXPECT_EQ(stats->detaches, before.detaches + 1);
}

TEST_F(SampleCoreTest, AnUnexpectedInterfaceVersionIsReportedFirst) {
    TestAdaptor adaptor;
    adaptor.version = 9100;
    CoreInterface* core = attach(&adaptor);
    ASSERT_NE(core, nullptr);
    ::testing::internal::CaptureStdout();
    core->showMain(0);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "core: adaptor interface version 9100, expected 9201\n"
              "core: main window opened in CINEMA4D R 11008 (Cinema 4D R10 Adaptor)\n");
    detach(core);
}

TEST_F(SampleCoreTest, RunLoopReportsOnceEveryTwentyFiveSlices) {
    TestAdaptor adaptor;
    CoreInterface* core = attach(&adaptor);
    ASSERT_NE(core, nullptr);
    const std::int64_t before = stats->timeSlices;

    ::testing::internal::CaptureStdout();
    for (int i = 0; i < 24; ++i) core->runLoopStep();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");

    ::testing::internal::CaptureStdout();
    for (int i = 0; i < 26; ++i) core->runLoopStep();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "core: 25 time slices\ncore: 50 time slices\n");
    EXPECT_EQ(stats->timeSlices, before + 50);

    // Each core counts its own slices.
    CoreInterface* second = attach(&adaptor);
    ::testing::internal::CaptureStdout();
    for (int i = 0; i < 25; ++i) second->runLoopStep();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "core: 25 time slices\n");
    EXPECT_TRUE(adaptor.calls.empty());
    detach(second);
    detach(core);
}

TEST_F(SampleCoreTest, StateSurvivesSaveAndLoadWithoutGrowing) {
    TestAdaptor adaptor;
    CoreInterface* core = attach(&adaptor);
    ASSERT_NE(core, nullptr);
    const PlrSampleCoreStats before = *stats;

    util::xml::Element fresh;
    core->saveState(fresh);
    EXPECT_EQ(fresh.name(), "samplecore");
    EXPECT_EQ(fresh.attribute("timeSlices"), "0");
    EXPECT_EQ(fresh.childCount(), 0u);

    util::xml::Tag document("PLT");
    document.addChild(util::xml::TagWithData("masternodes", "rig"));
    ::testing::internal::CaptureStdout();
    core->loadState(document);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "core: state loaded (PLT)\n");
    for (int i = 0; i < 3; ++i) core->runLoopStep();

    util::xml::Element saved;
    core->saveState(saved);
    EXPECT_EQ(saved.attribute("timeSlices"), "3");
    ASSERT_EQ(saved.childCount(), 1u);
    EXPECT_EQ(*saved.childAt(0), document);

    // A core handed its own saved element back saves the same tree again.
    CoreInterface* next = attach(&adaptor);
    ::testing::internal::CaptureStdout();
    next->loadState(saved);
    ::testing::internal::GetCapturedStdout();
    for (int i = 0; i < 3; ++i) next->runLoopStep();
    util::xml::Element again;
    next->saveState(again);
    EXPECT_EQ(again, saved);

    EXPECT_EQ(stats->statesLoaded, before.statesLoaded + 2);
    EXPECT_EQ(stats->statesSaved, before.statesSaved + 3);
    detach(next);
    detach(core);
}

#if defined(__linux__)
TEST_F(SampleCoreTest, ExportsOnlyItsEntryPoints) {
    std::FILE* pipe = popen("nm -D --defined-only '" PLR_SAMPLE_CORE_PATH "' 2>/dev/null", "r");
    ASSERT_NE(pipe, nullptr);
    std::set<std::string> exported;
    char line[512];
    while (std::fgets(line, sizeof line, pipe)) {
        char type = 0;
        char name[400] = {0};
        // "<address> <type> <name>"
        if (std::sscanf(line, "%*s %c %399s", &type, name) == 2) exported.insert(name);
    }
    const int status = pclose(pipe);
    if (exported.empty() && status != 0) GTEST_SKIP() << "nm is not available";
    EXPECT_EQ(exported, (std::set<std::string>{"attach", "detach", "plr_sample_core_stats"}));
}
#endif

}  // namespace
}  // namespace tvr::plr::test
