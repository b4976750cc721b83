// The in-process emulation of the Windows calls: registry file, loader, texts, windows and timers.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/error_codes.h"
#include "platform/message_pump.h"
#include "platform/platform.h"
#include "platform_helpers.h"

namespace tvr::platform {
namespace {

const char* const TavreloKey = "SOFTWARE\\Wow6432Node\\Tavrelo";

class Emulation : public ::testing::Test {
protected:
    Platform& p = systemPlatform();
    std::string file = ::testing::TempDir() + "plr_registry_" +
                       ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".reg";

    void writeFile(const std::string& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    void useRegistry(const std::string& text) {
        writeFile(file, text);
        ::setenv("PLR_REGISTRY_FILE", file.c_str(), 1);
    }
    void SetUp() override { ::unsetenv("PLR_REGISTRY_FILE"); }
    void TearDown() override {
        ::unsetenv("PLR_REGISTRY_FILE");
        std::remove(file.c_str());
    }
    std::string pathOf(KeyHandle key) {
        char buffer[1024] = {};
        std::uint32_t size = sizeof buffer;
        long r = p.regQueryValueEx(key, "path", nullptr, reinterpret_cast<unsigned char*>(buffer), &size);
        return r == ErrorSuccess ? std::string(buffer) : std::string();
    }
};

TEST_F(Emulation, RegistryFileIsParsedWithEscapesCaseFreeNamesAndWin32Sizes) {
    useRegistry("REGEDIT4\r\n\r\n; installed by hand\r\n"
                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo]\r\n"
                "\"Path\"=\"C:\\\\Prog\\\\\\\"X\\\"\"\r\n"
                "\"count\"=dword:0000002a\r\n"
                "\"broken=\"no end\r\n"
                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Other]\r\n"
                "\"path\"=\"elsewhere\"\r\n");
    KeyHandle key = nullptr;
    ASSERT_EQ(p.regOpenKeyEx(HKeyLocalMachine, "software\\WOW6432NODE\\tavrelo", 0, KeyRead, &key), ErrorSuccess);
    char buffer[1024];
    auto* data = reinterpret_cast<unsigned char*>(buffer);
    std::uint32_t size = sizeof buffer, type = 0;
    ASSERT_EQ(p.regQueryValueEx(key, "path", &type, data, &size), ErrorSuccess);
    EXPECT_EQ(type, RegSz);
    EXPECT_EQ(size, 12u);  // the text and its terminating zero
    EXPECT_STREQ(buffer, "C:\\Prog\\\"X\"");
    size = 11;  // room for the text but not its zero
    EXPECT_EQ(p.regQueryValueEx(key, "path", nullptr, data, &size), static_cast<long>(ErrorMoreData));
    EXPECT_EQ(size, 12u);
    size = 0;
    EXPECT_EQ(p.regQueryValueEx(key, "path", nullptr, nullptr, &size), ErrorSuccess);  // asks the size only
    EXPECT_EQ(size, 12u);
    EXPECT_EQ(p.regQueryValueEx(key, "path", nullptr, data, nullptr), static_cast<long>(ErrorInvalidParameter));

    std::uint32_t number = 0;
    size = sizeof number;
    ASSERT_EQ(p.regQueryValueEx(key, "count", &type, reinterpret_cast<unsigned char*>(&number), &size), ErrorSuccess);
    EXPECT_EQ(type, RegDword);
    EXPECT_EQ(number, 42u);
    EXPECT_EQ(p.regQueryValueEx(key, "broken", nullptr, nullptr, &size), static_cast<long>(ErrorFileNotFound));
    EXPECT_EQ(p.regCloseKey(key), ErrorSuccess);
    EXPECT_EQ(p.regCloseKey(key), static_cast<long>(ErrorInvalidHandle));
    EXPECT_EQ(p.regQueryValueEx(key, "path", nullptr, nullptr, &size), static_cast<long>(ErrorInvalidHandle));

    // A key that only has keys below it exists too.
    ASSERT_EQ(p.regOpenKeyEx(HKeyLocalMachine, "SOFTWARE", 0, KeyRead, &key), ErrorSuccess);
    EXPECT_EQ(p.regQueryValueEx(key, "path", nullptr, nullptr, &size), static_cast<long>(ErrorFileNotFound));
    p.regCloseKey(key);
    EXPECT_EQ(p.regOpenKeyEx(HKeyLocalMachine, "SOFTWARE\\Wow6432Node\\Missing", 0, KeyRead, &key),
              static_cast<long>(ErrorFileNotFound));
}

TEST_F(Emulation, RegistryIsReadWhenAKeyIsOpened) {
    const std::string section = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo]\n\"path\"=";
    KeyHandle key = nullptr, again = nullptr;
    EXPECT_EQ(p.regOpenKeyEx(HKeyLocalMachine, TavreloKey, 0, KeyRead, &key), static_cast<long>(ErrorFileNotFound));
    useRegistry(section + "\"x\"\n");  // no header
    EXPECT_EQ(p.regOpenKeyEx(HKeyLocalMachine, TavreloKey, 0, KeyRead, &key), static_cast<long>(ErrorFileNotFound));

    useRegistry("REGEDIT4\n" + section + "\"first\"\n");
    ASSERT_EQ(p.regOpenKeyEx(HKeyLocalMachine, TavreloKey, 0, KeyRead, &key), ErrorSuccess);
    writeFile(file, "REGEDIT4\n" + section + "\"second\"\n");
    EXPECT_EQ(pathOf(key), "first");
    ASSERT_EQ(p.regOpenKeyEx(HKeyLocalMachine, TavreloKey, 0, KeyRead, &again), ErrorSuccess);
    EXPECT_EQ(pathOf(again), "second");
    p.regCloseKey(key);
    p.regCloseKey(again);
}

TEST_F(Emulation, ErrorTextsAreTheSystemOnesInLocalMemory) {
    auto text = [&](std::uint32_t id) {
        char* buffer = nullptr;
        std::uint32_t n = p.formatMessage(FormatMessageAllocateFromSystem, nullptr, id, LangNeutralDefault, &buffer, 0);
        std::string s = n ? std::string(buffer, n) : "";
        EXPECT_EQ(n ? p.localSize(buffer) : 0u, n ? n + 1u : 0u);
        if (buffer) p.localFree(buffer);
        return s;
    };
    EXPECT_EQ(text(193), "%1 is not a valid Win32 application.\r\n");  // the insert stays as it is
    EXPECT_EQ(text(99999), "");
    EXPECT_EQ(p.getLastError(), ErrorMessageNotFound);
}

TEST_F(Emulation, LoaderTellsMissingFilesFromBadOnesAndSearchesTheDllDirectory) {
    std::string bad = ::testing::TempDir() + "plr_not_a_library.dll";
    writeFile(bad, "MZ but not really");
    EXPECT_EQ(p.loadLibrary(bad.c_str()), nullptr);
    EXPECT_EQ(p.getLastError(), ErrorBadExeFormat);
    EXPECT_STRNE(lastLoaderDiagnostic(), "");
    std::remove(bad.c_str());

    std::string full = test::testLibraryPath();
    EXPECT_TRUE(p.setDllDirectory(full.substr(0, full.rfind('\\')).c_str()));
    ModuleHandle lib = p.loadLibrary(PLR_TEST_LIBRARY_NAME);
    ASSERT_NE(lib, nullptr) << lastLoaderDiagnostic();
    EXPECT_EQ(p.getModuleHandle(PLR_TEST_LIBRARY_NAME), lib);
    EXPECT_TRUE(p.setDllDirectory(nullptr));
    EXPECT_TRUE(p.freeLibrary(lib));
    EXPECT_EQ(p.loadLibrary(PLR_TEST_LIBRARY_NAME), nullptr);
    EXPECT_EQ(p.getLastError(), ErrorModNotFound);
    EXPECT_FALSE(p.freeLibrary(lib));  // already gone: refused, not passed to the loader
    EXPECT_EQ(p.getLastError(), ErrorInvalidHandle);

    lib = p.loadLibrary(("Z:" + full).c_str());  // wine's root drive
    ASSERT_NE(lib, nullptr) << lastLoaderDiagnostic();
    p.freeLibrary(lib);
}

TEST_F(Emulation, TimerFiresOncePerPeriodAndNeverAfterDestroyWindow) {
    using test::TimerLog;
    TimerLog::reset();
    const std::uint64_t t0 = 5'000'000;
    pumpMessages(t0);
    WindowHandle w = test::timerWindow("PLRTestTimerWindow", &TimerLog::proc);
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(p.registerClass("plrtesttimerwindow", &TimerLog::proc), 0);
    EXPECT_EQ(p.getLastError(), ErrorClassAlreadyExists);

    for (int step = 1; step <= 10; ++step) {
        pumpMessages(t0 + 40u * step - 20);  // between ticks nothing is due
        pumpMessages(t0 + 40u * step);
        ASSERT_EQ(TimerLog::timers, step);
    }
    EXPECT_EQ(TimerLog::lastId, 1u);
    EXPECT_EQ(TimerLog::lastWindow, w);

    pumpMessages(t0 + 2000);  // a late pump delivers one message, not the missed ones
    EXPECT_EQ(TimerLog::timers, 11);
    pumpMessages(t0 + 2020);
    EXPECT_EQ(TimerLog::timers, 11);
    pumpMessages(t0 + 2040);
    EXPECT_EQ(TimerLog::timers, 12);

    EXPECT_FALSE(p.unregisterClass("PLRTestTimerWindow", p.getModuleHandle(nullptr)));
    EXPECT_EQ(p.getLastError(), ErrorClassHasWindows);
    EXPECT_TRUE(p.destroyWindow(w));
    for (int step = 1; step <= 5; ++step) pumpMessages(t0 + 2040 + 40u * step);
    EXPECT_EQ(TimerLog::timers, 12);
    EXPECT_EQ(p.setTimer(w, 1, 40, nullptr), 0u);  // the window is gone
    EXPECT_TRUE(p.unregisterClass("PLRTestTimerWindow", p.getModuleHandle(nullptr)));
}

TEST_F(Emulation, WindowDestroyedByItsOwnTimerGetsNoFurtherMessages) {
    test::TimerLog::reset();
    WindowProc destroyer = [](WindowHandle w, std::uint32_t msg, std::uintptr_t id, std::intptr_t l) -> std::intptr_t {
        std::intptr_t r = test::TimerLog::proc(w, msg, id, l);
        if (msg == WmTimer) systemPlatform().destroyWindow(w);
        return r;
    };
    const std::uint64_t t0 = 9'000'000;
    pumpMessages(t0);
    WindowHandle w = test::timerWindow("PLRTestDestroyer", destroyer);
    ASSERT_NE(w, nullptr);
    p.setTimer(w, 2, 40, nullptr);  // due in the same pump as timer 1
    pumpMessages(t0 + 40);
    pumpMessages(t0 + 80);
    EXPECT_EQ(test::TimerLog::timers, 1);
    EXPECT_TRUE(p.unregisterClass("PLRTestDestroyer", nullptr));
}

// A module unloaded while its window lives on (a second core load leaves one
// behind) must not have its procedure called by later pumps.
TEST_F(Emulation, WindowsOfAnUnloadedLibraryAreNoLongerDispatched) {
    ModuleHandle lib = p.loadLibrary(PLR_TEST_LIBRARY_FILE);
    ASSERT_NE(lib, nullptr) << lastLoaderDiagnostic();
    auto setCounter = reinterpret_cast<void (*)(int*)>(p.getProcAddress(lib, "plrTestSetCounter"));
    auto proc = reinterpret_cast<WindowProc>(p.getProcAddress(lib, "plrTestWindowProc"));
    ASSERT_TRUE(setCounter && proc);
    int messages = 0;
    setCounter(&messages);

    const std::uint64_t t0 = 12'000'000;
    pumpMessages(t0);
    WindowHandle w = test::timerWindow("PLRTestUnloaded", proc);
    ASSERT_NE(w, nullptr);
    pumpMessages(t0 + 40);
    EXPECT_EQ(messages, 1);

    setCounter(nullptr);
    ASSERT_TRUE(p.freeLibrary(lib));
    pumpMessages(t0 + 80);  // would jump into unmapped code
    pumpMessages(t0 + 120);
    EXPECT_EQ(messages, 1);
    EXPECT_TRUE(p.destroyWindow(w));
    EXPECT_TRUE(p.unregisterClass("PLRTestUnloaded", nullptr));
}

}  // namespace
}  // namespace tvr::platform
