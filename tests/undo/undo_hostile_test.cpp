// What users and cores do that they should not: deleting the hidden object or
// its tag, saving with history open, closing a document inside a group.
#include "undo_fixture.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "test_support/core_api_implementations.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

int namedObjects(BaseDocument* d, const std::string& name) {
    int n = 0;
    for (BaseObject* op = d->GetFirstObject(); op; op = op->GetNext()) n += op->GetName().ToStd() == name;
    return n;
}

TEST_F(UndoTest, ADeletedHiddenObjectIsNotRebuiltAndStepsFailUntilTheUserUndoesTheDeletion) {
    core->group("one", {"a"});
    BaseObject* hidden = containerObject();
    doc->StartUndo();
    doc->AddUndo(UNDO_DELETE, hidden);
    hidden->Remove();
    doc->EndUndo();
    settle();

    // Kept so: no new object, the step is not stored, the number still rises.
    adaptorImpl->beginUndo("two");
    EXPECT_EQ(core->edit(1, "lost"), 0);
    adaptorImpl->acceptUndo();
    settle();
    EXPECT_EQ(namedObjects(doc, kContainerObjectName), 0);
    EXPECT_EQ(position(), 2u);
    EXPECT_EQ(C4DUndoManager::instance()->getDocumentContainer(doc)->steps.size(), 1u);

    // The user's undo brings the object back under its identity, and with it the link.
    userUndo();
    ASSERT_EQ(containerObject(), hidden);
    core->group("three", {"c"});
    EXPECT_EQ(containerNumber(), 3);
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "lost"}));
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"lost"}));
    EXPECT_EQ(position(), 0u);
    userRedo();
    userRedo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "lost", "c"}));
}

TEST_F(UndoTest, ADeletedTagEndsTheLinkForThatDocumentOnly) {
    core->group("one", {"a"});
    BaseTag* tag = containerObject()->GetFirstTag();
    BaseTag::Free(tag);
    settle();
    EXPECT_EQ(core->edit(1, "outside"), 1);
    core->group("two", {"b"});
    EXPECT_EQ(position(), 2u);
    EXPECT_EQ(containerNumber(), 1);
    EXPECT_EQ(namedObjects(doc, kContainerObjectName), 1);
    // Nothing notices the user's undo any more.
    const std::size_t posts = host.journal().count("SpecialEventAdd");
    userUndo();
    EXPECT_EQ(host.journal().count("SpecialEventAdd"), posts);
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "b", "outside"}));

    // Another document is not affected.
    host.newDocument("other");
    core->group("elsewhere", {"c"});
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "b", "outside"}));
}

// Around a save the object leaves the document and comes back to the top
// level, once however often it is put back.
TEST_F(UndoTest, TheHiddenObjectTakenOutIsPutBackOnce) {
    core->group("one", {"a"});
    core->group("two", {"b"});
    C4DUndoManager* manager = C4DUndoManager::instance();
    BaseObject* hidden = containerObject();
    manager->detachContainerObject(doc);
    EXPECT_EQ(containerObject(), nullptr);
    EXPECT_EQ(hidden->GetDocument(), nullptr);
    manager->attachContainerObject(doc);
    EXPECT_EQ(containerObject(), hidden);
    manager->attachContainerObject(doc);
    EXPECT_EQ(namedObjects(doc, kContainerObjectName), 1);
    userUndo();
    userUndo();
    EXPECT_EQ(core->data, CoreData());
}

TEST_F(UndoTest, TheSceneHookKeepsTheHiddenObjectOutOfSavedFilesAndDropsAClosedDocumentsRecord) {
    tvr::plr::test::TestCore attached;  // has nothing to save
    adaptorImpl->core = &attached;
    core->group("one", {"a"});
    core->group("two", {"b"});
    userUndo();
    const std::string file = (std::filesystem::temp_directory_path() /
                              ("plr_undo_hook_" + std::to_string(reinterpret_cast<VULONG>(this)) + ".json"))
                                 .string();
    ASSERT_TRUE(host.saveDocument(doc, file));
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    in.close();
    std::remove(file.c_str());
    EXPECT_EQ(text.str().find("PLT-UndoContainer"), std::string::npos);
    EXPECT_NE(text.str().find("\"fps\""), std::string::npos) << text.str();
    EXPECT_EQ(C4DUndoManager::instance()->getDocumentContainer(doc)->documentName.ToStd(), file);
    EXPECT_NE(containerObject(), nullptr);
    settle();
    userRedo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "b"}));

    host.newDocument("other");
    BaseDocument* closed = doc;
    const std::size_t records = host.journal().count("EventAdd");
    host.closeDocument(doc);
    EXPECT_GT(host.journal().count("EventAdd"), records);
    EXPECT_FALSE(C4DUndoManager::instance()->hasDocumentContainer(closed));
    adaptorImpl->core = nullptr;
}

TEST_F(UndoTest, ClosingTheDocumentInsideAGroupLosesNoStep) {
    host.newDocument("second");
    BaseDocument* second = host.activeDocument();
    host.activateDocument(doc);
    adaptorImpl->beginUndo("open while closing");
    core->edit(1, "a");
    BaseDocument* closed = doc;
    host.closeDocument(doc);
    ASSERT_EQ(host.activeDocument(), second);
    // The rest of the group lands in the document that is active now; its
    // host stack had no group open, so the step is kept but not undoable there.
    EXPECT_EQ(core->edit(1, "b"), 0);
    EXPECT_EQ(adaptorImpl->acceptUndo(), 0);
    settle();
    EXPECT_EQ(position(), 1u);
    EXPECT_EQ(containerNumber(second), 1);
    core->group("next", {"c"});
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a", "b"}));
    EXPECT_FALSE(host.undo());
    // The closed document's record is not taken for a later document at the same address.
    EXPECT_FALSE(C4DUndoManager::instance()->hasDocumentContainer(closed));
}

TEST_F(UndoTest, RemovingADocumentsRecordFreesItsHiddenObject) {
    core->group("one", {"a"});
    C4DUndoManager* manager = C4DUndoManager::instance();
    const std::size_t events = host.journal().count("EventAdd");
    manager->removeDocument(nullptr);
    EXPECT_FALSE(manager->hasDocumentContainer(doc));
    EXPECT_EQ(containerObject(), nullptr);
    EXPECT_EQ(host.journal().count("EventAdd"), events + 1);
    // The host's old entry still restores a number, but nothing listens.
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a"}));
    core->group("fresh", {"b"});
    EXPECT_EQ(containerNumber(), 1);
    userUndo();
    EXPECT_EQ(core->data.names, (std::set<std::string>{"a"}));
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
