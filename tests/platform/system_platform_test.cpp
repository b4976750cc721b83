// The system platform as the module meets it, on every OS (under wine for Windows).
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "error_codes.h"
#include "message_box.h"
#include "platform.h"
#include "recording_platform.h"
#include "test_support.h"

namespace tvr::platform {
namespace {

std::string errorText(Platform& p, std::uint32_t error) {
    char* text = nullptr;
    std::uint32_t n = p.formatMessage(FormatMessageAllocateFromSystem, nullptr, error, LangNeutralDefault, &text, 0);
    std::string s = n && text ? std::string(text, n) : std::string();
    if (text) p.localFree(text);
    return s;
}

TEST(SystemPlatform, MissingLibraryFailsWithModuleNotFoundAndAText) {
    Platform& p = systemPlatform();
    EXPECT_EQ(p.loadLibrary("\\no\\such\\folder\\core.dll"), nullptr);
    EXPECT_EQ(p.getLastError(), ErrorModNotFound);
    // The words differ between Windows, wine and the emulation; they are there and end the line.
    std::string text = errorText(p, ErrorModNotFound);
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
}

TEST(SystemPlatform, LoadsALibraryByBackslashPathAndFindsItsExport) {
    Platform& p = systemPlatform();
    ModuleHandle lib = p.loadLibrary(test::testLibraryPath().c_str());
    ASSERT_NE(lib, nullptr) << lastLoaderDiagnostic();
    void* answer = p.getProcAddress(lib, "plrTestAnswer");
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(test::callAnswer(answer), 42);

    EXPECT_EQ(p.getProcAddress(lib, "noSuchExport"), nullptr);
    EXPECT_EQ(p.getLastError(), ErrorProcNotFound);

    // A second load counts up and gives the same handle; each load is freed once.
    EXPECT_EQ(p.loadLibrary(test::testLibraryPath().c_str()), lib);
    EXPECT_TRUE(p.freeLibrary(lib));
    EXPECT_TRUE(p.freeLibrary(lib));
    EXPECT_NE(p.getModuleHandle(nullptr), nullptr);
}

TEST(SystemPlatform, LocalMemoryIsZeroFilledAndKnowsItsSize) {
    Platform& p = systemPlatform();
    auto* block = static_cast<unsigned char*>(p.localAlloc(LmemZeroInit, 100));
    ASSERT_NE(block, nullptr);
    EXPECT_GE(p.localSize(block), 100u);
    for (int i = 0; i < 100; ++i) ASSERT_EQ(block[i], 0) << i;
    EXPECT_EQ(p.localFree(block), nullptr);
    EXPECT_EQ(p.localFree(nullptr), nullptr);
}

TEST(SystemPlatform, MessageBoxesGoToTheSinkInForce) {
    static std::string seen;
    clearRecordedMessageBoxes();
    setMessageBoxSink(&printAndRecordMessageBox);
    EXPECT_EQ(systemPlatform().messageBox(nullptr, "LoadLibrary failed", "Error", MbOk), IdOk);
    auto boxes = recordedMessageBoxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].caption, "Error");
    EXPECT_EQ(boxes[0].text, "LoadLibrary failed");

    setMessageBoxSink([](const char* text, const char* caption, std::uint32_t) {
        seen = std::string(caption) + "|" + text;
        return 7;
    });
    EXPECT_EQ(systemPlatform().messageBox(nullptr, "t", "c", MbOk), 7);
    EXPECT_EQ(seen, "c|t");
    EXPECT_EQ(recordedMessageBoxes().size(), 1u);
    setMessageBoxSink(&printAndRecordMessageBox);  // never a real box in an unattended run
}

TEST(SystemPlatform, InstalledPlatformReplacesTheSystemOneUntilRemoved) {
    RecordingPlatform recording;
    EXPECT_EQ(&platform(), &systemPlatform());
    setPlatform(&recording);
    EXPECT_EQ(&platform(), &recording);
    platform().getLastError();
    setPlatform(nullptr);
    EXPECT_EQ(&platform(), &systemPlatform());
    EXPECT_EQ(recording.functions(), std::vector<std::string>{"GetLastError"});
}

}  // namespace
}  // namespace tvr::platform
