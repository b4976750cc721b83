// The document's time as the core reads and moves it, and the host calls a
// change of time or a refresh makes, in their order.
#include <gtest/gtest.h>

#include <string>

#include "adaptor/c4d_adaptor_interface.h"
#include "embedded_host/runtime/embedded_host.h"
#include "plugin/plugin_main.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {
namespace {

namespace emb = tvr::plr::embedded;

class TimeAndRecording : public ::testing::Test {
protected:
    void SetUp() override {
        emb::HostOptions options;
        options.crashHandlers = false;
        host = std::make_unique<emb::EmbeddedHost>(options);
        ASSERT_TRUE(host->loadModule(&c4d_main, "pelloran"));
        adaptor = C4DAdaptorInterface::instance();
    }
    void TearDown() override { host->shutdown(); }

    // The journal from `from` on, one "kind text" a line, without console lines.
    std::string journalSince(std::size_t from) const {
        std::string text;
        const auto& entries = host->journal().entries();
        for (std::size_t i = from; i < entries.size(); ++i)
            if (entries[i].kind != "GePrint") text += entries[i].kind + " " + entries[i].text + "\n";
        return text;
    }

    std::unique_ptr<emb::EmbeddedHost> host;
    core::AdaptorInterface* adaptor = nullptr;
};

TEST_F(TimeAndRecording, TimeRangeAndRateComeFromTheActiveDocument) {
    const std::size_t before = host->journal().size();
    adaptor->setTime(2.0);  // no document: nothing happens
    adaptor->setTimeRange({1.0, 3.0});
    adaptor->refreshScene();
    EXPECT_EQ(journalSince(before), "");
    EXPECT_DOUBLE_EQ(adaptor->getTime(), 0.0);

    BaseDocument* doc = host->newDocument();
    EXPECT_EQ(adaptor->getTimeRange(), (std::pair<double, double>{0.0, 3.0}));  // 90 frames at 30
    adaptor->setTime(1.5);
    EXPECT_EQ(doc->GetTime().GetFrame(doc->GetFps()), 45);
    EXPECT_DOUBLE_EQ(adaptor->getTime(), 1.5);

    adaptor->setTimeRange({0.5, 4.25});
    EXPECT_EQ(adaptor->getTimeRange(), (std::pair<double, double>{0.5, 4.25}));
    EXPECT_DOUBLE_EQ(doc->GetLoopMinTime().Get(), 0.5);
    EXPECT_DOUBLE_EQ(doc->GetLoopMaxTime().Get(), 4.25);

    doc->SetFps(25);
    EXPECT_DOUBLE_EQ(adaptor->getFrameRate(), 25.0);
    EXPECT_DOUBLE_EQ(adaptor->getFrameDuration(), 0.04);
}

TEST_F(TimeAndRecording, ChangingTimeAndRefreshingTellTheHostInTheirOrder) {
    host->newDocument();
    std::size_t from = host->journal().size();
    adaptor->setTime(1.5);
    EXPECT_EQ(journalSince(from),
              "DrawViews 32768\n"
              "GeSyncMessage 1952671847 0 0 0\n"
              "GeSyncMessage 604 0 0 0\n"
              "EventAdd 1\n"
              "EventAdd 0\n");
    from = host->journal().size();
    adaptor->refreshScene();
    EXPECT_EQ(journalSince(from),
              "ExecutePasses 1 1 0\n"
              "GeSyncMessage 1952671847 0 0 0\n"
              "EventAdd 1\n"
              "DrawViews 32770\n"
              "DocumentMessage document:0 'Untitled' 5\n"
              "EventAdd 1\n"
              "EventAdd 0\n");
}

TEST_F(TimeAndRecording, CacheAndStopOnlyLogAndAnswer) {
    host->newDocument();
    const std::size_t logged = tvr::util::Log::contents().size();
    const std::size_t before = host->journal().size();
    EXPECT_EQ(adaptor->prepareCacheRecording(nullptr), 1);
    EXPECT_EQ(adaptor->stopRecording(), 0);
    EXPECT_EQ(journalSince(before), "");
    const std::string lines = tvr::util::Log::contents().substr(logged);
    const std::size_t cache = lines.find("(NOTICE): \tAdaptor Prepare Cache Recording\n");
    const std::size_t stop = lines.find("(NOTICE): \tAdaptor stops Recording\n");
    EXPECT_NE(cache, std::string::npos) << lines;
    EXPECT_NE(stop, std::string::npos) << lines;
    EXPECT_LT(cache, stop);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d
