// The system platform as the module meets it, on every OS (under wine for Windows).
#include <gtest/gtest.h>

#include <string>

#include "platform/error_codes.h"
#include "platform/message_box.h"
#include "platform/platform.h"
#include "platform_helpers.h"
#include "test_support/message_box_records.h"
#include "test_support/recording_platform.h"

namespace tvr::platform {
namespace {

TEST(SystemPlatform, LoadsByBackslashPathFindsExportsAndFailsWith126WhenMissing) {
    Platform& p = systemPlatform();
    EXPECT_EQ(p.loadLibrary("\\no\\such\\folder\\core.dll"), nullptr);
    EXPECT_EQ(p.getLastError(), ErrorModNotFound);
    // The words differ between Windows, wine and the emulation; they are there and end the line.
    char* text = nullptr;
    std::uint32_t n =
        p.formatMessage(FormatMessageAllocateFromSystem, nullptr, ErrorModNotFound, LangNeutralDefault, &text, 0);
    ASSERT_GT(n, 2u);
    EXPECT_EQ(std::string(text + n - 2), "\r\n");
    p.localFree(text);

    ModuleHandle lib = p.loadLibrary(test::testLibraryPath().c_str());
    ASSERT_NE(lib, nullptr) << lastLoaderDiagnostic();
    auto proc = reinterpret_cast<WindowProc>(p.getProcAddress(lib, "plrTestWindowProc"));
    ASSERT_NE(proc, nullptr);
    EXPECT_EQ(proc(nullptr, 0, 0, 0), 7);
    EXPECT_EQ(p.getProcAddress(lib, "noSuchExport"), nullptr);
    EXPECT_EQ(p.getLastError(), ErrorProcNotFound);
    // A second load counts up and gives the same handle; each load is freed once.
    EXPECT_EQ(p.loadLibrary(test::testLibraryPath().c_str()), lib);
    EXPECT_TRUE(p.freeLibrary(lib));
    EXPECT_TRUE(p.freeLibrary(lib));
    EXPECT_NE(p.getModuleHandle(nullptr), nullptr);
}

// Other sinks are met end to end: the host simulator prints its boxes through its own.
TEST(SystemPlatform, MessageBoxesGoToTheSinkInForce) {
    clearRecordedMessageBoxes();
    setMessageBoxSink(&recordMessageBox);
    EXPECT_EQ(systemPlatform().messageBox(nullptr, "LoadLibrary failed", "Error", MbOk), IdOk);
    auto boxes = recordedMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].caption, "Error");
    EXPECT_EQ(boxes[0].text, "LoadLibrary failed");
    setMessageBoxSink(nullptr);
}

TEST(SystemPlatform, InstalledPlatformReplacesTheSystemOneUntilRemoved) {
    RecordingPlatform recording;
    EXPECT_EQ(&platform(), &systemPlatform());
    setPlatform(&recording);
    platform().getLastError();
    setPlatform(nullptr);
    EXPECT_EQ(&platform(), &systemPlatform());
    EXPECT_EQ(recording.functions(), std::vector<std::string>{"GetLastError"});
}

}  // namespace
}  // namespace tvr::platform
