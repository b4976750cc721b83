// Recording and stored state with real nodes: which masters may record when
// their nodes lie in two documents, what a recording leaves for undo, what
// a closing document tells the masters, and what storing writes where.
#include <memory>
#include <string>
#include <vector>

#include "core_api/core_node.h"
#include "core_api/cundo.h"
#include "core_api/master.h"
#include "module_host.h"
#include "nodes/c4d_node.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

using tvr::util::xml::Element;
using tvr::util::xml::Tag;
using tvr::util::xml::TagWithData;

// Notes what it is asked; answers the query as told and stores `state`.
class NotingMaster final : public core::CMaster {
public:
    NotingMaster(std::string name, std::vector<std::string>& log)
        : CMaster(&descriptor), descriptor{std::move(name)}, log(log) {}
    int message(int code, void* data) override {
        log.push_back(descriptor.name + " message " + std::to_string(code));
        if (code == core::kMasterStoreState && data && !state.isEmpty()) static_cast<Element*>(data)->addChild(state);
        return 0;
    }
    bool query(int code, core::CoreNode*) override {
        log.push_back(descriptor.name + " query " + std::to_string(code));
        return answer;
    }
    core::CMasterDescriptor descriptor;
    std::vector<std::string>& log;
    Element state;
    bool answer = true;
};

// A core step that tries to change the time range and refresh while it is undone.
class RangeStep final : public CUndo {
public:
    explicit RangeStep(core::AdaptorInterface* adaptor) : adaptor(adaptor) {}
    int undo(bool) override {
        adaptor->setTimeRange({5.0, 6.0});
        adaptor->refreshScene();
        ++undone;
        return 0;
    }
    int redo() override { return 0; }
    void release() override {}  // the test owns it, past the host's end
    core::AdaptorInterface* adaptor;
    int undone = 0;
};

class Recording : public ModuleHost {
protected:
    void TearDown() override {
        for (core::CoreNode* node : made) node->release();  // the core owns what it made
        ModuleHost::TearDown();
    }

    NotingMaster& master(const std::string& name) {
        masters.push_back(std::make_unique<NotingMaster>(name, log));
        return *masters.back();
    }
    core::CoreNode* camera(NotingMaster& m, const std::string& name) {
        made.push_back(adaptor->createCamera(&m, name, nullptr, nullptr));
        return made.back();
    }
    static BaseObject* objectOf(core::CoreNode* node) { return static_cast<CC4DNode*>(node)->object(); }
    static std::string stored(core::CoreNode* node) { return storedOn(objectOf(node)); }

    // The journal from `from` on, one "kind text" a line, without console lines.
    std::string journalSince(std::size_t from) const {
        std::string text;
        const auto& entries = host->journal().entries();
        for (std::size_t i = from; i < entries.size(); ++i)
            if (entries[i].kind != "GePrint") text += entries[i].kind + " " + entries[i].text + "\n";
        return text;
    }

    std::vector<std::string> log;
    std::vector<std::unique_ptr<NotingMaster>> masters;
    std::vector<core::CoreNode*> made;
    std::unique_ptr<RangeStep> rangeStep;
};

TEST_F(Recording, MastersSplitAcrossDocumentsAreToldAndLeftOut) {
    BaseDocument* first = host->newDocument("first");
    NotingMaster& split = master("split");
    NotingMaster& away = master("away");
    NotingMaster& home = master("home");
    NotingMaster& quiet = master("quiet");
    quiet.answer = false;
    camera(split, "a");
    camera(home, "h");
    camera(quiet, "q");
    host->newDocument("second");
    camera(split, "b");
    camera(split, "c");
    camera(away, "w");
    camera(quiet, "q2");
    host->activateDocument(first);

    core::MasterList list{&away, &home, &split, &quiet, &split};
    tvr::util::ReturnValue<core::MasterList> sink(&list);
    log.clear();
    EXPECT_EQ(adaptor->prepareDirectRecording(&sink), 1);
    EXPECT_EQ(list, core::MasterList{&home});
    // Asked in the order their first outside node stands; told only when they agree.
    EXPECT_EQ(log, (std::vector<std::string>{"split query 43", "split message 43", "quiet query 43"}));
    EXPECT_TRUE(adaptor->recording);
    // Every node was prepared: the active document's objects have their tracks.
    int tracked = 0;
    for (BaseObject* op = first->GetFirstObject(); op; op = op->GetNext()) tracked += op->GetFirstCTrack() != nullptr;
    EXPECT_EQ(tracked, 3);
    EXPECT_EQ(adaptor->stopRecording(), 0);
    EXPECT_FALSE(adaptor->recording);
}

TEST_F(Recording, UndoingARecordingBringsTheTimeBack) {
    host->newDocument();
    NotingMaster& walker = master("walker");
    camera(walker, "cam");
    adaptor->setTime(1.5);

    // Outside an undo group the time step is refused; recording starts all the same.
    core::MasterList none;
    tvr::util::ReturnValue<core::MasterList> empty(&none);
    EXPECT_EQ(adaptor->prepareDirectRecording(&empty), 1);
    EXPECT_TRUE(adaptor->recording);
    adaptor->stopRecording();

    core::MasterList list{&walker};
    tvr::util::ReturnValue<core::MasterList> sink(&list);
    adaptor->beginUndo("Record");
    adaptor->prepareDirectRecording(&sink);
    for (int frame = 46; frame <= 60; ++frame) adaptor->setTime(frame / 30.0);
    adaptor->stopRecording();
    adaptor->acceptUndo();
    EXPECT_DOUBLE_EQ(adaptor->getTime(), 2.0);
    ASSERT_TRUE(host->undo());
    host->advance(80);
    EXPECT_DOUBLE_EQ(adaptor->getTime(), 1.5);
}

TEST_F(Recording, TimeRangeAndRefreshWaitWhileAStepIsUndone) {
    BaseDocument* doc = host->newDocument();
    rangeStep = std::make_unique<RangeStep>(adaptor);
    RangeStep* step = rangeStep.get();
    adaptor->beginUndo("Range");
    ASSERT_EQ(adaptor->addUndo(step), 0);
    adaptor->acceptUndo();
    const std::size_t journal = host->journal().count("ExecutePasses");
    ASSERT_TRUE(host->undo());
    host->advance(80);
    ASSERT_EQ(step->undone, 1);
    EXPECT_DOUBLE_EQ(doc->GetMaxTime().Get(), 3.0);
    EXPECT_DOUBLE_EQ(doc->GetLoopMinTime().Get(), 0.0);
    // The host's own evaluation runs; the step's refresh adds no pass of its own.
    EXPECT_LE(host->journal().count("ExecutePasses") - journal, 2u);
}

TEST_F(Recording, ClosingADocumentTellsEachOfItsMastersOnce) {
    host->newDocument("first");
    NotingMaster& both = master("both");
    NotingMaster& only = master("only");
    camera(both, "a");
    BaseDocument* second = host->newDocument("second");
    camera(only, "b");
    camera(both, "c");
    camera(only, "d");
    QuietCore core;
    log.clear();
    host->closeDocument(second);  // no core attached: nobody is told
    EXPECT_TRUE(log.empty());

    host->newDocument("third");
    camera(only, "e");
    camera(both, "f");
    camera(only, "g");
    adaptor->core = &core;
    host->closeDocument();
    adaptor->core = nullptr;
    EXPECT_EQ(log, (std::vector<std::string>{"only message 43", "both message 43"}));
}

TEST_F(Recording, StoringWritesTheStateOnceOnTheFirstNodeAndNothingWithoutState) {
    BaseDocument* doc = host->newDocument();
    NotingMaster& rig = master("rig");
    core::CoreNode* gone = camera(rig, "gone");
    core::CoreNode* first = camera(rig, "first");
    core::CoreNode* second = camera(rig, "second");
    gone->detach();  // reports itself deleted: skipped
    Tag masterNode("masternode");
    masterNode.addChild(TagWithData("PLT_Plugin", "x"));
    rig.state = masterNode;
    log.clear();
    adaptor->storeMasterState(&rig);
    EXPECT_EQ(log, std::vector<std::string>{"rig message 56"});
    EXPECT_EQ(stored(first),
              "<PLT_tag><name>rig</name><objectname>rig_first</objectname>"
              "<masternode><PLT_Plugin>x</PLT_Plugin></masternode></PLT_tag>");
    EXPECT_EQ(stored(second), "<PLT_tag><name>rig</name><objectname>rig_second</objectname></PLT_tag>");
    EXPECT_EQ(stored(gone), "");

    // A master that gives no state writes nothing; earlier texts stay.
    rig.state = Element();
    adaptor->storeMasterState(&rig);
    EXPECT_NE(stored(first).find("<masternode>"), std::string::npos);

    // Objects outside the active document are not written.
    rig.state = masterNode;
    objectOf(first)->GetDataInstance()->SetString(kStored, String());
    host->newDocument();
    adaptor->storeMasterState(&rig);
    EXPECT_EQ(stored(first), "");
    (void)doc;
}

// The document's time as the core reads and moves it, and the host calls a
// change of time or a refresh makes, in their order.
TEST_F(Recording, TimeRangeAndRateComeFromTheActiveDocumentAndChangesTellTheHostInOrder) {
    const std::size_t before = host->journal().size();
    adaptor->setTime(2.0);  // no document: nothing happens
    adaptor->setTimeRange({1.0, 3.0});
    adaptor->refreshScene();
    EXPECT_EQ(journalSince(before), "");
    EXPECT_DOUBLE_EQ(adaptor->getTime(), 0.0);
    EXPECT_DOUBLE_EQ(adaptor->getFrameRate(), 0.0);
    EXPECT_DOUBLE_EQ(adaptor->getFrameDuration(), 0.0);

    BaseDocument* doc = host->newDocument();
    EXPECT_EQ(adaptor->getTimeRange(), (std::pair<double, double>{0.0, 3.0}));  // 90 frames at 30
    std::size_t from = host->journal().size();
    adaptor->setTime(1.5);
    EXPECT_EQ(journalSince(from),
              "DrawViews 32768\n"
              "GeSyncMessage 1952671847 0 0 0\n"
              "GeSyncMessage 604 0 0 0\n"
              "EventAdd 1\n"
              "EventAdd 0\n");
    EXPECT_EQ(doc->GetTime().GetFrame(doc->GetFps()), 45);
    EXPECT_DOUBLE_EQ(adaptor->getTime(), 1.5);
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

    adaptor->setTimeRange({0.5, 4.25});
    EXPECT_EQ(adaptor->getTimeRange(), (std::pair<double, double>{0.5, 4.25}));
    EXPECT_DOUBLE_EQ(doc->GetLoopMinTime().Get(), 0.5);
    EXPECT_DOUBLE_EQ(doc->GetLoopMaxTime().Get(), 4.25);

    doc->SetFps(25);
    EXPECT_DOUBLE_EQ(adaptor->getFrameRate(), 25.0);
    EXPECT_DOUBLE_EQ(adaptor->getFrameDuration(), 0.04);
}

TEST_F(Recording, CacheAndStopOnlyLogAndAnswer) {
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
}  // namespace tvr::plr::adaptor::cinema4d::testing
