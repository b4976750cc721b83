// The user's undo and redo reaching the core's steps through the host: the
// number on the hidden object, the tag that notices it, the message that runs
// the manager, in documents of their own and among the user's own edits.
#include "undo_fixture.h"

#include <algorithm>
#include <sstream>

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

// The journal entries of the given kinds from `from` on, one "kind text" a line.
std::string journalOf(emb::EmbeddedHost& host, std::size_t from, std::initializer_list<const char*> kinds) {
    std::ostringstream out;
    const auto& entries = host.journal().entries();
    for (std::size_t i = from; i < entries.size(); ++i)
        for (const char* k : kinds)
            if (entries[i].kind == k)
                out << entries[i].kind << (entries[i].text.empty() ? "" : " ") << entries[i].text << "\n";
    return out.str();
}

TEST_F(UndoTest, AGroupIsOneHostEntryWhoseUndoAndRedoRunTheCoreStepsInOrder) {
    // An empty group makes the hidden object and leaves no host entry.
    adaptorImpl->beginUndo("nothing");
    adaptorImpl->acceptUndo();
    EXPECT_FALSE(host.undo());
    const std::string before = host.dump(doc);
    core->group("Move", {"a", "b", "c"});
    EXPECT_EQ(containerNumber(), 3);
    EXPECT_EQ(tagNumber(), 3);
    BaseObject* hidden = containerObject();
    ASSERT_NE(hidden, nullptr);
    EXPECT_EQ(hidden->GetPos(), Vector(99999, 99999, 99999));
    EXPECT_EQ(hidden->GetDataInstance()->GetLong(kContainerMarkerKey), kContainerMarkerValue);
    EXPECT_EQ(hidden->GetFirstTag()->GetType(), 1023572);
    const std::string after = host.dump(doc);

    // The host restores the number at once; the tag notices at the next
    // evaluation; the message after that runs the steps backwards.
    std::size_t mark = host.journal().size();
    ASSERT_TRUE(host.undo());
    EXPECT_EQ(containerNumber(), 0);
    EXPECT_EQ(tagNumber(), 3);
    host.runCycle();
    EXPECT_EQ(core->data.counter, 3);
    EXPECT_EQ(host.context().specialEvents.size(), 1u);
    host.runCycle();
    EXPECT_EQ(core->data, CoreData());
    EXPECT_EQ(tagNumber(), 0);
    settle();
    EXPECT_EQ(core->calls, (std::vector<std::string>{"undo c", "undo b", "undo a"}));
    std::ostringstream tag;
    tag << reinterpret_cast<VULONG>(containerObject()->GetFirstTag());
    EXPECT_EQ(journalOf(host, mark, {"UserUndo", "SpecialEventAdd", "AddUndo"}),
              "UserUndo\nSpecialEventAdd 1023570 0 " + tag.str() + "\n");
    EXPECT_EQ(host.dump(doc), before);
    EXPECT_EQ(position(), 0u);

    core->calls.clear();
    mark = host.journal().size();
    userRedo();
    EXPECT_EQ(core->calls, (std::vector<std::string>{"redo a", "redo b", "redo c"}));
    EXPECT_EQ(host.dump(doc), after);
    EXPECT_EQ(journalOf(host, mark, {"SpecialEventAdd"}), "SpecialEventAdd 1023570 3 " + tag.str() + "\n");

    userUndo();
    EXPECT_EQ(host.dump(doc), before);
    EXPECT_FALSE(host.undo());
}

TEST_F(UndoTest, SeveralHostStepsUndoneAtOnceRunInOneMessageAmongTheUsersOwnEdits) {
    BaseObject* cube = BaseObject::Alloc(Onull);
    cube->SetName("cube");
    doc->InsertObject(cube, nullptr, nullptr);
    const auto rename = [&](const char* name) {
        doc->StartUndo();
        doc->AddUndo(UNDO_CHANGE_SMALL, cube);
        cube->SetName(name);
        doc->EndUndo();
    };
    core->group("one", {"a"});
    rename("cube 2");
    core->group("two", {"b", "c"});
    rename("cube 3");

    host.undo();
    host.undo();
    host.undo();
    const std::size_t mark = host.journal().size();
    settle();
    const std::string posted = journalOf(host, mark, {"SpecialEventAdd"});
    EXPECT_EQ(posted.rfind("SpecialEventAdd 1023570 1 ", 0), 0u) << posted;
    EXPECT_EQ(std::count(posted.begin(), posted.end(), '\n'), 1) << posted;
    EXPECT_EQ(cube->GetName().ToStd(), "cube");
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a"}));
    EXPECT_EQ(core->calls, (std::vector<std::string>{"undo c", "undo b"}));

    // A new group after an undo drops the undone steps of the redo branch.
    core->group("three", {"d"});
    EXPECT_EQ(position(), 2u);
    documentUndoContainer* record = C4DUndoManager::instance()->getDocumentContainer(doc);
    ASSERT_EQ(record->steps.size(), 2u);
    EXPECT_EQ(record->steps[1]->index, 1u);
    EXPECT_EQ(record->steps[1]->name.ToStd(), "three");
    EXPECT_FALSE(host.redo());
}

TEST_F(UndoTest, EachDocumentKeepsItsOwnStepsAndAMessageWaitsForItsDocument) {
    core->group("in A", {"a1"});
    core->group("in A", {"a2"});
    BaseDocument* other = host.newDocument("other");
    settle();
    core->group("in B", {"b1"});
    EXPECT_NE(containerObject(other), nullptr);
    EXPECT_EQ(containerNumber(other), 1);

    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a1", "a2"}));

    // Undo in A, and leave A after the tag has posted but before the message
    // arrives: B is left alone, and A catches up once it is active again.
    host.activateDocument(doc);
    settle();
    host.undo();
    host.runCycle();
    ASSERT_EQ(host.context().specialEvents.size(), 1u);
    host.activateDocument(other);
    const std::size_t logged = tvr::util::Log::contents().size();
    settle();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a1", "a2"}));
    EXPECT_NE(logSince(logged).find("WARNING): Undo message of a tag outside the active document ignored"),
              std::string::npos);
    EXPECT_EQ(position(), 0u);
    host.activateDocument(doc);
    settle();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a1"}));
    EXPECT_EQ(position(), 1u);

    host.activateDocument(other);
    settle();
    userRedo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a1", "b1"}));
}

TEST_F(UndoTest, TheCoresOwnUndoInsideAnOpenGroupTakesBackOnlyItsLastRecord) {
    core->group("one", {"a"});
    // Inside a group only the group's last record is taken back; the user's
    // own undo waits until the group is closed.
    adaptorImpl->beginUndo("open");
    core->edit(1, "b");
    core->edit(1, "c");
    EXPECT_FALSE(host.undo());
    EXPECT_TRUE(adaptorImpl->undo());
    settle();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "b"}));
    core->edit(1, "d");
    adaptorImpl->acceptUndo();
    settle();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "b", "d"}));
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a"}));
    userRedo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "b", "d"}));
}

TEST_F(UndoTest, DoUndoMessageUndoesAndPutsOneHostEntryForTheFirstObject) {
    core->group("one", {"a"});
    const std::size_t mark = host.journal().size();
    host.table().geSyncMessage(1023569, 0, 0, 0);
    EXPECT_EQ(journalOf(host, mark, {"StopAllThreads", "DoUndo", "StartUndo", "AddUndo", "EndUndo"}),
              "StopAllThreads\nDoUndo multiple\nStartUndo document:0 'scene'\nAddUndo 42 object:5100 "
              "'PLT-UndoContainer [Do not delete]'\nEndUndo document:0 'scene'\n");
    // Another id is not its business.
    const std::size_t quiet = host.journal().size();
    host.table().geSyncMessage(1023568, 0, 0, 0);
    EXPECT_EQ(journalOf(host, quiet, {"StopAllThreads", "DoUndo"}), "");
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
