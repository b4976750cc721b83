#include <functional>
#include <random>

#include "embedded_host/runtime/host_context.h"
#include "test_support/host_fixture.h"

namespace tvr::plr::embedded::testing {
namespace {

using UndoTest = HostTest;

TEST_F(UndoTest, GroupBringsBackTheSameObjectsLinksAndSelection) {
    BaseObject* p = add("p");
    BaseObject* k = add("k", p);
    BaseObject* m = add("m", p, k);
    BaseLink* toK = BaseLink::Alloc();
    toK->SetLink(k);
    const std::string before = host.dump(doc);

    doc->StartUndo();
    doc->AddUndo(UNDO_DELETE, k);
    k->Remove();
    BaseObject::Free(k);
    // The move a scene node makes: delete record, remove, insert elsewhere, new record.
    doc->AddUndo(UNDO_DELETE, m);
    m->Remove();
    doc->InsertObject(m, nullptr, nullptr);
    doc->AddUndo(UNDO_NEW, m);
    doc->AddUndo(UNDO_CHANGE_SELECTION, m);
    doc->SetActiveObject(m, SELECTION_NEW);
    doc->EndUndo();
    const std::string after = host.dump(doc);
    EXPECT_EQ(toK->ForceGetLink(), nullptr);

    EXPECT_TRUE(host.undo());
    EXPECT_EQ(host.dump(doc), before);
    EXPECT_EQ(m->GetUp(), p);  // the same object, not a copy
    EXPECT_EQ(doc->GetActiveObject(), nullptr);
    // The freed object is back where it was, and links to it resolve again.
    BaseList2D* back = toK->GetLink(doc);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->GetName().ToStd(), "k");
    EXPECT_FALSE(host.undo());  // nothing older
    EXPECT_TRUE(host.redo());
    EXPECT_EQ(host.dump(doc), after);
    EXPECT_EQ(doc->GetActiveObject(), m);
    BaseLink::Free(toK);
}

TEST_F(UndoTest, SmallChangeLeavesTagsTracksAndChildrenAlone) {
    BaseObject* a = add("a");
    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE_SMALL, a);
    a->SetName("b");
    add("child", a);
    a->InsertTrackSorted(CTrack::Alloc(a, DescID(DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X))));
    doc->EndUndo();
    host.undo();
    EXPECT_EQ(a->GetName().ToStd(), "a");
    EXPECT_EQ(childNames(a), (Names{"child"}));
    EXPECT_NE(a->GetFirstCTrack(), nullptr);

    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE_NOCHILDS, a);
    a->SetName("c");
    add("second", a);
    CTrack* t = a->GetFirstCTrack();
    t->Remove();
    CTrack::Free(t);
    doc->EndUndo();
    host.undo();
    EXPECT_EQ(a->GetName().ToStd(), "a");
    EXPECT_EQ(childNames(a), (Names{"second", "child"}));  // children were not recorded
    EXPECT_NE(a->GetFirstCTrack(), nullptr);               // the track came back
}

TEST_F(UndoTest, OpenGroupUndoRedoBranchAndJournal) {
    BaseObject* a = add("a");
    BaseObject* b = add("b");
    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE_SMALL, a);
    a->SetName("kept for redo");
    doc->EndUndo();
    ASSERT_TRUE(host.undo());

    doc->StartUndo();
    EXPECT_FALSE(host.redo());  // not while a group is open
    doc->StartUndo();           // nested pairs count as one group
    doc->AddUndo(UNDO_CHANGE_SMALL, a);
    a->SetName("one");
    doc->EndUndo();
    doc->AddUndo(UNDO_CHANGE_SMALL, a);
    a->SetName("two");
    EXPECT_TRUE(doc->DoUndo(false));  // only the last record
    EXPECT_EQ(a->GetName().ToStd(), "one");
    doc->AddUndo(UNDO_CHANGE_SMALL, a);
    a->SetName("three");
    doc->AddUndo(UNDO_CHANGE_SMALL, b);
    b->SetName("outer");
    EXPECT_TRUE(doc->DoUndo(true));  // every record of the open group, inner ones included, and it is closed
    EXPECT_EQ(a->GetName().ToStd(), "a");
    EXPECT_EQ(b->GetName().ToStd(), "b");
    doc->EndUndo();                    // a late close changes nothing
    EXPECT_FALSE(host.undo());         // no closed group to undo
    EXPECT_FALSE(doc->DoUndo(false));  // nor an open one
    // The cancelled group replaced the redo branch: redo brings back both of its records.
    EXPECT_TRUE(host.redo());
    EXPECT_EQ(a->GetName().ToStd(), "three");
    EXPECT_EQ(b->GetName().ToStd(), "outer");
    EXPECT_FALSE(host.redo());
    host.undo();

    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE_SMALL, a);
    a->SetName("fresh");
    doc->EndUndo();
    EXPECT_FALSE(host.redo());  // the new group dropped the redo branch
    EXPECT_TRUE(host.undo());
    EXPECT_EQ(a->GetName().ToStd(), "a");

    // An empty group leaves the stack as it was.
    doc->StartUndo();
    doc->EndUndo();
    EXPECT_TRUE(host.redo());
    EXPECT_EQ(a->GetName().ToStd(), "fresh");

    // Each call is journaled, and undo and redo, the user's or a module's, ask for the next cycle to evaluate.
    host.journal().clear();
    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE_SMALL, a);
    doc->EndUndo();
    EXPECT_EQ(host.journal().toString(),
              "StartUndo document:0 'scene'\nAddUndo 42 object:5140 'fresh'\nEndUndo document:0 'scene'\n");
    for (const std::function<void()>& step :
         std::vector<std::function<void()>>{[&] { doc->DoUndo(false); }, [&] { host.redo(); }, [&] { host.undo(); }}) {
        host.runCycle();
        ASSERT_FALSE(host.context().eventPending);
        step();
        EXPECT_TRUE(host.context().eventPending);
    }
}

// Random edits the way a module makes them, each recorded before (or, for new objects, after)
// it is made; the scene must match its snapshots under any number of undos and redos.
struct RandomEdits {
    void group() {
        doc->StartUndo();
        for (int i = pick(4); i >= 0; --i) edit();
        doc->EndUndo();
    }

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }

    BaseObject* any() {
        std::vector<BaseObject*> all;
        std::function<void(BaseObject*)> collect = [&](BaseObject* op) {
            for (; op; op = op->GetNext()) all.push_back(op), collect(op->GetDown());
        };
        collect(doc->GetFirstObject());
        return all.empty() ? nullptr : all[size_t(pick(int(all.size())))];
    }

    void insertNew(BaseObject* n, const std::string& name, BaseObject* parent, BaseObject* pred = nullptr) {
        n->SetName(String(name));
        doc->InsertObject(n, parent, pred);
    }

    void deleteAndFree(BaseObject* op) {
        doc->AddUndo(UNDO_DELETE, op);
        op->Remove();
        BaseObject::Free(op);
    }

    void edit() {
        BaseObject* op = any();
        const std::string label = "o" + std::to_string(counter++);
        switch (op ? pick(8) : 0) {
        case 0: {  // new object
            BaseObject* n = BaseObject::Alloc(pick(2) ? Onull : Ocamera);
            BaseObject* parent = op && pick(2) ? op : nullptr;
            insertNew(n, label, parent, parent && parent->GetDown() && pick(2) ? parent->GetDown() : nullptr);
            doc->AddUndo(UNDO_NEW, n);
            break;
        }
        case 1:  // own data
            doc->AddUndo(UNDO_CHANGE_SMALL, op);
            op->SetName(String(label));
            op->SetPos(Vector(Real(pick(100)), 0, Real(pick(7))));
            op->GetDataInstance()->SetLong(pick(3), pick(1000));
            op->SetEditorMode(pick(3));
            break;
        case 2:
            deleteAndFree(op);
            break;
        case 3: {  // move elsewhere, the way a node reparents
            BaseObject* target = any();
            doc->AddUndo(UNDO_DELETE, op);
            op->Remove();
            doc->InsertObject(op, target == op ? nullptr : target, nullptr);
            doc->AddUndo(UNDO_NEW, op);
            break;
        }
        case 4:  // change with children: rename a child, add one
            doc->AddUndo(UNDO_CHANGE, op);
            if (BaseObject* c = op->GetDown()) c->SetName(String(label + "c"));
            insertNew(BaseObject::Alloc(Onull), label + "n", op);
            break;
        case 5: {  // animation: a track with a key
            doc->AddUndo(UNDO_CHANGE, op);
            const DescID id{DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X + pick(3))};
            CTrack* t = op->FindCTrack(id);
            if (!t) op->InsertTrackSorted(t = CTrack::Alloc(op, id));
            t->GetCurve()->AddKey(BaseTime(pick(30), 30))->SetValue(t->GetCurve(), Real(pick(50)));
            break;
        }
        case 6:  // change without children, then delete a child object
            doc->AddUndo(UNDO_CHANGE_NOCHILDS, op);
            op->GetDataInstance()->SetString(9, String(label));
            if (BaseObject* c = op->GetDownLast()) deleteAndFree(c);
            break;
        default:  // selection
            doc->AddUndo(UNDO_CHANGE_SELECTION, op);
            doc->SetActiveObject(op, pick(2) ? SELECTION_NEW : SELECTION_ADD);
        }
    }

    BaseDocument* doc;
    std::mt19937 rng;
    int counter = 0;
};

TEST_F(UndoTest, RandomEditSequencesMatchTheirSnapshots) {
    for (unsigned seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        doc = host.newDocument("random");
        RandomEdits edits{doc, std::mt19937(seed)};
        std::mt19937 rng(seed * 7919u);
        std::vector<std::string> states{host.dump(doc)};
        size_t position = 0;  // states[position] is the current scene
        for (int step = 0; step < 40; ++step) {
            const int action = std::uniform_int_distribution<int>(0, 3)(rng);
            if (action <= 1) {
                edits.group();
                states.resize(position + 1);  // the redo branch goes
                states.push_back(host.dump(doc));
                ++position;
            } else if (action == 2) {
                ASSERT_EQ(host.undo(), position > 0);
                if (position > 0) --position;
            } else {
                ASSERT_EQ(host.redo(), position + 1 < states.size());
                if (position + 1 < states.size()) ++position;
            }
            ASSERT_EQ(host.dump(doc), states[position]) << "after step " << step;
        }
        // Walk the whole history down and up again.
        for (const bool down : {true, false})
            while (down ? position > 0 : position + 1 < states.size()) {
                ASSERT_TRUE(down ? host.undo() : host.redo());
                position = down ? position - 1 : position + 1;
                ASSERT_EQ(host.dump(doc), states[position]);
            }
        host.removeDocument(doc);
    }
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
