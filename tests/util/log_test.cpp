#include "util/log.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace tvr::util {
namespace {

constexpr std::time_t kMarch7At0905 = 1709802300;  // 2024-03-07 09:05:00 UTC

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

std::string tempPath(const char* name) {
    return ::testing::TempDir() + name;
}

class LogTest : public ::testing::Test {
protected:
    void SetUp() override {
        SingletonCollector::instance()->destroyAll();
        Log::setClock([] { return kMarch7At0905; });
    }
    void TearDown() override {
        SingletonCollector::instance()->destroyAll();
        Log::setClock({});
    }
};

TEST_F(LogTest, LineFormatLevelsAndPadding) {
    EXPECT_EQ(Log::formatLine(kMarch7At0905, 3, -1, "x"), "20240307 09:05:00 (NOTICE): x\n");
    EXPECT_EQ(Log::formatLine(1956009598, 0, 0, "y"), "20311225 23:59:58 (CRITICAL): \ty\n");

    Log plain3(3);
    plain3.write("notice", -1);
    Log plain0(0);
    plain0.write("critical", -1);
    Log plain1(1);
    plain1.write("error", -1);
    plain1.write("warning", 2);
    EXPECT_EQ(Log::contents(),
              "20240307 09:05:00 (NOTICE): notice\n"
              "20240307 09:05:00 (CRITICAL): critical\n"
              "20240307 09:05:00 (ERROR): error\n"
              "20240307 09:05:00 (WARNING): warning\n");
}

TEST_F(LogTest, ThresholdFiltersAboveItAndLevelFourHasNoText) {
    Log plain(3);
    EXPECT_TRUE(Log::isEnabled(3));
    EXPECT_FALSE(Log::isEnabled(4));
    plain.write("dropped", 4);
    EXPECT_EQ(Log::contents(), "");

    Log::instance()->setLevel(4);
    EXPECT_TRUE(Log::isEnabled(4));
    plain.write("kept", 4);
    plain.write("still dropped", 5);
    EXPECT_EQ(Log::contents(), "20240307 09:05:00 (kept\n");
}

TEST_F(LogTest, ScopedEntriesIndentAndRestoreDepth) {
    EXPECT_EQ(Log::instance()->depth(), -1);
    {
        Log outer("Begin undo", 3);
        {
            Log inner("addUndo", 3);
            Log plain(1);
            plain.log("inside", -1);
            EXPECT_EQ(Log::instance()->depth(), 1);
        }
        Log after(3);
        after.write("back", -1);
    }
    EXPECT_EQ(Log::instance()->depth(), -1);
    Log top(3);
    top.write("top", -1);
    EXPECT_EQ(Log::contents(),
              "20240307 09:05:00 (NOTICE): \tBegin undo\n"
              "20240307 09:05:00 (NOTICE): \t\taddUndo\n"
              "20240307 09:05:00 (ERROR): \t\tinside\n"
              "20240307 09:05:00 (NOTICE): \tback\n"
              "20240307 09:05:00 (NOTICE): top\n");
}

// A subclass whose write is reached only through the virtual table.
class CountingLog : public Log {
public:
    using Log::Log;
    std::int32_t write(const std::string& message, std::int32_t level) override {
        ++calls;
        return Log::write(message, level);
    }
    int calls = 0;
};

TEST_F(LogTest, LogForwardsToWriteVirtually) {
    CountingLog counting(2);
    EXPECT_EQ(counting.log("via log", -1), 0);
    EXPECT_EQ(counting.calls, 1);
    EXPECT_EQ(Log::contents(), "20240307 09:05:00 (WARNING): via log\n");
}

TEST_F(LogTest, FileGetsLinesAndEofOnlyWhenTheSingletonEnds) {
    const std::string path = tempPath("util_log_test.log");
    {
        std::ofstream old(path);
        old << "left over from before\n";
    }
    Log::openFile(path);
    ASSERT_TRUE(Log::isFileOpen());
    {
        Log entry("Select node", 3);
        Log plain(0);
        plain.write("warn", -1);
    }
    const std::string expected =
        "20240307 09:05:00 (NOTICE): \tSelect node\n"
        "20240307 09:05:00 (CRITICAL): \twarn\n";
    EXPECT_EQ(readFile(path), expected);
    EXPECT_EQ(Log::contents(), expected);

    const std::string saved = tempPath("util_log_saved.log");
    EXPECT_TRUE(Log::saveTo(saved));
    EXPECT_EQ(readFile(saved), expected);
    EXPECT_FALSE(Log::saveTo(tempPath("no_such_dir/x.log")));

    SingletonCollector::instance()->destroyAll();
    EXPECT_EQ(readFile(path), expected + "[EOF]\n");

    // A file that cannot be opened leaves logging to the buffer.
    Log::openFile(tempPath("no_such_dir/y.log"));
    EXPECT_FALSE(Log::isFileOpen());
    Log(3).write("buffered", -1);
    EXPECT_EQ(Log::contents(), "20240307 09:05:00 (NOTICE): buffered\n");
    std::remove(path.c_str());
    std::remove(saved.c_str());
}

}  // namespace
}  // namespace tvr::util
