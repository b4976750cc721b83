// The recording platform: what it records, how its fake answers, and forwarding.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "error_codes.h"
#include "message_pump.h"
#include "recording_platform.h"
#include "test_support.h"

namespace tvr::platform {
namespace {

void* fakeAttach() { return nullptr; }

void* asData(void* (*fn)()) { return reinterpret_cast<void*>(fn); }

TEST(RecordingPlatform, RecordsALoaderSessionAgainstItsFake) {
    RecordingPlatform rec;
    rec.setRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo", "path", "C:/Prog/X");
    rec.addLibrary("c:/prog/x/pelloran/data/core/win/x64/CORE.DLL", {{"attach", asData(&fakeAttach)}});

    KeyHandle key = nullptr;
    ASSERT_EQ(rec.regOpenKeyEx(HKeyLocalMachine, "SOFTWARE\\Wow6432Node\\Tavrelo", 0, KeyRead, &key), ErrorSuccess);
    char value[1024];
    std::uint32_t size = sizeof value;
    ASSERT_EQ(rec.regQueryValueEx(key, "path", nullptr, reinterpret_cast<unsigned char*>(value), &size), ErrorSuccess);
    EXPECT_STREQ(value, "C:/Prog/X");
    rec.regCloseKey(key);
    EXPECT_EQ(rec.openKeys(), 0u);

    const char* dir = "C:\\Prog\\X\\pelloran\\data\\core\\win\\x64";
    rec.setDllDirectory(dir);
    EXPECT_EQ(rec.dllDirectory(), dir);
    ModuleHandle core = rec.loadLibrary("core.dll");  // a bare name is looked for in the DLL directory
    rec.setDllDirectory(nullptr);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(rec.getProcAddress(core, "attach"), asData(&fakeAttach));
    EXPECT_EQ(rec.getProcAddress(core, "detach"), nullptr);
    EXPECT_EQ(rec.getLastError(), ErrorProcNotFound);
    EXPECT_EQ(rec.loadedLibraries(), 1u);
    EXPECT_TRUE(rec.freeLibrary(core));
    EXPECT_FALSE(rec.freeLibrary(core));
    EXPECT_EQ(rec.loadedLibraries(), 0u);

    std::vector<std::string> expected = {
        "RegOpenKeyExA(0x80000002, \"SOFTWARE\\Wow6432Node\\Tavrelo\", 0, 0x20019)",
        "RegQueryValueExA(0x2000, \"path\", null, buffer, 1024)",
        "RegCloseKey(0x2000)",
        std::string("SetDllDirectoryA(\"") + dir + "\")",
        "LoadLibraryA(\"core.dll\")",
        "SetDllDirectoryA(null)",
        "GetProcAddress(0x71000000, \"attach\")",
        "GetProcAddress(0x71000000, \"detach\")",
        "GetLastError()",
        "FreeLibrary(0x71000000)",
        "FreeLibrary(0x71000000)",
    };
    EXPECT_EQ(rec.transcript(), expected);
    EXPECT_EQ(rec.calls()[0].out, "0x2000");
    EXPECT_EQ(rec.calls()[1].out, "10");  // the size that came back
    EXPECT_EQ(rec.find("LoadLibraryA")->str(0), "core.dll");
    EXPECT_EQ(rec.find("FreeLibrary", 1)->result, 0u);
    EXPECT_EQ(rec.find("FreeLibrary", 2), nullptr);
    EXPECT_EQ(rec.count("GetProcAddress"), 2u);
}

TEST(RecordingPlatform, FakeReportsAFailedLoadTheWayTheSystemDoes) {
    RecordingPlatform rec;
    rec.setMessageBoxAnswer(2);
    KeyHandle key = nullptr;
    EXPECT_EQ(rec.regOpenKeyEx(HKeyLocalMachine, "SOFTWARE\\Wow6432Node\\Tavrelo", 0, KeyRead, &key),
              static_cast<long>(ErrorFileNotFound));
    EXPECT_EQ(rec.loadLibrary("\\data\\core\\win\\x64\\core.dll"), nullptr);
    std::uint32_t error = rec.getLastError();
    EXPECT_EQ(error, ErrorModNotFound);

    char* text = nullptr;
    ASSERT_GT(rec.formatMessage(FormatMessageAllocateFromSystem, nullptr, error, LangNeutralDefault, &text, 0), 0u);
    EXPECT_STREQ(text, "The specified module could not be found.\r\n");
    auto* message = static_cast<char*>(rec.localAlloc(LmemZeroInit, 80));
    EXPECT_EQ(rec.localSize(message), 80u);
    EXPECT_EQ(rec.messageBox(nullptr, "LoadLibrary failed with error 126", "Error", MbOk), 2);
    EXPECT_EQ(rec.localFree(message), nullptr);
    EXPECT_EQ(rec.localFree(text), nullptr);
    EXPECT_EQ(rec.localFree(text), text);  // a second free is refused
    EXPECT_EQ(rec.liveLocalBlocks(), 0u);

    ASSERT_EQ(rec.messageBoxes().size(), 1u);
    EXPECT_EQ(rec.messageBoxes()[0].caption, "Error");
    EXPECT_EQ(rec.find("MessageBoxA")->text(), "MessageBoxA(null, \"LoadLibrary failed with error 126\", \"Error\", 0x0)");
    EXPECT_EQ(rec.find("FormatMessageA")->text(), "FormatMessageA(0x1100, null, 126, 0x400, buffer, 0)");
    EXPECT_EQ(rec.find("FormatMessageA")->out, "\"The specified module could not be found.\r\n\"");
}

TEST(RecordingPlatform, FakeWindowsTickThroughTheMessagePump) {
    using test::TimerLog;
    TimerLog::reset();
    RecordingPlatform rec;
    pumpMessages(100);
    ASSERT_NE(rec.registerClass("PLRRunLoopWindow", &TimerLog::proc), 0);
    EXPECT_EQ(rec.registerClass("PLRRunLoopWindow", &TimerLog::proc), 0);
    EXPECT_EQ(rec.getLastError(), ErrorClassAlreadyExists);
    WindowHandle w = rec.createWindowEx(0, "PLRRunLoopWindow", "", 0, 0, 0, 0, 0, nullptr, nullptr,
                                        rec.getModuleHandle(nullptr), nullptr);
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(rec.setTimer(w, 1, 40, nullptr), 1u);
    EXPECT_EQ(rec.find("CreateWindowExA")->text(),
              "CreateWindowExA(0x0, \"PLRRunLoopWindow\", \"\", 0x0, 0, 0, 0, 0, null, null, 0x400000, null)");

    pumpMessages(140);
    rec.pumpTimers(180);
    EXPECT_EQ(TimerLog::timers, 2);
    EXPECT_EQ(rec.sendMessage(w, WmTimer, 1, 0), 0);
    EXPECT_EQ(TimerLog::timers, 3);
    EXPECT_EQ(rec.timerCount(), 1u);

    EXPECT_TRUE(rec.destroyWindow(w));
    EXPECT_EQ(rec.timerCount(), 0u);
    pumpMessages(400);
    EXPECT_EQ(TimerLog::timers, 3);
    EXPECT_TRUE(rec.unregisterClass("PLRRunLoopWindow", rec.getModuleHandle(nullptr)));
    EXPECT_EQ(rec.windowCount(), 0u);
}

TEST(RecordingPlatform, ForwardsEveryCallAndRecordsTheAnswers) {
    RecordingPlatform inner;
    inner.setRegistryText("REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo]\n\"path\"=\"D:\\\\P\"\n");
    RecordingPlatform outer(&inner);
    outer.setRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo", "path", "ignored when forwarding");

    KeyHandle key = nullptr;
    ASSERT_EQ(outer.regOpenKeyEx(HKeyLocalMachine, "SOFTWARE\\Wow6432Node\\Tavrelo", 0, KeyRead, &key), ErrorSuccess);
    char value[16];
    std::uint32_t size = 4, type = 0;
    EXPECT_EQ(outer.regQueryValueEx(key, "path", &type, reinterpret_cast<unsigned char*>(value), &size),
              static_cast<long>(ErrorMoreData));
    size = sizeof value;
    EXPECT_EQ(outer.regQueryValueEx(key, "path", &type, reinterpret_cast<unsigned char*>(value), &size),
              ErrorSuccess);
    EXPECT_STREQ(value, "D:\\P");
    EXPECT_EQ(outer.calls()[1].result, ErrorMoreData);
    EXPECT_EQ(outer.calls()[2].out, "5 \"D:\\P\"");
    outer.messageBox(nullptr, "hello", nullptr, MbOk);

    EXPECT_EQ(outer.transcript(), inner.transcript());
    EXPECT_EQ(inner.messageBoxes().at(0).caption, "Error");  // a null caption reads as "Error"
    EXPECT_TRUE(outer.messageBoxes().empty());
}

}  // namespace
}  // namespace tvr::platform
