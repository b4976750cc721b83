// Undo as a plug-in lives with it: pointers it holds stay valid across undo and
// redo, plug-in data travels with the undo copies, and records of every kind
// of node come back.
#include "embedded_host/runtime/host_context.h"
#include "test_support/host_fixture.h"

namespace tvr::plr::embedded::testing {
namespace {

constexpr LONG kCountingTag = 1000100;
const DescID kPosX{DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X)};

// A tag whose state lives in its plug-in data, not in its container.
class CountingTag : public TagData {
public:
    Bool CopyTo(NodeData* dest, GeListNode*, GeListNode*, LONG, AliasTrans*) override {
        static_cast<CountingTag*>(dest)->count = count;
        return true;
    }
    int count = 0;
};

NodeData* allocCounting() { return new CountingTag; }

int countOf(BaseTag* tag) { return static_cast<CountingTag*>(tag->GetNodeData())->count; }
void setCount(BaseTag* tag, int n) { static_cast<CountingTag*>(tag->GetNodeData())->count = n; }

class UndoIdentityTest : public HostTest {
protected:
    void SetUp() override {
        host.context().starting = true;
        ASSERT_TRUE(RegisterTagPlugin(kCountingTag, "Counting", 0, allocCounting, "", AutoBitmap("i.tif"), 0));
        host.context().starting = false;
        op = add("op");
        child = add("child", op);
        tag = op->MakeTag(kCountingTag);
        ASSERT_NE(tag, nullptr);
        setCount(tag, 1);
        track = CTrack::Alloc(op, kPosX);
        op->InsertTrackSorted(track);
        curve = track->GetCurve();
        key = curve->AddKey(BaseTime(1, 1));
        key->SetValue(curve, 5);
    }

    // Every pointer held since SetUp still names what the live scene holds.
    void expectSameNodes() {
        EXPECT_EQ(doc->GetFirstObject(), op);
        EXPECT_EQ(op->GetDown(), child);
        EXPECT_EQ(op->GetFirstTag(), tag);
        EXPECT_EQ(tag->GetObject(), op);
        EXPECT_EQ(op->GetFirstCTrack(), track);
        EXPECT_EQ(track->GetCurve(), curve);
        EXPECT_EQ(curve->GetKey(0), key);
    }

    BaseObject* op = nullptr;
    BaseObject* child = nullptr;
    BaseTag* tag = nullptr;
    CTrack* track = nullptr;
    CCurve* curve = nullptr;
    CKey* key = nullptr;
};

TEST_F(UndoIdentityTest, PointersHeldAcrossUndoAndRedoReachAndWriteTheLiveScene) {
    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE, op);
    op->SetName("op changed");
    child->SetName("child changed");
    setCount(tag, 2);
    tag->GetDataInstance()->SetLong(1, 2);
    key->SetValue(curve, 9);
    curve->AddKey(BaseTime(2, 1))->SetValue(curve, 11);
    BaseObject* extra = add("extra", op, child);
    doc->EndUndo();

    ASSERT_TRUE(host.undo());
    expectSameNodes();
    EXPECT_EQ(op->GetName().ToStd(), "op");
    EXPECT_EQ(child->GetName().ToStd(), "child");
    EXPECT_EQ(child->GetNext(), nullptr);  // the child added later is gone
    EXPECT_EQ(countOf(tag), 1);            // plug-in data came back with the tag
    EXPECT_EQ(tag->GetDataInstance()->GetLong(1), 0);
    EXPECT_EQ(curve->GetKeyCount(), 1);
    EXPECT_EQ(key->GetValue(), 5.0f);

    // Writes through the held pointers change the live scene, not the stored copy.
    child->SetName("written");
    key->SetValue(curve, 7);
    setCount(tag, 3);
    EXPECT_EQ(doc->GetFirstObject()->GetDown()->GetName().ToStd(), "written");
    EXPECT_EQ(doc->GetFirstObject()->GetFirstCTrack()->GetCurve()->GetKey(0)->GetValue(), 7.0f);
    EXPECT_EQ(countOf(doc->GetFirstObject()->GetFirstTag()), 3);

    ASSERT_TRUE(host.redo());
    expectSameNodes();
    EXPECT_EQ(child->GetNext(), extra);  // the same object comes back, not a copy
    EXPECT_EQ(child->GetName().ToStd(), "child changed");
    EXPECT_EQ(countOf(tag), 2);
    EXPECT_EQ(key->GetValue(), 9.0f);
    ASSERT_EQ(curve->GetKeyCount(), 2);
    extra->SetName("extra written");

    // What was written after the undo is what the next undo brings back.
    ASSERT_TRUE(host.undo());
    expectSameNodes();
    EXPECT_EQ(child->GetName().ToStd(), "written");
    EXPECT_EQ(key->GetValue(), 7.0f);
    EXPECT_EQ(countOf(tag), 3);
    ASSERT_TRUE(host.redo());
    EXPECT_EQ(extra->GetName().ToStd(), "extra written");
    EXPECT_EQ(extra->GetUp(), op);
}

TEST_F(UndoIdentityTest, TagRecordsRestorePluginDataForEveryChangeType) {
    for (LONG type : {UNDO_CHANGE, UNDO_CHANGE_NOCHILDS, UNDO_CHANGE_SMALL}) {
        SCOPED_TRACE(type);
        for (BaseList2D* element : {static_cast<BaseList2D*>(tag), static_cast<BaseList2D*>(op)}) {
            if (element == op && type == UNDO_CHANGE_SMALL) continue;  // a small change leaves tags out
            setCount(tag, 1);
            doc->StartUndo();
            ASSERT_TRUE(doc->AddUndo(type, element));
            setCount(tag, 2);
            doc->EndUndo();
            ASSERT_TRUE(host.undo());
            EXPECT_EQ(op->GetFirstTag(), tag);
            EXPECT_EQ(countOf(tag), 1);
            ASSERT_TRUE(host.redo());
            EXPECT_EQ(countOf(tag), 2);
        }
    }
}

TEST_F(UndoIdentityTest, NewAndDeleteRecordsOfTagsTracksAndObjects) {
    // A track added and recorded as new: undo takes it away, redo brings the same track back.
    const DescID posY{DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_Y)};
    CTrack* second = CTrack::Alloc(op, posY);
    doc->StartUndo();
    op->InsertTrackSorted(second);
    ASSERT_TRUE(doc->AddUndo(UNDO_NEW, second));
    doc->EndUndo();
    ASSERT_TRUE(host.undo());
    EXPECT_EQ(op->FindCTrack(posY), nullptr);
    ASSERT_TRUE(host.redo());
    EXPECT_EQ(op->FindCTrack(posY), second);

    // A tag deleted and freed comes back with its data.
    doc->StartUndo();
    ASSERT_TRUE(doc->AddUndo(UNDO_DELETE, tag));
    tag->Remove();
    BaseTag::Free(tag);
    doc->EndUndo();
    EXPECT_EQ(op->GetFirstTag(), nullptr);
    ASSERT_TRUE(host.undo());
    BaseTag* back = op->GetFirstTag();
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(countOf(back), 1);

    // An object removed (not freed) and changed afterwards comes back as it was recorded, as the
    // same object; redo takes it out again with the change it had.
    doc->StartUndo();
    ASSERT_TRUE(doc->AddUndo(UNDO_DELETE, child));
    child->Remove();
    child->SetName("renamed while out");
    doc->EndUndo();
    ASSERT_TRUE(host.undo());
    EXPECT_EQ(op->GetDown(), child);
    EXPECT_EQ(child->GetName().ToStd(), "child");
    ASSERT_TRUE(host.redo());
    EXPECT_EQ(op->GetDown(), nullptr);
    EXPECT_EQ(child->GetName().ToStd(), "renamed while out");
    ASSERT_TRUE(host.undo());
    EXPECT_EQ(child->GetName().ToStd(), "child");
}

TEST_F(UndoIdentityTest, CreationAndDeletionRecordedAtTheWrongTimeAreRefused) {
    BaseObject* early = BaseObject::Alloc(Onull);
    doc->StartUndo();
    // The place to undo to does not exist yet: the host refuses and says why.
    EXPECT_FALSE(doc->AddUndo(UNDO_NEW, early));
    doc->InsertObject(early, nullptr, nullptr);
    child->Remove();
    EXPECT_FALSE(doc->AddUndo(UNDO_DELETE, child));
    doc->EndUndo();
    const auto refused = host.journal().find("AddUndo refused");
    ASSERT_EQ(refused.size(), 2u);
    EXPECT_EQ(refused[0].text, "UNDO_NEW before the element is inserted");
    EXPECT_EQ(refused[1].text, "UNDO_DELETE after the element was removed");
    BaseObject::Free(child);
    // Outside a group records are ignored without a word.
    EXPECT_FALSE(doc->AddUndo(UNDO_CHANGE, op));
    EXPECT_EQ(host.journal().count("AddUndo refused"), 2u);
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
