#include "scene_file_fixture.h"

namespace tvr::plr::embedded::testing {
namespace {

class DocumentLifeTest : public SceneHostTest {
protected:
    // "type@document" for each message, documents by their names.
    std::vector<std::string> take() {
        std::vector<std::string> out;
        for (const Heard& h : heard) {
            out.push_back(std::to_string(h.type) + "@" + h.name);
            EXPECT_EQ(h.hookDocument, h.doc);  // each document's own hook hears about it
        }
        heard.clear();
        return out;
    }
    using Lines = std::vector<std::string>;
};

TEST_F(DocumentLifeTest, NewSwitchSaveOpenAndCloseInTheHostsOrder) {
    BaseDocument* a = host.newDocument("a");
    EXPECT_EQ(take(), (Lines{"1000@a"}));
    BaseDocument* b = host.newDocument("b");
    EXPECT_EQ(take(), (Lines{"1001@a", "1000@b"}));
    EXPECT_EQ(host.activeDocument(), b);
    ASSERT_TRUE(host.activateDocumentAt(0));
    EXPECT_EQ(take(), (Lines{"1001@b", "1000@a"}));
    host.activateDocument(a);  // already active: nothing to tell
    EXPECT_EQ(take(), Lines{});
    EXPECT_FALSE(host.activateDocumentAt(7));

    const std::string path = file("document_life_test.scene");
    ASSERT_TRUE(host.saveDocument(a, path));
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0].file, path);
    EXPECT_EQ(take(), (Lines{"1004@a", "1005@document_life_test.scene"}));  // named after the file once saved

    BaseDocument* opened = host.openDocument(path);
    ASSERT_NE(opened, nullptr);
    ASSERT_EQ(heard.size(), 3u);
    // The loaded document is already active when it hears 1002.
    EXPECT_EQ(heard[1].active, opened);
    EXPECT_EQ(heard[1].file, path);
    EXPECT_EQ(take(), (Lines{"1001@document_life_test.scene", "1002@document_life_test.scene",
                             "1000@document_life_test.scene"}));
    EXPECT_EQ(host.documents().size(), 3u);

    // Closing the active one: it is left, removed, and its neighbour becomes active.
    host.closeDocument();
    EXPECT_EQ(take(), (Lines{"1001@document_life_test.scene", "1008@document_life_test.scene", "1000@b"}));
    EXPECT_EQ(host.activeDocument(), b);
    // Closing one that is not active touches nothing else.
    host.closeDocument(a);
    EXPECT_EQ(take(), (Lines{"1008@document_life_test.scene"}));  // a, saved under the file's name
    EXPECT_EQ(host.activeDocument(), b);
    // The last one closed: a new empty document takes its place.
    host.closeDocument(b);
    EXPECT_EQ(take(), (Lines{"1001@b", "1008@b", "1000@Untitled"}));
    ASSERT_EQ(host.documents().size(), 1u);
    EXPECT_EQ(host.activeDocument()->GetFirstObject(), nullptr);
}

TEST_F(DocumentLifeTest, InsertedDocumentsBecomeActiveAndClosingTellsTheClosingOneFirst) {
    // Documents made by a module: the first one inserted is told it became active like any other.
    BaseDocument* a = BaseDocument::Alloc();
    a->SetDocumentName(Filename(String("a")));
    InsertBaseDocument(a);
    EXPECT_EQ(take(), (Lines{"1000@a"}));
    BaseDocument* b = BaseDocument::Alloc();
    b->SetDocumentName(Filename(String("b")));
    b->InsertObject(BaseObject::Alloc(Onull), nullptr, nullptr);
    InsertBaseDocument(b);
    EXPECT_EQ(take(), (Lines{"1001@a", "1000@b"}));
    EXPECT_EQ(GetActiveDocument(), b);

    // Closing the active one: it hears 1001 before anyone hears anything, still holds its objects
    // while it hears 1008, and what a hook does on its next message finds the next active one.
    host.closeDocument();
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_TRUE(heard[1].hasObjects);
    EXPECT_EQ(take(), (Lines{"1001@b", "1008@b", "1000@a"}));
    EXPECT_EQ(reloadedFrom, std::vector<BaseDocument*>{a});

    // Any event can be told to a document by hand, also ones the host never sends by itself.
    for (LONG type : {1003, 1006, 1007}) EXPECT_TRUE(host.tellDocument(a, type, "/x/y.scene"));
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(heard[0].file, "/x/y.scene");
    EXPECT_EQ(take(), (Lines{"1003@a", "1006@a", "1007@a"}));
    BaseDocument* loose = BaseDocument::Alloc();
    EXPECT_FALSE(host.tellDocument(loose, 1000));  // not in the host's list
    EXPECT_EQ(take(), Lines{});
    BaseDocument::Free(loose);
}

TEST_F(DocumentLifeTest, FailedOpenAndSaveTellWhatTheyMust) {
    BaseDocument* a = host.newDocument("a");
    take();
    EXPECT_EQ(host.openDocument("/nonexistent/x.scene"), nullptr);
    EXPECT_EQ(take(), Lines{});  // nothing happened to any document
    EXPECT_EQ(host.activeDocument(), a);
    // A failed save still closes the bracket, so hooks can undo what they did before it.
    EXPECT_FALSE(host.saveDocument(a, "/nonexistent/x.scene"));
    EXPECT_EQ(take(), (Lines{"1004@a", "1005@a"}));
    EXPECT_EQ(host.dialogs().size(), 2u);
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
