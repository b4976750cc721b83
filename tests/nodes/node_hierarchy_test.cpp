// Nodes as the core uses them: made by the adaptor, walked, selected,
// reparented, renamed, hidden, cloned and deleted, on documents of the
// embedded host, with the host undo records and messages each step leaves.
#include <cmath>

#include "node_fixture.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

TEST_F(NodeTest, CreatedCamerasAreNamedInsertedRecordedAndFound) {
    TestPeer peer;
    CC4DNode* rig = keep(adaptor->createCamera(&master, "rig", nullptr, &peer));
    ASSERT_NE(rig, nullptr);
    // The peer learns its node once.
    ASSERT_EQ(peer.events.size(), 1u);
    EXPECT_EQ(peer.events[0].first, "returns");
    EXPECT_EQ(peer.events[0].second, rig);
    EXPECT_EQ(rig->peer, &peer);

    BaseObject* op = rig->object();
    ASSERT_NE(op, nullptr);
    EXPECT_EQ(op->GetType(), Ocamera);
    EXPECT_EQ(op->GetDocument(), doc);
    EXPECT_EQ(rig->name, "rig");
    EXPECT_EQ(rig->getName(), "Tool_rig");
    EXPECT_EQ(host.journal().toString(),
              "AddUndo 44 object:5103 'Tool_rig'\nMessage object:5103 'Tool_rig' 604\nEventAdd 0\n");

    // Under a parent node: its object's first child. Masters without a name
    // keep the separator; no master, no prefix.
    CC4DNode* lens = camera("lens", rig);
    core::CMasterDescriptor unnamed{""};
    TestMaster anonymous(&unnamed);
    CC4DNode* second = keep(adaptor->createCamera(&anonymous, "lens", rig, nullptr));
    CC4DNode* bare = keep(adaptor->createCamera(nullptr, "bare", nullptr, nullptr));
    EXPECT_EQ(childNames(op), (std::vector<std::string>{"_lens", "Tool_lens"}));
    EXPECT_EQ(bare->getName(), "bare");

    // Lookups walk the live list in order of registration.
    CC4DNode* twin = camera("lens");  // the same label as `lens`, registered later
    EXPECT_EQ(adaptor->findNode(&master, "Tool_lens"), lens);
    EXPECT_EQ(adaptor->findNode(&anonymous, "_lens"), second);
    EXPECT_EQ(adaptor->findNode(&anonymous, "Tool_lens"), nullptr);
    EXPECT_EQ(liveNodes(), (std::vector<core::CoreNode*>{rig, lens, second, bare, twin}));
    core::NodeList mine;
    tvr::util::ReturnValue<core::NodeList> sink(&mine);
    adaptor->getMasterNodes(&master, &sink);
    EXPECT_EQ(mine, (std::vector<core::CoreNode*>{rig, lens, twin}));

    // A detached node stays with its master's list but leaves the live one.
    twin->detach();
    EXPECT_TRUE(twin->isReleased());
    EXPECT_EQ(twin->master, nullptr);
    EXPECT_EQ(liveNodes().size(), 4u);
    EXPECT_EQ(adaptor->findNodeForObject(twin->object()), nullptr);
    // Only a released node reacquires, and only while no live node has the object.
    EXPECT_EQ(rig->reacquire(&master, "again"), nullptr);
    CC4DNode* back = keep(twin->reacquire(&master, "again"));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->getName(), "Tool_again");
    EXPECT_EQ(twin->reacquire(&master, "third"), nullptr);
}

TEST_F(NodeTest, AcquiredParentsAndChildrenAreLinkingNodesTheCoreGivesBack) {
    CC4DNode* rig = camera("rig");
    CC4DNode* a = camera("a", rig);
    BaseObject* user = userObject("user", rig->object());  // not the core's: named by the object
    // Children in the object's order: user (inserted last, so first), then a.
    EXPECT_EQ(rig->getChildCount(), 2);
    EXPECT_EQ(a->getChildCount(), 0);
    EXPECT_EQ(rig->acquireChild(2), nullptr);
    EXPECT_EQ(rig->acquireChild(-1), nullptr);
    EXPECT_EQ(a->acquireChild(0), nullptr);
    EXPECT_EQ(rig->acquireParent(), nullptr);

    core::CoreNode* first = rig->acquireChild(0);
    core::CoreNode* second = rig->acquireChild(1);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->name, "user");
    EXPECT_EQ(first->master, nullptr);
    EXPECT_EQ(asC4DNode(first)->object(), user);
    // The live node of the same object lends its name and master.
    EXPECT_EQ(second->name, "a");
    EXPECT_EQ(second->master, &master);
    EXPECT_EQ(second->parentNode, rig);
    EXPECT_TRUE(second->isReleased());
    EXPECT_TRUE(second->isSameNode(a));
    EXPECT_FALSE(second->isSameNode(first));
    core::CoreNode* up = a->acquireParent();
    ASSERT_NE(up, nullptr);
    EXPECT_TRUE(up->isSameNode(rig));
    // None of them is live.
    EXPECT_EQ(liveNodes().size(), 2u);
    rig->releaseNode(first);
    rig->releaseNode(nullptr);
    second->release();
    up->release();
    EXPECT_EQ(liveNodes().size(), 2u);
}

// A group selection adds to the selection and brackets itself for undo
// unless the caller's bracket is open.
TEST_F(NodeTest, SelectReplacesTheSelectionExceptDuringAGroupSelectionWhichBracketsItself) {
    CC4DNode* a = camera("a");
    CC4DNode* b = camera("b");
    CC4DNode* c = camera("c");
    const auto selected = [this](CC4DNode* n) { return n->object() && nodeSelected(n->object()); };
    EXPECT_EQ(a->select(), 0);
    EXPECT_EQ(b->select(), 0);
    EXPECT_FALSE(selected(a));
    EXPECT_TRUE(selected(b));

    host.journal().clear();
    EXPECT_EQ(a->executeExtension(CC4DNode::kGroupSelect, nullptr), 0);  // none begun
    ASSERT_FALSE(adaptor->isAcceptingUndo());
    EXPECT_EQ(a->executeExtension(CC4DNode::kBeginGroupSelect, nullptr), 1);
    EXPECT_TRUE(adaptor->isAcceptingUndo());
    EXPECT_EQ(b->executeExtension(CC4DNode::kBeginGroupSelect, nullptr), 0);  // keeps the first bracket
    a->select();
    c->select();
    EXPECT_TRUE(selected(a));
    EXPECT_TRUE(selected(b));
    EXPECT_TRUE(selected(c));
    EXPECT_EQ(c->executeExtension(CC4DNode::kGroupSelect, nullptr), 1);
    EXPECT_FALSE(adaptor->isAcceptingUndo());
    EXPECT_EQ(journal("StartUndo").size(), 1u);
    EXPECT_EQ(journal("EndUndo").size(), 1u);
    EXPECT_EQ(c->executeExtension(CC4DNode::kGroupSelect, nullptr), 0);
    a->select();
    EXPECT_TRUE(selected(a));
    EXPECT_FALSE(selected(b));
    EXPECT_FALSE(selected(c));

    // Inside the caller's bracket the group joins it and leaves it open.
    host.journal().clear();
    adaptor->beginUndo("outer");
    a->executeExtension(CC4DNode::kBeginGroupSelect, nullptr);
    b->select();
    a->executeExtension(CC4DNode::kGroupSelect, nullptr);
    EXPECT_TRUE(adaptor->isAcceptingUndo());
    EXPECT_TRUE(journal("EndUndo").empty());
    EXPECT_EQ(adaptor->acceptUndo(), 0);
    EXPECT_EQ(journal("StartUndo").size(), 1u);
    EXPECT_EQ(journal("EndUndo").size(), 1u);
}

TEST_F(NodeTest, ReparentingKeepsTheWorldPlacementAndRecordsTheMove) {
    CC4DNode* parent = camera("parent");
    CC4DNode* child = camera("child");
    BaseObject* p = parent->object();
    BaseObject* c = child->object();
    p->SetPos(Vector(10, 0, 0));
    p->SetRot(Vector(0.5f, 0, 0));
    c->SetPos(Vector(1, 2, 3));
    const Matrix before = c->GetMg();
    host.journal().clear();

    const auto mark = logMark();
    ASSERT_EQ(child->setParent(parent), 0);
    EXPECT_EQ(c->GetUp(), p);
    EXPECT_EQ(journal("AddUndo"),
              (std::vector<std::string>{"45 object:5103 'Tool_child'", "44 object:5103 'Tool_child'"}));
    const auto near = [](const Matrix& x, const Matrix& y) {
        const Vector d[4] = {x.off - y.off, x.v1 - y.v1, x.v2 - y.v2, x.v3 - y.v3};
        for (const Vector& v : d)
            if (Len(v) > 1e-4f) return false;
        return true;
    };
    EXPECT_TRUE(near(c->GetMg(), before));
    EXPECT_NE(logSince(mark).find("Setting parent for child\n"), std::string::npos);
    EXPECT_NE(logSince(mark).find("new parent: parent\n"), std::string::npos);

    // Back to the top of the document, still in place.
    ASSERT_EQ(child->setParent(nullptr), 0);
    EXPECT_EQ(c->GetUp(), nullptr);
    EXPECT_EQ(doc->GetFirstObject(), c);
    EXPECT_TRUE(near(c->GetMg(), before));

    // Refusals leave the scene as it was: below itself, a dead parent, another document.
    EXPECT_EQ(parent->setParent(child), 0);
    EXPECT_EQ(child->setParent(parent), 1);
    EXPECT_EQ(p->GetUp(), c);
    BaseObject* doomed = userObject("doomed");
    CC4DNode* dead = wrap(doomed, "doomed");
    BaseObject::Free(doomed);
    const auto mark2 = logMark();
    EXPECT_EQ(parent->setParent(dead), 1);
    EXPECT_NE(logSince(mark2).find("Invalid parent node"), std::string::npos);
    EXPECT_EQ(p->GetUp(), c);

    const std::string scene = host.dump(doc);
    BaseDocument* other = host.newDocument("other");
    CC4DNode* elsewhere = wrap(userObject("far", nullptr, Onull, other), "far");
    EXPECT_EQ(parent->setParent(elsewhere), 1);
    EXPECT_EQ(elsewhere->setParent(parent), 1);
    EXPECT_EQ(host.dump(doc), scene);
}

TEST_F(NodeTest, DeletingANodeLeavesItsChildrenInItsPlaceInOrder) {
    BaseObject* p = userObject("P");
    BaseObject* t = userObject("T", p);
    CC4DNode* x = keep(adaptor->createCamera(&master, "X", wrap(p, "P"), nullptr));
    BaseObject* s = userObject("S", p);
    (void)t;
    (void)s;
    userObject("K3", x->object());
    userObject("K2", x->object());
    userObject("K1", x->object());
    EXPECT_EQ(childNames(p), (std::vector<std::string>{"S", "Tool_X", "T"}));
    host.journal().clear();

    ASSERT_EQ(x->deleteNode(true), 0);
    drop(x);
    EXPECT_EQ(childNames(p), (std::vector<std::string>{"S", "K1", "K2", "K3", "T"}));
    EXPECT_EQ(liveNodes().size(), 1u);  // P's node
    // Each child is recorded out and in, last first, then the object itself.
    EXPECT_EQ(journal("AddUndo"),
              (std::vector<std::string>{"45 object:5140 'K3'", "44 object:5140 'K3'", "45 object:5140 'K2'",
                                        "44 object:5140 'K2'", "45 object:5140 'K1'", "44 object:5140 'K1'",
                                        "45 object:5103 'Tool_X'"}));
    EXPECT_EQ(journal("EventAdd"), (std::vector<std::string>{"1"}));

    // Keeping the object: only the node goes.
    CC4DNode* y = camera("Y");
    ASSERT_EQ(y->deleteNode(false), 0);
    drop(y);
    EXPECT_EQ(childNames(nullptr), (std::vector<std::string>{"Tool_Y", "Tool_P"}));
    EXPECT_EQ(liveNodes().size(), 1u);
}

TEST_F(NodeTest, ClonesGoUnderTheSameParentWithOrWithoutChildren) {
    CC4DNode* rig = camera("rig");
    CC4DNode* arm = camera("arm", rig);
    userObject("hand", arm->object());
    arm->object()->SetPos(Vector(1, 2, 3));

    CC4DNode* deep = keep(arm->cloneNode(true));
    ASSERT_NE(deep, nullptr);
    EXPECT_EQ(deep->name, "arm_clone");
    EXPECT_EQ(deep->getName(), "Tool_arm_clone");
    EXPECT_EQ(childNames(rig->object()), (std::vector<std::string>{"Tool_arm_clone", "Tool_arm"}));
    EXPECT_EQ(childNames(deep->object()), (std::vector<std::string>{"hand"}));
    EXPECT_EQ(deep->object()->GetPos(), Vector(1, 2, 3));

    CC4DNode* flat = keep(arm->cloneNode(false));
    EXPECT_TRUE(childNames(flat->object()).empty());
    // A parent that has no live node is found through acquireParent and given back.
    CC4DNode* loose = wrap(userObject("loose", userObject("holder")), "loose");
    CC4DNode* copy = keep(loose->cloneNode(false));
    EXPECT_EQ(copy->object()->GetUp()->GetName().ToStd(), "holder");

    // Extension 37: with children, under the node given.
    auto* under = reinterpret_cast<core::CoreNode*>(arm->executeExtension(CC4DNode::kCloneWithChildren, rig));
    keep(under);
    ASSERT_NE(under, nullptr);
    EXPECT_EQ(asC4DNode(under)->object()->GetUp(), rig->object());
    EXPECT_EQ(liveNodes().size(), 7u);
}

TEST_F(NodeTest, HideAndShowSetBothModesAfterAnUndoRecordEach) {
    CC4DNode* cam = camera("cam");
    BaseObject* op = cam->object();
    EXPECT_TRUE(cam->isVisible());  // undefined counts as visible
    host.journal().clear();
    ASSERT_EQ(cam->hide(), 0);
    EXPECT_EQ(op->GetEditorMode(), MODE_OFF);
    EXPECT_EQ(op->GetRenderMode(), MODE_OFF);
    EXPECT_FALSE(cam->isVisible());
    EXPECT_EQ(host.journal().toString(),
              "AddUndo 40 object:5103 'Tool_cam'\nAddUndo 40 object:5103 'Tool_cam'\n"
              "Message object:5103 'Tool_cam' 604\nEventAdd 0\n");
    ASSERT_EQ(cam->show(), 0);
    EXPECT_EQ(op->GetEditorMode(), MODE_ON);
    EXPECT_EQ(op->GetRenderMode(), MODE_ON);
    EXPECT_TRUE(cam->isVisible());
}

TEST_F(NodeTest, ExtensionsAnswerAsTheCoreExpects) {
    CC4DNode* cam = camera("cam");
    std::vector<int> codes{99};
    EXPECT_EQ(cam->getSupportedExtensions(codes), (std::vector<int>{10, 11, 37, 18, 17, 31, 32}));
    EXPECT_TRUE(cam->isExtensionSupported(37));
    EXPECT_FALSE(cam->isExtensionSupported(12));

    // Renaming answers 0 although it renamed.
    const std::string label = "renamed";
    EXPECT_EQ(cam->executeExtension(CC4DNode::kSetLabel, const_cast<std::string*>(&label)), 0);
    EXPECT_EQ(cam->getName(), "renamed");
    EXPECT_EQ(cam->setName("again"), 0);
    EXPECT_EQ(cam->object()->GetName().ToStd(), "again");

    // The master's query hears code 31 and the node.
    master.answer = false;
    EXPECT_EQ(cam->executeExtension(CC4DNode::kMasterQuery, &master), 0);
    master.answer = true;
    EXPECT_EQ(cam->executeExtension(CC4DNode::kMasterQuery, &master), 1);
    EXPECT_EQ(master.queries, (std::vector<int>{31, 31}));
    EXPECT_EQ(master.asked, cam);
    EXPECT_EQ(cam->executeExtension(CC4DNode::kMasterQuery, nullptr), 0);

    const auto mark = logMark();
    EXPECT_EQ(cam->executeExtension(99, nullptr), 0);
    EXPECT_NE(logSince(mark).find("(WARNING): Extension not implemented: 99\n"), std::string::npos) << logSince(mark);
    EXPECT_EQ(cam->executeExtension(CC4DNode::kIsNotAnimated, nullptr), 1);
    EXPECT_FALSE(cam->animated);
    EXPECT_EQ(cam->executeExtension(CC4DNode::kLensIsNotAnimated, nullptr), 1);
    EXPECT_FALSE(cam->lensAnimated);
    EXPECT_NE(logSince(mark).find("execute extension NODE_LENS_IS_NOT_ANIMATED"), std::string::npos);
}

TEST_F(NodeTest, NodesWhoseObjectIsGoneGiveNeutralAnswers) {
    CC4DNode* rig = camera("rig");
    CC4DNode* gone = camera("gone", rig);
    CC4DNode* alsoGone = camera("also");
    BaseObject* op = gone->object();
    BaseObject::Free(op);  // the user deleted it
    BaseObject* other = alsoGone->object();
    BaseObject::Free(other);
    const std::string scene = host.dump(doc);
    host.journal().clear();

    EXPECT_EQ(gone->getName(), "");
    EXPECT_FALSE(gone->isVisible());
    EXPECT_EQ(gone->getChildCount(), 0);
    EXPECT_EQ(gone->acquireParent(), nullptr);
    EXPECT_EQ(gone->acquireChild(0), nullptr);
    EXPECT_EQ(gone->acquireSnapshot(0), nullptr);
    EXPECT_EQ(gone->acquireLensSnapshot(0), nullptr);
    EXPECT_EQ(gone->acquireMeshSnapshot(0), nullptr);
    EXPECT_EQ(gone->createHelperSnapshot(), nullptr);
    core::CoreNode* shapeOwner = gone;
    auto* shape = shapeOwner->acquireShape(0);
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->getLength(), 0.0);
    EXPECT_EQ(shape->getPoint(0.5), tvr::util::Vec3d{});
    EXPECT_EQ(gone->show(), 1);
    EXPECT_EQ(gone->hide(), 1);
    EXPECT_EQ(gone->setName("x"), 1);
    EXPECT_EQ(gone->setParent(nullptr), 1);
    EXPECT_EQ(rig->setParent(gone), 1);
    EXPECT_EQ(gone->truncateKeys(0), 1);
    EXPECT_EQ(gone->cloneNode(true), nullptr);
    EXPECT_EQ(gone->prepareRecording(doc), 1);
    EXPECT_TRUE(gone->isSameNode(alsoGone));  // two dead nodes are equal
    EXPECT_FALSE(gone->isSameNode(rig));
    EXPECT_EQ(gone->deleteNode(true), 1);  // stays registered
    EXPECT_EQ(liveNodes().size(), 3u);
    EXPECT_EQ(gone->select(), 0);  // selects nothing
    EXPECT_EQ(host.dump(doc), scene);
    EXPECT_TRUE(journal("AddUndo").empty());

    // Closing the document kills every link as well.
    host.closeDocument(doc);
    EXPECT_EQ(rig->getName(), "");
    EXPECT_EQ(rig->getChildCount(), 0);
}

TEST_F(NodeTest, NodesOfTwoDocumentsWarnOnceInTheDialogAndConsole) {
    camera("one");
    camera("two");
    EXPECT_TRUE(host.dialogs().empty());
    host.newDocument("second");
    camera("three");
    host.newDocument("third");
    camera("four");
    keep(adaptor->createCamera(nullptr, "masterless", nullptr, nullptr));
    ASSERT_EQ(host.dialogs().size(), 1u);
    EXPECT_EQ(host.dialogs()[0], MultiDocumentCheck::kWarning);
    EXPECT_EQ(host.dialogs()[0].substr(0, 60), "Pelloran has been detected running on multiple documents. Th");
    EXPECT_EQ(journal("MessageDialog").size(), 1u);
    EXPECT_EQ(liveNodes().size(), 5u);  // every node is registered all the same
}

TEST_F(NodeTest, AMasterNodeMeetingAMasterlessNodeOfAnotherDocumentWarnsToo) {
    keep(adaptor->createCamera(nullptr, "masterless", nullptr, nullptr));
    host.newDocument("second");
    EXPECT_TRUE(host.dialogs().empty());
    camera("mastered");
    EXPECT_EQ(host.dialogs().size(), 1u);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
