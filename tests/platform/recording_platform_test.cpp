// The recording platform: what it records, how its fake answers, and forwarding.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/error_codes.h"
#include "test_support/recording_platform.h"

namespace tvr::platform {
namespace {

TEST(RecordingPlatform, RecordsALoadAgainstItsFakeLibraries) {
    RecordingPlatform rec;
    int attach = 0;
    rec.addLibrary("c:/prog/x/pelloran/data/core/win/x64/CORE.DLL", {{"attach", &attach}});

    const char* dir = "C:\\Prog\\X\\pelloran\\data\\core\\win\\x64";
    rec.setDllDirectory(dir);
    ModuleHandle core = rec.loadLibrary("core.dll");  // a bare name is looked for in the DLL directory
    rec.setDllDirectory(nullptr);
    ASSERT_NE(core, nullptr);
    EXPECT_EQ(rec.getProcAddress(core, "attach"), &attach);
    EXPECT_EQ(rec.getProcAddress(core, "detach"), nullptr);
    EXPECT_EQ(rec.getLastError(), ErrorProcNotFound);
    EXPECT_EQ(rec.loadedLibraries(), 1u);
    EXPECT_TRUE(rec.freeLibrary(core));
    EXPECT_FALSE(rec.freeLibrary(core));
    EXPECT_EQ(rec.loadedLibraries(), 0u);

    std::vector<std::string> expected = {
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

    // Local blocks and message boxes stay in the fake; a second free is refused.
    void* block = rec.localAlloc(LmemZeroInit, 80);
    EXPECT_EQ(rec.localSize(block), 80u);
    EXPECT_EQ(rec.localFree(block), nullptr);
    EXPECT_EQ(rec.localFree(block), block);
    EXPECT_EQ(rec.liveLocalBlocks(), 0u);
    rec.setMessageBoxAnswer(2);
    EXPECT_EQ(rec.messageBox(nullptr, "text", nullptr, MbOk), 2);
    ASSERT_EQ(rec.messageBoxes().size(), 1u);
    EXPECT_EQ(rec.messageBoxes()[0].caption, "Error");  // a null caption reads as "Error"
}

TEST(RecordingPlatform, ForwardsEveryCallAndRecordsTheAnswers) {
    RecordingPlatform inner;
    inner.setRegistryText("REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo]\n\"path\"=\"D:\\\\P\"\n");
    RecordingPlatform outer(&inner);
    outer.setRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo", "path", "ignored when forwarding");

    KeyHandle key = nullptr;
    ASSERT_EQ(outer.regOpenKeyEx(HKeyLocalMachine, "SOFTWARE\\Wow6432Node\\Tavrelo", 0, KeyRead, &key), ErrorSuccess);
    char value[16];
    std::uint32_t type = 0;
    for (std::uint32_t size : {4u, 16u})  // too small first
        outer.regQueryValueEx(key, "path", &type, reinterpret_cast<unsigned char*>(value), &size);
    EXPECT_STREQ(value, "D:\\P");
    EXPECT_EQ(outer.calls()[1].result, ErrorMoreData);
    EXPECT_EQ(outer.calls()[2].out, "5 \"D:\\P\"");
    outer.messageBox(nullptr, "hello", "c", MbOk);

    EXPECT_EQ(outer.transcript(), inner.transcript());
    EXPECT_EQ(inner.messageBoxes().size(), 1u);
    EXPECT_TRUE(outer.messageBoxes().empty());
}

}  // namespace
}  // namespace tvr::platform
