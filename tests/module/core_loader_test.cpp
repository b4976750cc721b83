// The core loader against the recording platform's fake system: registry,
// library, window and timer calls with their exact arguments and order.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "plugin/core_loader.h"
#include "test_support/recording_platform.h"
#include "util/singleton.h"

namespace tvr::plr::adaptor::cinema4d {
namespace {

namespace pf = tvr::platform;

constexpr const char* kKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo";
constexpr const char* kCoreDir = "C:\\Prog\\X\\pelloran\\data\\core\\win\\x64";
constexpr const char* kCorePath = "C:\\Prog\\X\\pelloran\\data\\core\\win\\x64\\core.dll";

struct FakeCore : core::CoreInterface {
    void saveState(tvr::util::xml::Element&) override {}
    void loadState(const tvr::util::xml::Element&) override {}
    void showMain(int) override {}
    void runLoopStep() override { ++steps; }
    int steps = 0;
};

// What the fake core library's exports saw: attach hands out cores[0], cores[1], ...
struct CoreLog {
    std::vector<core::AdaptorInterface*> attached;
    std::vector<core::CoreInterface*> detached;
    FakeCore cores[2];
};
CoreLog* g_coreLog = nullptr;

core::CoreInterface* fakeAttach(core::AdaptorInterface* adaptor) {
    g_coreLog->attached.push_back(adaptor);
    return &g_coreLog->cores[(g_coreLog->attached.size() - 1) % 2];
}
void fakeDetach(core::CoreInterface* core) { g_coreLog->detached.push_back(core); }

std::string hexOf(std::uintptr_t v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "0x%llx", static_cast<unsigned long long>(v));
    return buf;
}

class CoreLoaderTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_coreLog = &log;
        pf::setPlatform(&rec);
        adaptor = C4DAdaptorInterface::instance();
        rec.setRegistryValue(kKey, "path", "C:/Prog/X");
    }
    void TearDown() override {
        detachCore(adaptor);
        tvr::util::SingletonCollector::instance()->destroyAll();
        pf::setPlatform(nullptr);
        g_coreLog = nullptr;
    }
    void installCore(bool withAttach = true, bool withDetach = true) {
        std::map<std::string, void*> symbols;
        if (withAttach) symbols["attach"] = reinterpret_cast<void*>(&fakeAttach);
        if (withDetach) symbols["detach"] = reinterpret_cast<void*>(&fakeDetach);
        rec.addLibrary(kCorePath, std::move(symbols));
    }
    std::vector<std::string> callsOf(const std::vector<std::string>& names) const {
        std::vector<std::string> out;
        for (const pf::PlatformCall& c : rec.calls())
            for (const std::string& n : names)
                if (c.function == n) out.push_back(c.text());
        return out;
    }

    pf::RecordingPlatform rec;
    CoreLog log;
    C4DAdaptorInterface* adaptor = nullptr;
};

TEST_F(CoreLoaderTest, InstallPathAppendsTheFolderOfEachKeyToTheRegistryValue) {
    const std::pair<const char*, const char*> cases[] = {
        {"data", "/pelloran/data"}, {"plugin", "/pelloran/plugins/win/x64"}, {"doc", "/pelloran/doc"},
        {"prm", "/pelloran/prm"},   {"", "/pelloran"},                       {"plr", "/pelloran"},
        {"other", ""},              {"Data", ""},  // keys are exact
    };
    for (const auto& [key, folder] : cases) EXPECT_EQ(installPath(key), std::string("C:/Prog/X") + folder) << key;

    rec.clear();
    installPath("doc");
    ASSERT_EQ(rec.calls().size(), 3u);
    const std::string key = rec.calls()[0].out;
    const std::vector<std::string> expected = {
        "RegOpenKeyExA(0x80000002, \"SOFTWARE\\Wow6432Node\\Tavrelo\", 0, 0x20019)",
        "RegQueryValueExA(" + key + ", \"path\", type, buffer, 1024)",
        "RegCloseKey(" + key + ")",
    };
    EXPECT_EQ(rec.transcript(), expected);
    EXPECT_EQ(rec.openKeys(), 0u);
    rec.setRegistryText("REGEDIT4\n");
    EXPECT_EQ(installPath("data"), "");  // no install root: not even the folder
    // A value of another type is no install root either, not its bytes read as text.
    ASSERT_TRUE(rec.setRegistryText("REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo]\n"
                                    "\"path\"=dword:00000043\n"));
    EXPECT_EQ(installPath("data"), "");
    EXPECT_EQ(rec.openKeys(), 0u);
}

TEST_F(CoreLoaderTest, MissingCoreShowsBothBoxesInOrderAndIsLookedForAgainNextTime) {
    EXPECT_EQ(loadCore(adaptor), 1);
    EXPECT_EQ(adaptor->getCore(), nullptr);
    const std::vector<std::string> expected = {
        std::string("SetDllDirectoryA(\"") + kCoreDir + "\")",
        std::string("LoadLibraryA(\"") + kCorePath + "\")",
        "SetDllDirectoryA(null)",
        "FormatMessageA(0x1100, null, 126, 0x400, buffer, 0)",
        "MessageBoxA(null, \"LoadLibrary failed with error 126: The specified module could not be found.\r\n\", "
        "\"Error\", 0x0)",
        "MessageBoxA(null, \"Couldn't load C:/Prog/X/pelloran/data\\Core\\Core64.dll\", \"Error\", 0x0)",
    };
    EXPECT_EQ(callsOf({"SetDllDirectoryA", "LoadLibraryA", "FormatMessageA", "MessageBoxA"}), expected);
    EXPECT_EQ(rec.count("RegisterClassA"), 0u);
    EXPECT_EQ(rec.liveLocalBlocks(), 0u);  // the system text and the box text are released

    rec.clear();
    EXPECT_EQ(loadCore(adaptor), 1);
    EXPECT_EQ(callsOf({"SetDllDirectoryA", "LoadLibraryA", "FormatMessageA", "MessageBoxA"}), expected);

    // Without an install root the core is looked for below the current drive.
    rec.setRegistryText("REGEDIT4\n");
    EXPECT_EQ(loadCore(adaptor), 1);
    EXPECT_EQ(rec.find("LoadLibraryA", 1)->str(0), "\\data\\core\\win\\x64\\core.dll");
    EXPECT_EQ(rec.messageBoxes().back().text, "Couldn't load \\Core\\Core64.dll");
}

TEST_F(CoreLoaderTest, AttachStartsTheRunLoopTimerAndDetachUndoesItInOrder) {
    runLoopWindowProc(nullptr, pf::WmTimer, 1, 0);  // a tick before attach reaches no core
    installCore();
    ASSERT_EQ(loadCore(adaptor), 0);
    EXPECT_EQ(log.attached, std::vector<core::AdaptorInterface*>{adaptor});
    EXPECT_EQ(adaptor->getCore(), &log.cores[0]);
    ASSERT_NE(runLoopWindow(), nullptr);
    const std::string window = hexOf(rec.find("CreateWindowExA")->result);
    const std::vector<std::string> windowCalls = {
        "RegisterClassA(\"PLRRunLoopWindow\", proc)",
        "GetModuleHandleA(null)",
        "CreateWindowExA(0x0, \"PLRRunLoopWindow\", \"\", 0x0, 0, 0, 0, 0, null, null, " +
            hexOf(rec.find("GetModuleHandleA")->result) + ", null)",
        "SetTimer(" + window + ", 1, 40, null)",
    };
    EXPECT_EQ(callsOf({"RegisterClassA", "GetModuleHandleA", "CreateWindowExA", "SetTimer"}), windowCalls);

    // Timer ticks reach the core only while it is attached.
    rec.pumpTimers(40);
    rec.pumpTimers(80);
    EXPECT_EQ(log.cores[0].steps, 2);
    runLoopWindowProc(runLoopWindow(), 15, 0, 0);  // other messages only go to the default procedure
    EXPECT_EQ(log.cores[0].steps, 2);
    runLoopWindowProc(runLoopWindow(), pf::WmTimer, 7, 0);  // a tick is a tick, whatever its timer's id
    EXPECT_EQ(log.cores[0].steps, 3);
    // Every message, timer messages included, also goes to the default procedure
    // (the tick before attach, three timer ticks, message 15).
    EXPECT_EQ(rec.count("DefWindowProcA"), 5u);
    EXPECT_EQ(rec.find("DefWindowProcA")->args[1], "275");

    rec.clear();
    EXPECT_EQ(detachCore(adaptor), 0);
    const std::vector<std::string> expectedOrder = {"DestroyWindow",  "GetModuleHandleA", "UnregisterClassA",
                                                    "GetProcAddress", "FreeLibrary"};
    EXPECT_EQ(rec.functions(), expectedOrder);
    EXPECT_EQ(rec.find("DestroyWindow")->args[0], window);
    EXPECT_EQ(rec.find("UnregisterClassA")->str(0), "PLRRunLoopWindow");
    EXPECT_EQ(rec.find("GetProcAddress")->str(1), "detach");
    EXPECT_EQ(log.detached, std::vector<core::CoreInterface*>{&log.cores[0]});
    EXPECT_EQ(adaptor->getCore(), nullptr);
    EXPECT_EQ(runLoopWindow(), nullptr);
    EXPECT_EQ(rec.loadedLibraries(), 0u);
    EXPECT_EQ(rec.windowCount(), 0u);

    // A second detach does nothing at all.
    rec.clear();
    EXPECT_EQ(detachCore(adaptor), 0);
    EXPECT_TRUE(rec.calls().empty());
}

TEST_F(CoreLoaderTest, SecondLoadReplacesCoreAndWindowAndDetachFreesOnce) {
    installCore();
    ASSERT_EQ(loadCore(adaptor), 0);
    ASSERT_EQ(loadCore(adaptor), 0);
    EXPECT_EQ(adaptor->getCore(), &log.cores[1]);
    EXPECT_EQ(rec.windowCount(), 2u);
    EXPECT_EQ(rec.loadedLibraries(), 2u);

    // Both windows tick, and both reach the latest core.
    rec.pumpTimers(40);
    EXPECT_EQ(log.cores[1].steps, 2);
    EXPECT_EQ(log.cores[0].steps, 0);

    detachCore(adaptor);
    EXPECT_EQ(callsOf({"DestroyWindow"}),
              std::vector<std::string>{"DestroyWindow(" + hexOf(rec.find("CreateWindowExA", 1)->result) + ")"});
    EXPECT_EQ(rec.windowCount(), 1u);  // the first window lives on
    EXPECT_EQ(rec.count("FreeLibrary"), 1u);
    EXPECT_EQ(log.detached, std::vector<core::CoreInterface*>{&log.cores[1]});

    // The leftover window keeps ticking, into nothing.
    rec.pumpTimers(80);
    EXPECT_EQ(log.cores[1].steps, 2);
}

TEST_F(CoreLoaderTest, CoreMissingAnExportIsReportedAndReleased) {
    installCore(false, true);
    EXPECT_EQ(loadCore(adaptor), 1);
    EXPECT_EQ(adaptor->getCore(), nullptr);
    EXPECT_EQ(rec.loadedLibraries(), 0u);
    EXPECT_EQ(rec.count("RegisterClassA"), 0u);
    ASSERT_EQ(rec.messageBoxes().size(), 1u);
    EXPECT_EQ(rec.messageBoxes()[0].text.rfind("GetProcAddress failed with error 127: ", 0), 0u);

    // Without detach the core attaches, and detaching still releases window and library.
    installCore(true, false);
    ASSERT_EQ(loadCore(adaptor), 0);
    EXPECT_EQ(detachCore(adaptor), 0);
    EXPECT_EQ(rec.loadedLibraries(), 0u);
    EXPECT_EQ(rec.windowCount(), 0u);
    EXPECT_EQ(rec.messageBoxes().size(), 2u);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d
