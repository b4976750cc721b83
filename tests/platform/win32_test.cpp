// The Win32 platform against the real system calls (run under wine by the Windows test script).
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/error_codes.h"
#include "platform/message_box.h"
#include "platform/message_pump.h"
#include "platform/platform.h"
#include "platform_helpers.h"

namespace tvr::platform {
namespace {

TEST(Win32Platform, ReadsTheInstallRootFromTheRegistry) {
    Platform& p = systemPlatform();
    KeyHandle key = nullptr;
    long r = p.regOpenKeyEx(HKeyLocalMachine, "SOFTWARE\\Wow6432Node\\Tavrelo", 0, KeyRead, &key);
    if (r == static_cast<long>(ErrorFileNotFound)) GTEST_SKIP() << "no install root in this registry";
    ASSERT_EQ(r, ErrorSuccess);
    char value[1024] = {};
    std::uint32_t size = 4, type = 0;
    EXPECT_EQ(p.regQueryValueEx(key, "path", &type, reinterpret_cast<unsigned char*>(value), &size),
              static_cast<long>(ErrorMoreData));
    std::uint32_t needed = size;
    size = sizeof value;
    ASSERT_EQ(p.regQueryValueEx(key, "path", &type, reinterpret_cast<unsigned char*>(value), &size), ErrorSuccess);
    EXPECT_EQ(type, RegSz);
    EXPECT_EQ(size, needed);
    EXPECT_EQ(size, std::string(value).size() + 1);
    if (const char* expected = std::getenv("PLR_EXPECTED_INSTALL_ROOT")) {
        EXPECT_STREQ(value, expected);
    }
    EXPECT_EQ(p.regCloseKey(key), ErrorSuccess);
}

TEST(Win32Platform, HiddenWindowReceivesItsTimerUntilDestroyed) {
    using test::TimerLog;
    TimerLog::reset();
    Platform& p = systemPlatform();
    WindowHandle w = test::timerWindow("PLRTestRunLoopWindow", &TimerLog::proc);
    ASSERT_NE(w, nullptr) << "no window or timer (is wine's graphics driver set?), error " << p.getLastError();

    auto pumpUntil = [](int timers, DWORD ms) {
        for (DWORD start = GetTickCount(); TimerLog::timers < timers && GetTickCount() - start < ms; Sleep(5))
            pumpMessages(0);
    };
    pumpUntil(3, 5000);
    EXPECT_GE(TimerLog::timers, 3);
    EXPECT_EQ(TimerLog::lastId, 1u);
    EXPECT_EQ(TimerLog::lastWindow, w);

    EXPECT_TRUE(p.destroyWindow(w));
    int seen = TimerLog::timers;
    pumpUntil(seen + 1, 200);
    EXPECT_EQ(TimerLog::timers, seen);
    EXPECT_TRUE(p.unregisterClass("PLRTestRunLoopWindow", p.getModuleHandle(nullptr)));
}

TEST(Win32Platform, UnattendedEnvironmentPrintsBoxes) {
    // Set in the process's environment, as hostsim does, before the sink goes, so no real box can appear.
    ASSERT_TRUE(SetEnvironmentVariableA("PLR_UNATTENDED", "1"));
    setMessageBoxSink(nullptr);
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(systemPlatform().messageBox(nullptr, "Couldn't load x", "Error", MbOk), IdOk);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "[MessageBox] Error: Couldn't load x\n");
}

}  // namespace
}  // namespace tvr::platform
