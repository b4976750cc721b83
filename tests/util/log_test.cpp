#include "util/log.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

namespace tvr::util {
namespace {

constexpr std::time_t kMarch7At0905 = 1709802300;  // 2024-03-07 09:05:00 UTC
const std::string kStamp = "20240307 09:05:00 (";

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
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

TEST_F(LogTest, LevelsAndThreshold) {
    EXPECT_EQ(Log::formatLine(1956009598, 0, -1, "y"), "20311225 23:59:58 (CRITICAL): y\n");
    Log(3).write("notice", -1);
    Log(0).log("critical", -1);
    Log plain(1);
    plain.write("error", -1);
    plain.write("warning", 2);
    plain.write("dropped", 4);
    Log::instance()->setLevel(4);
    EXPECT_TRUE(Log::isEnabled(4));
    plain.write("no text", 4);
    EXPECT_EQ(Log::contents(), kStamp + "NOTICE): notice\n" + kStamp + "CRITICAL): critical\n" + kStamp +
                                   "ERROR): error\n" + kStamp + "WARNING): warning\n" + kStamp + "no text\n");
}

// Sets the process's time zone for its lifetime and restores the one before.
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        if (const char* old = std::getenv("TZ")) {
            saved_ = old;
            hadOne_ = true;
        }
        set(zone);
    }
    ~TimeZone() { set(hadOne_ ? saved_.c_str() : nullptr); }

private:
    static void set(const char* zone) {
#if defined(_WIN32)
        _putenv((std::string("TZ=") + (zone ? zone : "")).c_str());
        _tzset();
#else
        if (zone)
            setenv("TZ", zone, 1);
        else
            unsetenv("TZ");
        tzset();
#endif
    }
    std::string saved_;
    bool hadOne_ = false;
};

// Stamps are UTC whatever the machine's zone (ctest also runs these tests in another zone).
TEST_F(LogTest, StampsStayUtcInAnotherTimeZone) {
    TimeZone east("XYZ-5:30");
    const std::tm* local = std::localtime(&kMarch7At0905);
    ASSERT_NE(local, nullptr);
    if (local->tm_hour == 9) GTEST_SKIP() << "this runtime ignores TZ";
    Log(3).write("zoned", -1);
    EXPECT_EQ(Log::contents(), kStamp + "NOTICE): zoned\n");
}

TEST_F(LogTest, ScopedEntriesIndentAndRestoreDepth) {
    {
        Log outer("Begin undo", 3);
        {
            Log inner("addUndo", 3);
            Log(1).write("inside", -1);
        }
        Log(3).write("back", -1);
    }
    EXPECT_EQ(Log::instance()->depth(), -1);
    Log(3).write("top", -1);
    EXPECT_EQ(Log::contents(), kStamp + "NOTICE): \tBegin undo\n" + kStamp + "NOTICE): \t\taddUndo\n" + kStamp +
                                   "ERROR): \t\tinside\n" + kStamp + "NOTICE): \tback\n" + kStamp + "NOTICE): top\n");
}

TEST_F(LogTest, FileGetsLinesAndEofOnlyWhenTheSingletonEnds) {
    const std::string path = ::testing::TempDir() + "util_log_test.log";
    std::ofstream(path) << "left over\n";
    Log::openFile(path);
    {
        Log entry("Select node", 3);
        Log(0).write("warn", -1);
    }
    const std::string expected = kStamp + "NOTICE): \tSelect node\n" + kStamp + "CRITICAL): \twarn\n";
    EXPECT_EQ(readFile(path), expected);

    const std::string saved = ::testing::TempDir() + "util_log_saved.log";
    EXPECT_TRUE(Log::saveTo(saved));
    EXPECT_EQ(readFile(saved), expected);
    EXPECT_FALSE(Log::saveTo(::testing::TempDir() + "no_such_dir/x.log"));

    SingletonCollector::instance()->destroyAll();
    EXPECT_EQ(readFile(path), expected + "[EOF]\n");

    // An unopenable file leaves logging to the buffer.
    Log::openFile(::testing::TempDir() + "no_such_dir/y.log");
    EXPECT_FALSE(Log::isFileOpen());
    Log(3).write("buffered", -1);
    EXPECT_EQ(Log::contents(), kStamp + "NOTICE): buffered\n");
    std::remove(path.c_str());
    std::remove(saved.c_str());
}

}  // namespace
}  // namespace tvr::util
