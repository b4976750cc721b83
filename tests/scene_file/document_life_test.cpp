#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "embedded_host.h"

namespace tvr::plr::embedded::testing {
namespace {

constexpr LONG kHook = 1029002;

struct Heard {
  LONG type;
  BaseDocument* doc;
  BaseDocument* active;  // the host's active document when the message arrived
  std::string file;
  BaseDocument* hookDocument;
  std::string name;  // the document's name when the message arrived
};
std::vector<Heard> heard;

class RecordingHook : public SceneHookData {
 public:
  Bool Message(GeListNode* node, LONG type, void* data) override {
    if (type == MSG_DOCUMENTINFO && data) {
      auto* info = static_cast<DocumentInfoData*>(data);
      heard.push_back({info->type, info->doc, GetActiveDocument(), info->filename.GetString().ToStd(),
                       node ? node->GetDocument() : nullptr, info->doc->GetDocumentName().GetString().ToStd()});
    }
    return true;
  }
};
NodeData* allocHook() { return new RecordingHook; }

LONG hookModule(LONG action, void* p1, void*, void*) {
  if (action == C4DPL_INIT_SYS) {
    C4DOS() = static_cast<C4D_HostTable*>(p1);
    return 1;
  }
  if (action == C4DPL_START) return RegisterSceneHookPlugin(kHook, "Recorder", 0, allocHook, 1000, 0) ? 1 : 0;
  return 1;
}

class DocumentLifeTest : public ::testing::Test {
 protected:
  DocumentLifeTest() : host(options()) {
    host.loadModule(&hookModule, "hook-module");
    heard.clear();
  }
  static HostOptions options() {
    HostOptions o;
    o.crashHandlers = false;
    return o;
  }
  // "type@document" for each message, documents by their names.
  std::vector<std::string> take() {
    std::vector<std::string> out;
    for (const Heard& h : heard) {
      out.push_back(std::to_string(h.type) + "@" + h.name);
      // Each document's own hook hears about it.
      EXPECT_EQ(h.hookDocument, h.doc);
    }
    heard.clear();
    return out;
  }
  using Lines = std::vector<std::string>;

  EmbeddedHost host;
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

  const std::string path = (std::filesystem::temp_directory_path() / "document_life_test.scene").string();
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
  std::filesystem::remove(path);
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

TEST_F(DocumentLifeTest, TreeShowsHierarchyTypesAndTags) {
  BaseDocument* doc = host.newDocument("tree");
  BaseObject* root = BaseObject::Alloc(Onull);
  root->SetName("Root");
  doc->InsertObject(root, nullptr, nullptr);
  BaseObject* cam = BaseObject::Alloc(Ocamera);
  cam->SetName("Cam");
  doc->InsertObject(cam, root, nullptr);
  BaseObject* mesh = BaseObject::Alloc(Opolygon);
  mesh->SetName("Mesh");
  doc->InsertObject(mesh, root, cam);
  mesh->MakeTag(Tuvw);
  mesh->InsertTrackSorted(CTrack::Alloc(mesh, DescID(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_VECTOR, 0))));
  EXPECT_EQ(host.tree(doc),
            "Document tree (active)\n"
            "  Root [5140]\n"
            "    Cam [5103]\n"
            "    Mesh [5100] tags: 5671 tracks: 1\n");
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
