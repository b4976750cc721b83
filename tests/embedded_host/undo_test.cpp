#include <random>

#include "host_context.h"
#include "host_fixture.h"

namespace tvr::plr::embedded::testing {
namespace {

using V = std::vector<std::string>;

class UndoTest : public HostTest {
 protected:
  std::string scene() { return host.dump(doc); }
};

TEST_F(UndoTest, GroupOfChangeSmallNewAndDeleteRoundTrips) {
  BaseObject* p = add("p");
  BaseObject* k1 = add("k1", p);
  BaseObject* k2 = add("k2", p, k1);
  BaseObject* s = add("s", nullptr, p);
  k1->GetDataInstance()->SetLong(1, 10);
  BaseLink* toK2 = BaseLink::Alloc();
  toK2->SetLink(k2);
  const std::string before = scene();

  doc->StartUndo();
  doc->AddUndo(UNDO_CHANGE, p);  // with children: k1 is changed below through it
  p->SetPos(Vector(1, 2, 3));
  k1->SetName("k1 renamed");
  k1->GetDataInstance()->SetLong(1, 11);
  doc->AddUndo(UNDO_CHANGE_SMALL, s);
  s->SetRot(Vector(0.5f, 0, 0));
  s->GetDataInstance()->SetString(2, "x");
  BaseObject* n = BaseObject::Alloc(Ocamera);
  n->SetName("new");
  doc->InsertObject(n, p, k1);
  doc->AddUndo(UNDO_NEW, n);
  doc->AddUndo(UNDO_DELETE, k2);
  k2->Remove();
  BaseObject::Free(k2);
  doc->EndUndo();
  const std::string after = scene();
  EXPECT_EQ(childNames(p), (V{"k1 renamed", "new"}));
  EXPECT_EQ(toK2->ForceGetLink(), nullptr);

  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(host.undo());
    EXPECT_EQ(scene(), before);
    EXPECT_TRUE(host.redo());
    EXPECT_EQ(scene(), after);
  }
  EXPECT_TRUE(host.undo());
  // The freed object is back where it was, and links to it resolve again.
  EXPECT_EQ(childNames(p), (V{"k1", "k2"}));
  BaseList2D* back = toK2->GetLink(doc);
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->GetName().ToStd(), "k2");
  EXPECT_FALSE(host.undo());  // nothing older
  BaseLink::Free(toK2);
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
  EXPECT_EQ(childNames(a), (V{"child"}));
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
  EXPECT_EQ(childNames(a), (V{"second", "child"}));  // children were not recorded
  EXPECT_NE(a->GetFirstCTrack(), nullptr);            // the track came back
}

TEST_F(UndoTest, OpenGroupUndoAndRedoBranch) {
  BaseObject* a = add("a");
  // Records outside a group are ignored.
  EXPECT_FALSE(doc->AddUndo(UNDO_CHANGE_SMALL, a));

  doc->StartUndo();
  doc->StartUndo();  // nested pairs count as one group
  doc->AddUndo(UNDO_CHANGE_SMALL, a);
  a->SetName("one");
  doc->EndUndo();
  doc->AddUndo(UNDO_CHANGE_SMALL, a);
  a->SetName("two");
  EXPECT_TRUE(doc->DoUndo(false));  // only the last record
  EXPECT_EQ(a->GetName().ToStd(), "one");
  doc->AddUndo(UNDO_CHANGE_SMALL, a);
  a->SetName("three");
  EXPECT_TRUE(doc->DoUndo(true));  // everything of the open group, and it is closed
  EXPECT_EQ(a->GetName().ToStd(), "a");
  doc->EndUndo();                   // a late close changes nothing
  EXPECT_FALSE(host.undo());        // no closed group to undo
  EXPECT_TRUE(host.redo());         // the cancelled group can be redone
  EXPECT_EQ(a->GetName().ToStd(), "three");
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
}

TEST_F(UndoTest, MovedObjectComesBackWithItsTagsAndSelection) {
  BaseObject* p = add("p");
  BaseObject* q = add("q", nullptr, p);
  BaseObject* m = add("m", p);
  add("m2", p, m);
  const std::string before = scene();

  // The move a scene node makes: delete record, remove, insert elsewhere, new record.
  doc->StartUndo();
  doc->AddUndo(UNDO_DELETE, m);
  m->Remove();
  doc->InsertObject(m, q, nullptr);
  doc->AddUndo(UNDO_NEW, m);
  doc->AddUndo(UNDO_CHANGE_SELECTION, m);
  doc->SetActiveObject(m, SELECTION_NEW);
  doc->EndUndo();
  const std::string after = scene();
  EXPECT_EQ(m->GetUp(), q);

  host.undo();
  EXPECT_EQ(scene(), before);
  EXPECT_EQ(m->GetUp(), p);  // the same object, not a copy
  EXPECT_EQ(doc->GetActiveObject(), nullptr);
  host.redo();
  EXPECT_EQ(scene(), after);
  EXPECT_EQ(doc->GetActiveObject(), m);
}

// Random edits the way a module makes them, each recorded before (or, for new objects, after)
// it is made; the scene must match its snapshots under any number of undos and redos.
class RandomEdits {
 public:
  RandomEdits(BaseDocument* doc, unsigned seed) : doc_(doc), rng_(seed) {}

  void group() {
    doc_->StartUndo();
    const int edits = 1 + pick(4);
    for (int i = 0; i < edits; ++i) edit();
    doc_->EndUndo();
  }

 private:
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }

  void collect(BaseObject* op, std::vector<BaseObject*>& out) {
    for (; op; op = op->GetNext()) {
      out.push_back(op);
      collect(op->GetDown(), out);
    }
  }

  BaseObject* any() {
    std::vector<BaseObject*> all;
    collect(doc_->GetFirstObject(), all);
    return all.empty() ? nullptr : all[size_t(pick(int(all.size())))];
  }

  void edit() {
    BaseObject* op = any();
    const int kind = op ? pick(8) : 0;
    const std::string label = "o" + std::to_string(counter_++);
    switch (kind) {
      case 0: {  // new object
        BaseObject* n = BaseObject::Alloc(pick(2) ? Onull : Ocamera);
        n->SetName(String(label));
        BaseObject* parent = op && pick(2) ? op : nullptr;
        BaseObject* pred = parent && parent->GetDown() && pick(2) ? parent->GetDown() : nullptr;
        doc_->InsertObject(n, parent, pred);
        doc_->AddUndo(UNDO_NEW, n);
        break;
      }
      case 1:  // own data
        doc_->AddUndo(UNDO_CHANGE_SMALL, op);
        op->SetName(String(label));
        op->SetPos(Vector(Real(pick(100)), 0, Real(pick(7))));
        op->GetDataInstance()->SetLong(pick(3), pick(1000));
        op->SetEditorMode(pick(3));
        break;
      case 2: {  // delete (and free)
        doc_->AddUndo(UNDO_DELETE, op);
        op->Remove();
        BaseObject::Free(op);
        break;
      }
      case 3: {  // move elsewhere, the way a node reparents
        BaseObject* target = any();
        doc_->AddUndo(UNDO_DELETE, op);
        op->Remove();
        doc_->InsertObject(op, target == op ? nullptr : target, nullptr);
        doc_->AddUndo(UNDO_NEW, op);
        break;
      }
      case 4: {  // change with children: rename a child, add one
        doc_->AddUndo(UNDO_CHANGE, op);
        if (BaseObject* c = op->GetDown()) c->SetName(String(label + "c"));
        BaseObject* n = BaseObject::Alloc(Onull);
        n->SetName(String(label + "n"));
        doc_->InsertObject(n, op, nullptr);
        break;
      }
      case 5: {  // animation: a track with a key
        doc_->AddUndo(UNDO_CHANGE, op);
        const DescID id{DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X + pick(3))};
        CTrack* t = op->FindCTrack(id);
        if (!t) {
          t = CTrack::Alloc(op, id);
          op->InsertTrackSorted(t);
        }
        CKey* k = t->GetCurve()->AddKey(BaseTime(pick(30), 30));
        k->SetValue(t->GetCurve(), Real(pick(50)));
        break;
      }
      case 6: {  // change without children, then delete a child object
        doc_->AddUndo(UNDO_CHANGE_NOCHILDS, op);
        op->GetDataInstance()->SetString(9, String(label));
        if (BaseObject* c = op->GetDownLast()) {
          doc_->AddUndo(UNDO_DELETE, c);
          c->Remove();
          BaseObject::Free(c);
        }
        break;
      }
      default:  // selection
        doc_->AddUndo(UNDO_CHANGE_SELECTION, op);
        doc_->SetActiveObject(op, pick(2) ? SELECTION_NEW : SELECTION_ADD);
        break;
    }
  }

  BaseDocument* doc_;
  std::mt19937 rng_;
  int counter_ = 0;
};

TEST_F(UndoTest, RandomEditSequencesMatchTheirSnapshots) {
  for (unsigned seed = 1; seed <= 25; ++seed) {
    SCOPED_TRACE(seed);
    doc = host.newDocument("random");
    RandomEdits edits(doc, seed);
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
    while (position > 0) {
      ASSERT_TRUE(host.undo());
      --position;
      ASSERT_EQ(host.dump(doc), states[position]);
    }
    while (position + 1 < states.size()) {
      ASSERT_TRUE(host.redo());
      ++position;
      ASSERT_EQ(host.dump(doc), states[position]);
    }
    host.removeDocument(doc);
  }
}

TEST_F(UndoTest, UndoRedoJournalAndEvents) {
  BaseObject* a = add("a");
  host.journal().clear();
  doc->StartUndo();
  doc->AddUndo(UNDO_CHANGE_SMALL, a);
  doc->EndUndo();
  const auto& e = host.journal().entries();
  ASSERT_EQ(e.size(), 3u);
  EXPECT_EQ(e[0].kind, "StartUndo");
  EXPECT_EQ(e[1].kind, "AddUndo");
  EXPECT_EQ(e[1].text, "42 object:5140 'a'");
  EXPECT_EQ(e[2].kind, "EndUndo");

  host.runCycle();  // settle whatever was pending
  EXPECT_FALSE(host.context().eventPending);
  doc->DoUndo(false);
  EXPECT_TRUE(host.context().eventPending);  // the next cycle evaluates
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
