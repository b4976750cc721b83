// The undo bracket as the core sees it: answers, host calls, log lines and
// their levels, the warnings for unbalanced use, and the cancel flag that
// stays set. Also the time restore step and the replay guard.
#include "undo_fixture.h"

#include "undo/set_time_restore_obj.h"
#include "undo/undo_guard.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

std::size_t occurrences(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

constexpr const char* kDuplicate =
    "CRITICAL): \tDEBUG WARNING: Detected duplicated undo groups. Possible undo group mismatch\n";
constexpr const char* kHigh = "CRITICAL): \tDEBUG WARNING: Detected unusual high undo level.\n";

TEST_F(UndoTest, NestedGroupsMakeOneHostGroupAndMismatchesAreOnlyReported) {
    const std::size_t logged = tvr::util::Log::contents().size();
    EXPECT_EQ(adaptorImpl->beginUndo("a"), 0);
    EXPECT_EQ(adaptorImpl->beginUndo("b"), 0);
    EXPECT_EQ(core->edit(1, "x"), 0);
    EXPECT_EQ(adaptorImpl->acceptUndo(), 0);
    EXPECT_EQ(adaptorImpl->acceptUndo(), 0);
    EXPECT_EQ(host.journal().count("StartUndo"), 1u);
    EXPECT_EQ(host.journal().count("EndUndo"), 1u);
    EXPECT_EQ(C4DUndoManager::instance()->getDocumentContainer(doc)->steps.at(0)->name.ToStd(), "b");
    std::string lines = logSince(logged);
    EXPECT_EQ(occurrences(lines, "NOTICE): \tBegin undo\n"), 2u) << lines;
    EXPECT_EQ(occurrences(lines, "NOTICE): \taddUndo\n"), 1u) << lines;
    EXPECT_EQ(occurrences(lines, "NOTICE): \tAccept undo\n"), 2u) << lines;
    EXPECT_NE(lines.find("NOTICE): \tCreating undomanager\n"), std::string::npos) << lines;

    // One accept too many: an error at level 1, no host call, nothing else changes.
    std::size_t mark = tvr::util::Log::contents().size();
    const std::size_t journaled = host.journal().size();
    EXPECT_EQ(adaptorImpl->acceptUndo(), 1);
    EXPECT_NE(logSince(mark).find(
                  "ERROR): \tError: undo group mismatch. Attempt to end a non-existing undo group detected\n"),
              std::string::npos);
    EXPECT_EQ(host.journal().size(), journaled);

    // Outside a group nothing is accepted; the core keeps its step.
    mark = tvr::util::Log::contents().size();
    EXPECT_FALSE(adaptorImpl->isAcceptingUndo());
    EXPECT_EQ(core->edit(1, "outside"), 1);
    lines = logSince(mark);
    EXPECT_EQ(occurrences(lines, "\tUndoLevel is empty -> not accepting\n"), 2u) << lines;
    EXPECT_EQ(C4DUndoManager::instance()->getDocumentContainer(doc)->steps.size(), 1u);

    // The bracket still works after all that.
    core->group("again", {"y"});
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"x", "outside"}));
}

TEST_F(UndoTest, DuplicateAndDeepNestingWarningsHaveTheirThresholdsAndNeedTheNoticeLevel) {
    std::size_t mark = tvr::util::Log::contents().size();
    adaptorImpl->beginUndo("same");
    adaptorImpl->beginUndo("same");
    EXPECT_EQ(occurrences(logSince(mark), kDuplicate), 0u);
    adaptorImpl->beginUndo("same");
    EXPECT_EQ(occurrences(logSince(mark), kDuplicate), 1u);
    adaptorImpl->beginUndo("same");
    EXPECT_EQ(occurrences(logSince(mark), kDuplicate), 2u);

    for (int i = 4; i < 101; ++i) adaptorImpl->beginUndo("level " + std::to_string(i));
    EXPECT_EQ(occurrences(logSince(mark), kHigh), 0u);
    adaptorImpl->beginUndo("one too deep");
    EXPECT_EQ(occurrences(logSince(mark), kHigh), 1u);

    tvr::util::Log::instance()->setLevel(2);
    mark = tvr::util::Log::contents().size();
    adaptorImpl->beginUndo("same");
    tvr::util::Log::instance()->setLevel(3);
    EXPECT_EQ(logSince(mark), "");

    // Warnings change nothing: every group still needs its accept.
    for (int i = 0; i < 103; ++i) EXPECT_EQ(adaptorImpl->acceptUndo(), 0);
    EXPECT_EQ(host.journal().count("EndUndo"), 1u);
    EXPECT_EQ(adaptorImpl->acceptUndo(), 1);
}

TEST_F(UndoTest, CancelUndoesTheGroupAndTheFlagStaysSetForEveryLaterClose) {
    core->group("kept", {"a"});
    adaptorImpl->beginUndo("cancelled");
    core->edit(1, "b");
    const std::size_t mark = tvr::util::Log::contents().size();
    const std::size_t ends = host.journal().count("EndUndo");
    EXPECT_EQ(adaptorImpl->cancelUndo(), 0);
    EXPECT_NE(logSince(mark).find("NOTICE): \tCancel undo\n"), std::string::npos);
    EXPECT_NE(logSince(mark).find("NOTICE): \t\tAccept undo\n"), std::string::npos);
    EXPECT_EQ(host.journal().count("EndUndo"), ends);
    EXPECT_EQ(host.journal().find("DoUndo").back().text, "multiple");
    settle();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a"}));

    // Every later close undoes its group too (plain groups are left to the
    // random sequences). Nested: the inner close undoes the whole host group,
    // and the outer close, finding no group open, takes back the entry before it.
    adaptorImpl->beginUndo("outer");
    core->edit(1, "x");
    adaptorImpl->beginUndo("inner");
    core->edit(1, "y");
    EXPECT_EQ(adaptorImpl->acceptUndo(), 0);
    EXPECT_EQ(adaptorImpl->acceptUndo(), 0);
    settle();
    EXPECT_EQ(host.journal().count("EndUndo"), ends);
    EXPECT_EQ(core->data, CoreData());
    userRedo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a"}));
    userRedo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "x", "y"}));
}

// A step that, while it is replayed, asks the guard and tries to add a step.
class ProbeStep : public tvr::plr::CUndo {
public:
    explicit ProbeStep(core::AdaptorInterface* adaptor) : adaptor_(adaptor) {}
    int undo(bool) override {
        guardAnswer = undoReplayInProgress();
        addAnswer = adaptor_->addUndo(this);
        return 1;
    }
    int redo() override { return undo(true); }
    void release() override {}
    bool guardAnswer = false;
    int addAnswer = -1;

private:
    core::AdaptorInterface* adaptor_;
};

TEST_F(UndoTest, ScenesChangingOperationsSeeTheReplayAndCannotAddSteps) {
    ProbeStep probe(adaptorImpl);
    adaptorImpl->beginUndo("probe");
    EXPECT_EQ(adaptorImpl->addUndo(&probe), 0);
    EXPECT_FALSE(undoReplayInProgress());
    adaptorImpl->acceptUndo();
    userUndo();
    EXPECT_TRUE(probe.guardAnswer);
    EXPECT_EQ(probe.addAnswer, 1);
    EXPECT_FALSE(undoReplayInProgress());
    EXPECT_EQ(C4DUndoManager::instance()->getDocumentContainer(doc)->steps.size(), 1u);
}

TEST_F(UndoTest, TheTimeStepSwapsTheDocumentTimeInSinglePrecisionMilliseconds) {
    EXPECT_TRUE(CSetTimeRestoreObj::hostTime(2.0004) == BaseTime(2000.0, 1000.0));
    EXPECT_TRUE(CSetTimeRestoreObj::hostTime(0.0335) == BaseTime(34.0, 1000.0));
    EXPECT_EQ(CSetTimeRestoreObj::hostTime(1e16).Get(), CSetTimeRestoreObj::hostTime(1e15).Get());
    EXPECT_EQ(CSetTimeRestoreObj::hostTime(-1e16).Get(), CSetTimeRestoreObj::hostTime(-1e15).Get());
    EXPECT_LT(CSetTimeRestoreObj::hostTime(-1e16).Get(), -9e14);

    doc->SetTime(BaseTime(1.0));
    adaptorImpl->beginUndo("record");
    EXPECT_EQ(adaptorImpl->recordOwnStep(new CSetTimeRestoreObj(adaptorImpl->getTime())), 0);
    doc->SetTime(BaseTime(2.5));
    adaptorImpl->acceptUndo();
    const std::size_t mark = host.journal().size();
    userUndo();
    EXPECT_DOUBLE_EQ(doc->GetTime().Get(), 1.0);
    bool seen = false;
    const auto& entries = host.journal().entries();
    for (std::size_t i = mark; i + 2 < entries.size(); ++i)
        if (entries[i].kind == "GeSyncMessage" && entries[i].text == "1952671847 0 0 0") {
            seen = entries[i + 1].kind == "EventAdd" && entries[i + 2].kind == "DrawViews";
            EXPECT_EQ(entries[i + 1].text + "|" + entries[i + 2].text, "1|32768");
        }
    EXPECT_TRUE(seen) << host.journal().toString();
    userRedo();
    EXPECT_DOUBLE_EQ(doc->GetTime().Get(), 2.5);
    userUndo();
    EXPECT_DOUBLE_EQ(doc->GetTime().Get(), 1.0);

    // Refused outside a group: the adaptor releases its own step at once.
    EXPECT_EQ(adaptorImpl->recordOwnStep(new CSetTimeRestoreObj(0.0)), 1);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
