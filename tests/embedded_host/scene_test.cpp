#include <regex>

#include "embedded_host/runtime/host_context.h"
#include "test_support/host_fixture.h"

namespace tvr::plr::embedded::testing {
namespace {

TEST_F(HostTest, InsertObjectPlacesAfterPredUnderParentOrFirst) {
    BaseObject* a = add("a");
    BaseObject* b = add("b");              // first of the document
    BaseObject* c = add("c", nullptr, b);  // after b
    EXPECT_EQ(childNames(nullptr), (Names{"b", "c", "a"}));
    BaseObject* k1 = add("k1", a);
    add("k2", a);  // first child
    add("k3", a, k1);
    EXPECT_EQ(childNames(a), (Names{"k2", "k1", "k3"}));
    EXPECT_EQ(k1->GetUp(), a);
    EXPECT_EQ(a->GetDownLast()->GetName().ToStd(), "k3");
    EXPECT_EQ(c->GetPred(), b);

    // A node still in a list is not moved by any insertion: each call says so and changes nothing.
    BaseTag* tag = a->MakeTag(Tuvw);
    CTrack* track = CTrack::Alloc(a, DescID(DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X)));
    a->InsertTrackSorted(track);
    const std::string before = host.dump(doc);
    host.journal().clear();
    doc->InsertObject(a, c, nullptr);
    a->InsertUnder(c);
    a->InsertAfter(b);
    c->InsertTag(tag);
    c->InsertTrackSorted(track);
    EXPECT_EQ(host.dump(doc), before);
    std::vector<std::string> said;
    for (const auto& e : host.journal().find("GePrint")) said.push_back(e.text);
    EXPECT_EQ(said, (Names{"InsertObject refused: object:5140 'a' is already inserted",
                           "InsertUnder refused: object:5140 'a' is already inserted",
                           "InsertAfter refused: object:5140 'a' is already inserted",
                           "InsertTag refused: tag:5671 '' is already inserted",
                           "InsertTrackSorted refused: track:5350 '' is already inserted"}));
    // Moving: out of the old place first.
    a->Remove();
    doc->InsertObject(a, c, nullptr);
    EXPECT_EQ(childNames(nullptr), (Names{"b", "c"}));
    EXPECT_EQ(a->GetUp(), c);
    EXPECT_EQ(k1->GetDocument(), doc);

    // An object cannot go under its own descendant.
    c->Remove();
    c->InsertUnder(k1);
    EXPECT_EQ(c->GetUp(), nullptr);
    EXPECT_EQ(k1->GetUp(), a);
}

TEST_F(HostTest, InsertObjectCheckingNamesNumbersTheNewcomer) {
    BaseObject* cube = add("Cube");
    add("Cube.1", cube);
    auto insert = [this](const char* name, bool checkNames) {
        BaseObject* op = BaseObject::Alloc(Onull);
        op->SetName(name);
        doc->InsertObject(op, nullptr, nullptr, checkNames);
        return op->GetName().ToStd();
    };
    EXPECT_EQ(insert("Cube", true), "Cube.2");    // names anywhere in the document count
    EXPECT_EQ(insert("Cube.2", true), "Cube.3");  // a numbered name counts on from its stem
    EXPECT_EQ(insert("Sphere", true), "Sphere");
    EXPECT_EQ(insert("", true), "");
    EXPECT_EQ(insert("Cube", false), "Cube");
    // The object's own name, after a remove and insert, is not a clash.
    cube->Remove();
    doc->InsertObject(cube, nullptr, nullptr, true);
    EXPECT_EQ(cube->GetName().ToStd(), "Cube.4");  // another "Cube" went in meanwhile
}

TEST_F(HostTest, FreeingByAStalePointerIsCaughtAndHarmsNoNewcomer) {
    BaseObject* a = add("a");
    BaseObject* stale = a;
    BaseTag* tag = BaseTag::Alloc(Tuvw);
    BaseTag* staleTag = tag;
    BaseObject::Free(a);
    BaseTag::Free(tag);
    // Whatever the allocator does, nodes made now do not take the freed addresses.
    std::vector<BaseObject*> made;
    for (int i = 0; i < 64; ++i) made.push_back(add(("new " + std::to_string(i)).c_str()));
    for (BaseObject* op : made) ASSERT_NE(op, stale);
    host.journal().clear();
    BaseObject::Free(stale);
    BaseTag::Free(staleTag);
    EXPECT_EQ(host.journal().toString(),
              "GePrint BaseObject::Free refused: freed before\n"
              "GePrint BaseTag::Free refused: freed before\n");
    EXPECT_EQ(childNames(nullptr).size(), 64u);
}

TEST_F(HostTest, RemoveKeepsTheObjectAndFreeTakesEverythingWithIt) {
    BaseObject* a = add("a");
    add("k", a);
    a->InsertTrackSorted(CTrack::Alloc(a, DescID(DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X))));
    const size_t before = host.context().registry.allocatedCount();

    a->Remove();
    EXPECT_EQ(doc->GetFirstObject(), nullptr);
    EXPECT_EQ(a->GetDown()->GetDocument(), nullptr);
    EXPECT_EQ(host.context().registry.allocatedCount(), before);  // still alive

    BaseObject::Free(a);
    EXPECT_EQ(a, nullptr);
    EXPECT_EQ(host.context().registry.allocatedCount(), before - 3);  // object, child, track

    BaseObject* b = add("b");
    BaseObject::Free(b);  // freeing an inserted object removes it first
    EXPECT_EQ(doc->GetFirstObject(), nullptr);
}

TEST_F(HostTest, LinksResolveOnlyToLiveObjectsInTheAskedDocument) {
    BaseObject* cam = add("cam", nullptr, nullptr, Ocamera);
    BaseLink* link = BaseLink::Alloc();
    link->SetLink(cam);
    EXPECT_EQ(link->GetLink(doc, Ocamera), cam);
    EXPECT_EQ(link->GetLink(doc, Obase), cam);
    EXPECT_EQ(link->GetLink(doc, Opolygon), nullptr);

    BaseDocument* other = host.newDocument("other");
    EXPECT_EQ(link->GetLink(other), nullptr);
    cam->Remove();
    EXPECT_EQ(link->GetLink(doc), nullptr);
    EXPECT_EQ(link->ForceGetLink(), cam);
    other->InsertObject(cam, nullptr, nullptr);
    EXPECT_EQ(link->GetLink(other), cam);

    BaseLink* copy = link->GetClone();
    BaseObject::Free(cam);
    EXPECT_EQ(link->ForceGetLink(), nullptr);
    // New objects may reuse the freed memory; the link must not follow.
    std::vector<BaseObject*> fresh;
    for (int i = 0; i < 64; ++i) {
        fresh.push_back(BaseObject::Alloc(Ocamera));
        other->InsertObject(fresh.back(), nullptr, nullptr);
    }
    EXPECT_EQ(link->ForceGetLink(), nullptr);
    EXPECT_EQ(copy->GetLink(other), nullptr);

    // Links inside containers behave the same.
    BaseObject* holder = add("holder");
    holder->GetDataInstance()->SetLink(77, fresh[0]);
    EXPECT_EQ(holder->GetDataInstance()->GetLink(77, other), fresh[0]);
    EXPECT_EQ(holder->GetDataInstance()->GetLink(77, doc), nullptr);
    BaseContainer copied = *holder->GetDataInstance();
    BaseObject::Free(fresh[0]);
    EXPECT_EQ(copied.GetLink(77, other), nullptr);

    BaseLink::Free(link);
    BaseLink::Free(copy);
}

TEST_F(HostTest, ParametersReachTransformCameraAndContainer) {
    BaseObject* cam = add("cam", nullptr, nullptr, Ocamera);
    GeData d;
    const DescID posY(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_VECTOR, 0), DescLevel(VECTOR_Y, DTYPE_REAL, 0));
    EXPECT_TRUE(cam->SetParameter(posY, GeData(4.5f), 0));
    EXPECT_TRUE(cam->SetParameter(DescID(DescLevel(ID_BASEOBJECT_SCALE)), GeData(Vector(2, 2, 2)), 0));
    EXPECT_EQ(cam->GetScale(), Vector(2, 2, 2));
    EXPECT_FALSE(cam->SetParameter(posY, GeData(Vector(1, 1, 1)), 0));  // a component takes a Real
    ASSERT_TRUE(cam->GetParameter(DescID(DescLevel(ID_BASEOBJECT_POSITION)), d, 0));
    EXPECT_EQ(d.GetVector(), Vector(0, 4.5f, 0));

    EXPECT_FALSE(cam->GetParameter(DescID(DescLevel(555)), d, 0));
    EXPECT_TRUE(cam->SetParameter(DescID(DescLevel(555)), GeData(String("v")), 0));
    EXPECT_EQ(cam->GetDataInstance()->GetString(555).ToStd(), "v");
    EXPECT_TRUE(cam->SetParameter(DescID(DescLevel(ID_BASELIST_NAME)), GeData(String("renamed")), 0));
    EXPECT_EQ(cam->GetName().ToStd(), "renamed");
}

void expectNear(const Matrix& a, const Matrix& b) {
    for (auto [x, y] : {std::pair{a.off, b.off}, {a.v1, b.v1}, {a.v2, b.v2}, {a.v3, b.v3}})
        for (int i = 0; i < 3; ++i) EXPECT_NEAR((&x.x)[i], (&y.x)[i], 1e-4f);
}

// Every way a part of the placement changes reaches the local matrix asked for next.
TEST_F(HostTest, LocalMatrixFollowsEveryChangeOfItsParts) {
    BaseObject* parent = add("parent");
    BaseObject* child = add("child", parent);
    const auto expected = [](BaseObject* op) {
        Matrix m = HPBToMatrix(op->GetRot());
        m.off = op->GetPos();
        m.v1 *= op->GetScale().x;
        m.v2 *= op->GetScale().y;
        m.v3 *= op->GetScale().z;
        return m;
    };
    const auto check = [&](const char* step) {
        SCOPED_TRACE(step);
        expectNear(parent->GetMl(), expected(parent));
        expectNear(child->GetMg(), expected(parent) * expected(child));
    };
    check("defaults");
    parent->SetPos(Vector(1, 2, 3));
    check("position");
    parent->SetRot(Vector(0.5f, 0, 0));
    check("rotation");
    parent->SetScale(Vector(2, 1, 1));
    check("scale");
    const DescID bank{DescLevel(ID_BASEOBJECT_ROTATION), DescLevel(VECTOR_Z)};
    ASSERT_TRUE(parent->SetParameter(bank, GeData(Real(0.25f)), 0));
    check("rotation parameter");
    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE, parent);
    doc->EndUndo();
    parent->SetScale(Vector(1, 3, 1));
    check("scale before undo");
    ASSERT_TRUE(doc->DoUndo(false));
    EXPECT_EQ(parent->GetScale().y, 1.0f);
    check("undone");

    // SetMg keeps the world placement under the current parent; SetMl decomposes back.
    parent->SetScale(Vector(2, 2, 2));
    Matrix world = HPBToMatrix(Vector(0.1f, 0.4f, 0.2f));
    world.off = Vector(3, 4, 5);
    child->SetMg(world);
    expectNear(child->GetMg(), world);
    check("world placement");
    const Matrix local = child->GetMl();
    child->SetMl(local);
    expectNear(child->GetMl(), local);
}

TEST_F(HostTest, ClonesCopyDeeplyWithFreshIdentity) {
    BaseObject* a = add("a");
    a->SetPos(Vector(1, 2, 3));
    a->GetDataInstance()->SetLong(5, 6);
    add("k", a);
    a->InsertTrackSorted(CTrack::Alloc(a, DescID(DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X))));
    BaseLink* link = BaseLink::Alloc();
    link->SetLink(a);

    BaseObject* deep = a->GetClone(0);
    BaseObject* flat = a->GetClone(COPY_NO_HIERARCHY);
    EXPECT_EQ(deep->GetDocument(), nullptr);
    // The same content throughout (data, child, track), under new markers.
    const std::regex marker("#[0-9]+");
    EXPECT_NE(host.dump(deep), host.dump(a));
    EXPECT_EQ(std::regex_replace(host.dump(deep), marker, "#"), std::regex_replace(host.dump(a), marker, "#"));
    ASSERT_NE(deep->GetDown(), nullptr);
    EXPECT_EQ(flat->GetDown(), nullptr);
    EXPECT_NE(flat->GetFirstCTrack(), nullptr);
    deep->SetName("changed");
    EXPECT_EQ(a->GetName().ToStd(), "a");
    EXPECT_EQ(link->ForceGetLink(), a);  // never the clone

    BaseObject::Free(deep);
    BaseObject::Free(flat);
    BaseLink::Free(link);
}

TEST_F(HostTest, SelectionModes) {
    BaseObject* a = add("a");
    BaseObject* b = add("b", a);
    doc->SetActiveObject(b, SELECTION_NEW);
    doc->SetActiveObject(a, SELECTION_ADD);
    EXPECT_EQ(doc->GetActiveObject(), a);  // first in tree order
    doc->SetActiveObject(a, SELECTION_SUB);
    EXPECT_EQ(doc->GetActiveObject(), b);
    doc->SetActiveObject(a, SELECTION_NEW);
    EXPECT_EQ(doc->GetActiveObject(), a);
    doc->SetActiveObject(nullptr, SELECTION_NEW);
    EXPECT_EQ(doc->GetActiveObject(), nullptr);
}

TEST_F(HostTest, ForeignPointersAndUnknownTypesAreRefused) {
    int junk[64] = {};
    BaseObject* fake = reinterpret_cast<BaseObject*>(junk);
    doc->InsertObject(fake, nullptr, nullptr);
    EXPECT_EQ(doc->GetFirstObject(), nullptr);
    BaseLink* link = BaseLink::Alloc();
    link->SetLink(fake);
    EXPECT_EQ(link->ForceGetLink(), nullptr);
    BaseLink::Free(link);
    BaseLink::Free(link);  // freed before: ignored
    BaseLink* foreign = reinterpret_cast<BaseLink*>(junk + 8);
    BaseLink::Free(foreign);  // not made here: ignored
    BaseObject::Free(fake);   // ignored
    doc->StartUndo();
    EXPECT_FALSE(doc->AddUndo(UNDO_CHANGE, junk));
    doc->EndUndo();
    EXPECT_EQ(BaseObject::Alloc(123456), nullptr);
    EXPECT_EQ(BaseTag::Alloc(Tbase), nullptr);  // not a kind of tag this host makes
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
